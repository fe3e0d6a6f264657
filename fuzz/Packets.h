#pragma once

#include <binder/Binder.h>

#include <functional>
#include <utility>
#include <vector>

#include "Frame.h"
#include "Fuzz.h"
#include "SharedSlots.h"

namespace vesk::fuzz {

/** Processes and objects that an input can name, by small numbers, although their real numbers are
 * random. */
struct Known {
  std::vector<uint64_t> processes;
  std::vector<uint64_t> objects;
};

struct Packet {
  std::vector<uint8_t> bytes;
  /** It goes over the socket, and not through a slot. */
  bool bySocket = false;
};

/**
 * What a process sends over a channel: packets, each after its size. A size with the highest bit
 * set stands for so many times 16 bytes of zeros that are not in the input; with the two highest,
 * the next packet goes over the socket. The packets hold about 100 kB at most, which goes into a
 * socket's buffer at once.
 */
std::vector<Packet> packetsOf(Bytes bytes, const Known& known);

/** The process at the other end of a channel, which sends packets without regard to what it
 * receives. */
class Sender {
 public:
  /** `slots` and `socket` are those of its end. */
  Sender(int socket, android::transport::SharedSlots slots) : socket_(socket), slots_(std::move(slots)) {}

  /** Sends all that the socket takes, each when the slot is free, until the other end is closed. */
  void send(const std::vector<Packet>& packets);
  /** Sends up to the first packet for which the slot is not free. */
  void sendNow(const std::vector<Packet>& packets);

  /** Called with each frame, or its beginning, that comes meanwhile. */
  std::function<void(Bytes)> onFrame = [](Bytes) {};

 private:
  /** Takes frames until the slot is free. */
  bool awaitRoom();
  /** False if the socket is full. */
  bool put(const Packet& packet);

  const int socket_;
  android::transport::SharedSlots slots_;
};

}  // namespace vesk::fuzz
