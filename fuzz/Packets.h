#pragma once

#include <binder/Binder.h>

#include <functional>
#include <utility>
#include <vector>

#include "Frame.h"
#include "Fuzz.h"
#include "SharedSlots.h"

namespace vesk::fuzz {

/** The processes and objects that an input can name by small numbers; their real numbers are
 * random. */
struct Known {
  std::vector<uint64_t> processes;
  std::vector<uint64_t> objects;
};

struct Packet {
  std::vector<uint8_t> bytes;
  /** Sent over the socket instead of through a slot. */
  bool bySocket = false;
};

/**
 * The packets that a process sends over a channel, each preceded by its size. A size with the
 * highest bit set stands for that many times 16 zero bytes, which are not in the input. A size with
 * the two highest bits set sends the next packet over the socket. The packets hold about 100 kB at
 * most, which fits into the buffer of a socket.
 */
std::vector<Packet> packetsOf(Bytes bytes, const Known& known);

/** The process at the other end of a channel. Sends packets regardless of those that it
 * receives. */
class Sender {
 public:
  /** `slots` and `socket` belong to its end of the channel. */
  Sender(int socket, android::transport::SharedSlots slots) : socket_(socket), slots_(std::move(slots)) {}

  /** Sends all that the socket takes, each when the slot is free, until the other end is closed. */
  void send(const std::vector<Packet>& packets);
  /** Sends up to the first packet for which the slot is not free. */
  void sendNow(const std::vector<Packet>& packets);

  /** Called with each frame, or its beginning, that arrives meanwhile. */
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
