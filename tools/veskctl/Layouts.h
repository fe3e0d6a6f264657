#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace veskctl {

/** A field of a record that a header in include/vesk declares. */
struct Field {
  const char* name;
  size_t offset;
  /** Of a text, which ends with a zero; 0 for an int32. */
  size_t textSize;
  /** Behind the text's zero there may be fields of the device's own. */
  bool holdsMore = false;
};

struct Layout {
  /** The parameters that carry it go by this name, and are of this size. */
  std::string_view parameter;
  size_t size;
  std::span<const Field> fields;
};

/** Null if the layout is the service's own. */
const Layout* findLayout(std::string_view parameter, size_t size);

}  // namespace veskctl
