#pragma once

#include <cstddef>
#include <span>

namespace vesk::bench {

/** One call, made in two ways. */
struct OverheadCase {
  const char* name;
  void (*library)();
  /** The same transaction as one would write it for this call alone, without the library. */
  void (*byHand)();
  /** Allocations that the library may need, which are those that its answer or its text forces. */
  size_t allocations;
};

/**
 * Registers objects of this process that answer each transaction at once, and connects the library to them.
 * Needs a private runtime directory. Ends the program if something fails, as the calls do, too.
 */
void connectToLocalServices();

std::span<const OverheadCase> overheadCases();

}  // namespace vesk::bench
