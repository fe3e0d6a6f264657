#include "IdleChannels.h"

#include <utility>

namespace android::transport {

namespace {

size_t placeOfThread() {
  static std::atomic<size_t> threads{0};
  thread_local const size_t number = threads.fetch_add(1, std::memory_order_relaxed);
  return number;
}

std::unique_ptr<Channel> takeFrom(std::atomic<Channel*>& place) {
  // In order with isDead(): see OwnerProcess::returnChannel().
  if (place.load() == nullptr) return nullptr;
  return std::unique_ptr<Channel>(place.exchange(nullptr));
}

}  // namespace

std::unique_ptr<Channel> IdleChannels::take() {
  std::unique_ptr<Channel> channel;
  do {
    channel = takeAny();
  } while (channel != nullptr && channel->hasEnded());
  return channel;
}

std::unique_ptr<Channel> IdleChannels::takeAny() {
  const size_t own = placeOfThread();
  for (size_t i = 0; i < kPlaces; ++i) {
    if (std::unique_ptr<Channel> channel = takeFrom(places_[(own + i) % kPlaces]); channel != nullptr)
      return channel;
    if (i > 0 || otherCount_ == 0) continue;
    const std::lock_guard lock(mutex_);
    if (others_.empty()) continue;
    std::unique_ptr<Channel> channel = std::move(others_.back());
    others_.pop_back();
    --otherCount_;
    return channel;
  }
  return nullptr;
}

void IdleChannels::put(std::unique_ptr<Channel> channel) {
  Channel* none = nullptr;
  if (places_[placeOfThread() % kPlaces].compare_exchange_strong(none, channel.get())) {
    static_cast<void>(channel.release());
    return;
  }
  const std::lock_guard lock(mutex_);
  others_.push_back(std::move(channel));
  ++otherCount_;
}

void IdleChannels::clear() {
  for (std::atomic<Channel*>& place : places_) takeFrom(place);
  std::vector<std::unique_ptr<Channel>> others;
  const std::lock_guard lock(mutex_);
  others.swap(others_);
  otherCount_ = 0;
}

}  // namespace android::transport
