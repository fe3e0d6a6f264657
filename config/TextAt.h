#pragma once

#include <cstddef>
#include <string>

namespace com::qv {

/** A text inside a C record as an in-argument: it starts at `offset` and ends with a zero. */
struct TextAt {
  const void* record;
  size_t offset;
  operator std::string() const { return static_cast<const char*>(record) + offset; }
};

}  // namespace com::qv
