#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace veskctl {

/** A field of a record that a header in include/vesk declares. */
struct Field {
  const char* name;
  size_t offset;
  /** The size of a text field, which ends with a zero byte; 0 for an int32. */
  size_t textSize;
  /** True if the device may store other fields after the zero byte of the text. */
  bool holdsMore = false;
};

struct Layout {
  /** The layout is that of parameters with this name whose records have this size. */
  std::string_view parameter;
  size_t size;
  std::span<const Field> fields;
};

/** Null if the layout is not known. */
const Layout* findLayout(std::string_view parameter, size_t size);

}  // namespace veskctl
