#include "Packets.h"

#include <poll.h>
#include <sched.h>
#include <sys/socket.h>

#include <algorithm>
#include <utility>

namespace vesk::fuzz {

namespace {

using android::transport::FrameHeader;
using android::transport::ObjectEntry;
using android::transport::SharedSlot;

constexpr size_t kMostBytes = 100 * 1024;
constexpr size_t kMostPackets = 64;

void replace(uint8_t* at, const std::vector<uint64_t>& real) {
  uint64_t number;
  std::memcpy(&number, at, sizeof(number));
  if (number < real.size()) std::memcpy(at, &real[static_cast<size_t>(number)], sizeof(number));
}

/** Of a frame that begins and ends with this packet. */
void replaceNumbers(std::vector<uint8_t>* packet, const Known& known) {
  FrameHeader header{};
  if (packet->size() < sizeof(header)) return;
  std::memcpy(&header, packet->data(), sizeof(header));
  replace(packet->data() + offsetof(FrameHeader, object), known.objects);
  size_t entry = sizeof(header) + size_t{header.dataSize};
  for (; entry + sizeof(ObjectEntry) <= packet->size(); entry += sizeof(ObjectEntry)) {
    replace(packet->data() + entry + offsetof(ObjectEntry, owner), known.processes);
    replace(packet->data() + entry + offsetof(ObjectEntry, number), known.objects);
  }
}

}  // namespace

std::vector<Packet> packetsOf(Bytes bytes, const Known& known) {
  constexpr uint16_t kZeros = 0x8000;
  constexpr uint16_t kBySocket = 0xc000;
  std::vector<Packet> packets;
  Input input(bytes);
  size_t total = 0;
  Packet next;
  while (!input.empty() && packets.size() < kMostPackets) {
    const auto size = input.number<uint16_t>();
    if ((size & kBySocket) == kBySocket) {
      next.bySocket = true;
      continue;
    }
    if ((size & kZeros) != 0) {
      next.bytes.resize(size_t{16} * (size & 0xfff));
    } else {
      const Bytes taken = input.take(size);
      next.bytes.assign(taken.begin(), taken.end());
      replaceNumbers(&next.bytes, known);
    }
    total += next.bytes.size();
    if (total > kMostBytes) break;
    packets.push_back(std::exchange(next, {}));
  }
  return packets;
}

bool Sender::awaitRoom() {
  using std::chrono::milliseconds;
  for (;;) {
    pollfd end{socket_, POLLRDHUP, 0};
    const bool isEnd = ::poll(&end, 1, 0) > 0;
    if (slots_.in().isFull()) {
      onFrame(Bytes(slots_.in().bytes(), std::min(slots_.in().size(), SharedSlot::kCapacity)));
      slots_.in().empty();
    }
    if (isEnd) return false;
    if (slots_.out().isEmpty()) return true;
    ::sched_yield();
  }
}

bool Sender::put(const Packet& packet) {
  const size_t size = packet.bytes.size();
  if (packet.bySocket) return ::send(socket_, packet.bytes.data(), size, MSG_NOSIGNAL | MSG_DONTWAIT) >= 0;
  std::copy_n(packet.bytes.begin(), std::min(size, SharedSlot::kCapacity), slots_.out().bytes());
  slots_.out().fill(size);
  return true;
}

void Sender::send(const std::vector<Packet>& packets) {
  for (const Packet& packet : packets) {
    if ((!packet.bySocket && !awaitRoom()) || !put(packet)) return;
  }
  awaitRoom();
}

void Sender::sendNow(const std::vector<Packet>& packets) {
  for (const Packet& packet : packets) {
    if ((!packet.bySocket && !slots_.out().isEmpty()) || !put(packet)) return;
  }
}

}  // namespace vesk::fuzz
