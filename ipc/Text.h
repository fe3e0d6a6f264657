#pragma once

#include <string>

namespace com::qv {

/* The rules for copying a text to the caller's buffer. `store` returns the C function's result.
 * Nothing is written with a size of 0 or less. */

/** Always terminated, truncated to fit. */
struct Truncate {
  char* buffer;
  int size;
  int store(const std::string& text) const;
};

/** -1, and nothing written, unless the text and its terminator fit. */
struct AllOrNothing {
  char* buffer;
  int size;
  int store(const std::string& text) const;
};

/** Truncated to fit, and the rest of the buffer filled with zeros. For an empty text the result is
 * `onEmpty` and nothing is written. */
struct TruncateZeroFill {
  char* buffer;
  int size;
  int onEmpty;
  int store(const std::string& text) const;
};

/** The whole text with its terminator. The caller has to know that it fits. */
struct Unchecked {
  char* buffer;
  int store(const std::string& text) const;
};

}  // namespace com::qv
