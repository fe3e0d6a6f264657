#include "Packets.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include "SharedSlots.h"

namespace vesk::fuzz {

namespace {

using android::transport::FrameHeader;
using android::transport::ObjectEntry;
using android::transport::SharedSlot;
using android::transport::SharedSlots;
using android::transport::UniqueFd;

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
  constexpr uint16_t kDescriptors = 0xc000;
  std::vector<Packet> packets;
  Input input(bytes);
  size_t total = 0;
  Packet next;
  while (!input.empty() && packets.size() < kMostPackets) {
    const auto size = input.number<uint16_t>();
    if ((size & kDescriptors) == kDescriptors) {
      next.descriptors = size % 4;
      next.sharedSlots = size % 8 < 4;
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

void sendPackets(int socket, const std::vector<Packet>& packets) {
  UniqueFd shared;
  SharedSlots sharedSlots;
  bool intoSharedSlot = false;
  for (const Packet& packet : packets) {
    if (intoSharedSlot) {
      const auto size = std::min(packet.bytes.size(), SharedSlot::kCapacity);
      std::copy_n(packet.bytes.begin(), size, sharedSlots.out().bytes());
      sharedSlots.out().fill(packet.bytes.size());
      intoSharedSlot = false;
      continue;
    }
    iovec piece{const_cast<uint8_t*>(packet.bytes.data()), packet.bytes.size()};
    msghdr message = {};
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    alignas(cmsghdr) char control[CMSG_SPACE(4 * sizeof(int))] = {};
    if (packet.descriptors > 0) {
      message.msg_control = control;
      message.msg_controllen = CMSG_SPACE(packet.descriptors * sizeof(int));
      cmsghdr* const rights = CMSG_FIRSTHDR(&message);
      rights->cmsg_level = SOL_SOCKET;
      rights->cmsg_type = SCM_RIGHTS;
      rights->cmsg_len = CMSG_LEN(packet.descriptors * sizeof(int));
      if (packet.sharedSlots && !sharedSlots) {
        sharedSlots = SharedSlots::make(&shared);
        FUZZ_CHECK(sharedSlots);
        intoSharedSlot = true;
      }
      // Not this socket, whose end would not come before that of the packet.
      const std::vector<int> descriptors(packet.descriptors,
                                         packet.sharedSlots ? shared.get() : STDERR_FILENO);
      std::memcpy(CMSG_DATA(rights), descriptors.data(), descriptors.size() * sizeof(int));
    }
    if (::sendmsg(socket, &message, MSG_NOSIGNAL | MSG_DONTWAIT) < 0) return;
  }
}

}  // namespace vesk::fuzz
