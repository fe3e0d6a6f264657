#pragma once

#include <cstddef>
#include <span>

namespace vesk::bench {

/** A call through the library, and the same transaction written by hand. */
struct OverheadCase {
  const char* name;
  void (*library)();
  /** Written for this call alone, without the library. */
  void (*byHand)();
  /** The allocations that the text or the answer forces on the library. */
  size_t allocations;
};

/**
 * Registers services of this process that answer at once, and connects the library to them. Needs a
 * private runtime directory. A failure here, or in one of the calls, ends the program.
 */
void connectToLocalServices();

std::span<const OverheadCase> overheadCases();

}  // namespace vesk::bench
