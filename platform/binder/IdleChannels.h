#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

#include "Channel.h"

namespace android::transport {

/**
 * The channels to a process that nobody uses. A thread mostly finds the one that it used last, whose thread
 * at the other end has its memory at hand, and threads don't wait for each other.
 */
class IdleChannels {
 public:
  IdleChannels() = default;
  ~IdleChannels() { clear(); }
  IdleChannels(const IdleChannels&) = delete;
  IdleChannels& operator=(const IdleChannels&) = delete;

  /** One whose other end still stands, as far as this process knows; null if there is none. */
  std::unique_ptr<Channel> take();
  void put(std::unique_ptr<Channel> channel);
  void clear();

 private:
  static constexpr size_t kPlaces = 64;

  std::unique_ptr<Channel> takeAny();

  /** Each for the threads of one number. */
  std::array<std::atomic<Channel*>, kPlaces> places_{};
  /** Those whose place was taken. */
  std::atomic<size_t> otherCount_{0};
  std::mutex mutex_;
  std::vector<std::unique_ptr<Channel>> others_;
};

}  // namespace android::transport
