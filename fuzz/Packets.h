#pragma once

#include <binder/Binder.h>

#include <vector>

#include "Frame.h"
#include "Fuzz.h"

namespace vesk::fuzz {

/** Processes and objects that an input can name, by small numbers, although their real numbers are random. */
struct Known {
  std::vector<uint64_t> processes;
  std::vector<uint64_t> objects;
};

/**
 * What comes over a connection: packets, each after its size. A size with the highest bit set stands for so
 * many times 16 bytes of zeros that are not in the input. The packets hold about 100 kB at most, which goes
 * into a socket's buffer at once.
 */
std::vector<std::vector<uint8_t>> packetsOf(Bytes bytes, const Known& known);

/** Sends what the socket takes. */
void sendPackets(int socket, const std::vector<std::vector<uint8_t>>& packets);

}  // namespace vesk::fuzz
