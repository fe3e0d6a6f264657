#include "Packets.h"

#include <sys/socket.h>

namespace vesk::fuzz {

namespace {

using android::transport::FrameHeader;
using android::transport::ObjectEntry;

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

std::vector<std::vector<uint8_t>> packetsOf(Bytes bytes, const Known& known) {
  std::vector<std::vector<uint8_t>> packets;
  Input input(bytes);
  size_t total = 0;
  while (!input.empty() && packets.size() < kMostPackets) {
    const auto size = input.number<uint16_t>();
    constexpr uint16_t kZeros = 0x8000;
    std::vector<uint8_t> packet;
    if ((size & kZeros) != 0) {
      packet.resize(size_t{16} * (size & ~kZeros & 0xfff));
    } else {
      const Bytes taken = input.take(size);
      packet.assign(taken.begin(), taken.end());
      replaceNumbers(&packet, known);
    }
    total += packet.size();
    if (total > kMostBytes) break;
    packets.push_back(std::move(packet));
  }
  return packets;
}

void sendPackets(int socket, const std::vector<std::vector<uint8_t>>& packets) {
  for (const std::vector<uint8_t>& packet : packets) {
    if (::send(socket, packet.data(), packet.size(), MSG_NOSIGNAL | MSG_DONTWAIT) < 0) return;
  }
}

}  // namespace vesk::fuzz
