#pragma once

#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "Channel.h"

namespace android::transport {

/** The unused channels to a process. The one used last is taken first: its memory is in the
 * caches. */
class IdleChannels {
 public:
  /** A channel that is not known to have ended; null if there is none. */
  std::unique_ptr<Channel> take() {
    std::vector<std::unique_ptr<Channel>> ended;  // Closed without the lock.
    const std::lock_guard lock(mutex_);
    while (!channels_.empty()) {
      std::unique_ptr<Channel> channel = std::move(channels_.back());
      channels_.pop_back();
      if (!channel->hasEnded()) return channel;
      ended.push_back(std::move(channel));
    }
    return nullptr;
  }

  /** Keeps a channel; after clear(), closes it. */
  void put(std::unique_ptr<Channel> channel) {
    const std::lock_guard lock(mutex_);
    if (!isCleared_) channels_.push_back(std::move(channel));
  }

  void closeEnded() {
    std::vector<std::unique_ptr<Channel>> ended;
    const std::lock_guard lock(mutex_);
    for (std::unique_ptr<Channel>& channel : channels_) {
      if (channel->hasEnded()) ended.push_back(std::move(channel));
    }
    std::erase(channels_, nullptr);
  }

  /** Closes all channels, also those that put() gets later. */
  void clear() {
    std::vector<std::unique_ptr<Channel>> closed;
    const std::lock_guard lock(mutex_);
    closed.swap(channels_);
    isCleared_ = true;
  }

 private:
  std::mutex mutex_;
  bool isCleared_ = false;
  std::vector<std::unique_ptr<Channel>> channels_;
};

}  // namespace android::transport
