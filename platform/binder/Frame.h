#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

/*
 * The protocol between two processes, in the byte order of the machine that both run on.
 *
 * A connection begins with the Hello of the process that connects. The owner answers the Hello of a
 * watch connection with its own, and the end of this connection is the death of the other process.
 * Over it, the owner sends an ObjectDeath for each object that dies while its process lives, and
 * the holder sends Releases.
 *
 * With the Hello of a channel comes the descriptor of its SharedSlots. Frames go through them: a
 * FrameHeader, the parcel's data, and an ObjectEntry for each binder in it; the rest that doesn't
 * fit into a slot follows over the socket. The caller sends a request or an acquire, and the server
 * answers it with a reply. A reply that holds binders is followed by a claimed frame: until then
 * its sender holds them.
 *
 * The server may close a channel at any time. A frame that it has not taken from the slot was not
 * received.
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

/** The number of an object that is dead for the holder, though its process lives. */
using ObjectDeath = uint64_t;
/** The number of an object of which the holder drops one reference. A packet has one or more. */
using Release = uint64_t;
constexpr size_t kMaxReleases = 512;

enum class FrameKind : uint32_t {
  /** A transaction: `object`, `code`, `flags`, the data. */
  kRequest = 1,
  /** The answer: `status`, and the data if that is OK. */
  kReply = 2,
  /** The receiver of a reply now has references of its own to the binders in it. */
  kClaimed = 3,
  /** Asks for a reference to `object`. */
  kAcquire = 4,
};

/** In a request: it follows the reply to the one before at once, so another is likely to follow. */
constexpr uint32_t kHintBackToBack = 1;

struct FrameHeader {
  uint32_t magic = kMagic;
  FrameKind kind;
  uint64_t object = 0;
  uint32_t code = 0;
  uint32_t flags = 0;
  int32_t status = 0;
  uint32_t dataSize = 0;
  uint32_t objectCount = 0;
  /** kHint... */
  uint32_t hints = 0;
};

/** A binder in the data: the process it lives in, its number there, and where its place in the data
 * begins. */
struct ObjectEntry {
  uint64_t owner;
  uint64_t number;
  uint32_t offset;
  uint32_t reserved = 0;
};

// 32-bit and 64-bit processes agree on these.
static_assert(sizeof(Hello) == 16 && sizeof(FrameHeader) == 40 && sizeof(ObjectEntry) == 24);
static_assert(offsetof(FrameHeader, object) == 8 && offsetof(Hello, process) == 8);

/** The most that a transaction may carry in either direction. */
constexpr size_t kMaxDataSize = 1024 * 1024;

/** The most bytes of a packet of a frame that doesn't fit into a slot. */
constexpr size_t kPacketSize = 64 * 1024;

}  // namespace android::transport
