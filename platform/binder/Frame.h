#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

/*
 * What goes over a connection between two processes, in the byte order of the machine that both run on.
 *
 * A connection opens with one Hello. A watch connection is answered by a Hello and then stays silent: its end
 * is the death of the other side. On a lane, frames follow: a FrameHeader, the parcel's data, and an
 * ObjectEntry for each binder in it. The calling side sends a request, an acquire or a release; the serving
 * side answers all but the release with a reply. A reply that holds binders is held by its sender until the
 * caller has answered it with a claimed frame.
 */
namespace android::transport {

constexpr uint32_t kMagic = 0x31444e42;  // "BND1"

enum class ConnectionKind : uint32_t { kLane = 1, kWatch = 2 };

struct Hello {
  uint32_t magic = kMagic;
  ConnectionKind kind;
  /** The process that sends this. */
  uint64_t process;
};

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
};

struct FrameHeader {
  uint32_t magic = kMagic;
  FrameKind kind;
  uint64_t object = 0;
  uint32_t code = 0;
  uint32_t flags = 0;
  int32_t status = 0;
  uint32_t dataSize = 0;
  uint32_t objectCount = 0;
  uint32_t reserved = 0;
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

}  // namespace android::transport
