#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

/*
 * What goes over a connection between two processes, in the byte order of the machine that both run on.
 *
 * A connection opens with one Hello. A watch connection is answered by a Hello, and its end is the death of
 * the other side. Before that, who was called may send an ObjectDeath over it, as often as there is one to
 * tell of; who has called says nothing more. On a channel, frames follow: a FrameHeader, the parcel's data,
 * and an ObjectEntry for each binder in it. The calling side sends a request, an acquire or a release; the
 * serving side answers all but the release with a reply. A reply that holds binders is held by its sender
 * until the caller has answered it with a claimed frame.
 *
 * The calling side may open a channel with a share frame, which brings the SharedSlots of the channel as a
 * file descriptor. The first reply says whether the serving side has them, too. If so, every later frame goes
 * by them, as far as it fits in, and the rest over the socket.
 */
namespace android::transport {

constexpr uint32_t kMagic = 0x31444e42;  // "BND1"

enum class ConnectionKind : uint32_t { kChannel = 1, kWatch = 2 };

struct Hello {
  uint32_t magic = kMagic;
  ConnectionKind kind;
  /** The process that sends this. */
  uint64_t process;
};

/** On a watch connection: the object of this number is dead for the other side, though its process lives. */
using ObjectDeath = uint64_t;

enum class FrameKind : uint32_t {
  /** A transaction: `object`, `code`, `flags`, the data. */
  kRequest = 1,
  /** The answer: `status`, and the data if that is OK. */
  kReply = 2,
  /** The receiver of a reply holds references of its own to all that was in it. */
  kClaimed = 3,
  /** The calling process wants to hold `object`. */
  kAcquire = 4,
  /** The calling process lets go of `object`, once for each acquire. Not answered. */
  kRelease = 5,
  /** The first frame of a channel: here are shared slots. Not answered. */
  kShare = 6,
};

/** In a request: the one before was answered a moment ago, so that the next is likely to follow as fast. */
constexpr uint32_t kHintBackToBack = 1;
/** In a reply, the first of a channel: this side has the shared slots, and all that follows goes by them. */
constexpr uint32_t kHintShared = 2;

struct FrameHeader {
  uint32_t magic = kMagic;
  FrameKind kind;
  uint64_t object = 0;
  uint32_t code = 0;
  uint32_t flags = 0;
  int32_t status = 0;
  uint32_t dataSize = 0;
  uint32_t objectCount = 0;
  /** About the channel, not the transaction: kHint... */
  uint32_t hints = 0;
};

/** A binder in the data: the process it lives in, its number there, and where its place in the data begins.
 */
struct ObjectEntry {
  uint64_t owner;
  uint64_t number;
  uint32_t offset;
  uint32_t reserved = 0;
};

// The same between 32-bit and 64-bit processes.
static_assert(sizeof(Hello) == 16 && sizeof(FrameHeader) == 40 && sizeof(ObjectEntry) == 24);
static_assert(offsetof(FrameHeader, object) == 8 && offsetof(Hello, process) == 8);

/** The most that a transaction may carry in either direction. */
constexpr size_t kMaxDataSize = 1024 * 1024;

/** The receiver doesn't know yet how long the frame is: its first packet has to fit this. */
constexpr size_t kFirstPacketSize = 16 * 1024 - 64;
/** The most that the other packets of a frame hold. */
constexpr size_t kPacketSize = 64 * 1024;

}  // namespace android::transport
