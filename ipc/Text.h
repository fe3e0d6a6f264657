#pragma once

#include <string>

namespace com::qv {

/*
 * The ways in which a text answer reaches the caller's buffer. Each row of the C API names one; `store` gives
 * the row's result. A size of 0 or less writes nothing.
 */

/** Always terminated, cut to fit. */
struct Truncate {
  char* buffer;
  int size;
  int store(const std::string& text) const;
};

/** All or nothing: -1, and nothing written, unless the text and its terminator fit. */
struct AllOrNothing {
  char* buffer;
  int size;
  int store(const std::string& text) const;
};

/** Truncate to fit; the rest of the buffer is filled with zeros. An empty answer gives `onEmpty` and writes
 * nothing. */
struct TruncateZeroFill {
  char* buffer;
  int size;
  int onEmpty;
  int store(const std::string& text) const;
};

/** The whole text with its terminator, whatever its length: the caller answers for the room. */
struct Unchecked {
  char* buffer;
  int store(const std::string& text) const;
};

}  // namespace com::qv
