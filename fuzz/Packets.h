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

struct Packet {
  std::vector<uint8_t> bytes;
  /** What goes with it. The descriptors are all the same. */
  size_t descriptors = 0;
  bool sharedSlots = false;
};

/**
 * What comes over a connection: packets, each after its size. A size with the highest bit set stands for so
 * many times 16 bytes of zeros that are not in the input; with the two highest, for descriptors that go with
 * the next packet, shared slots or something else. The packet after the first that brings shared slots is put
 * into one of them. The packets hold about 100 kB at most, which goes into a socket's buffer at once.
 */
std::vector<Packet> packetsOf(Bytes bytes, const Known& known);

/** Sends what the socket takes. */
void sendPackets(int socket, const std::vector<Packet>& packets);

}  // namespace vesk::fuzz
