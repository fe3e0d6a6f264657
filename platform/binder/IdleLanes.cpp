#include "IdleLanes.h"

#include <utility>

namespace android::transport {

namespace {

size_t placeOfThread() {
  static std::atomic<size_t> threads{0};
  thread_local const size_t number = threads.fetch_add(1, std::memory_order_relaxed);
  return number;
}

std::unique_ptr<Lane> takeFrom(std::atomic<Lane*>& place) {
  // In order with isDead(): see Remote::returnLane().
  if (place.load() == nullptr) return nullptr;
  return std::unique_ptr<Lane>(place.exchange(nullptr));
}

}  // namespace

std::unique_ptr<Lane> IdleLanes::take() {
  std::unique_ptr<Lane> lane;
  do {
    lane = takeAny();
  } while (lane != nullptr && lane->hasEnded());
  return lane;
}

std::unique_ptr<Lane> IdleLanes::takeAny() {
  const size_t own = placeOfThread();
  for (size_t i = 0; i < kPlaces; ++i) {
    if (std::unique_ptr<Lane> lane = takeFrom(places_[(own + i) % kPlaces]); lane != nullptr) return lane;
    if (i > 0 || otherCount_ == 0) continue;
    const std::lock_guard lock(mutex_);
    if (others_.empty()) continue;
    std::unique_ptr<Lane> lane = std::move(others_.back());
    others_.pop_back();
    --otherCount_;
    return lane;
  }
  return nullptr;
}

void IdleLanes::put(std::unique_ptr<Lane> lane) {
  Lane* none = nullptr;
  if (places_[placeOfThread() % kPlaces].compare_exchange_strong(none, lane.get())) {
    static_cast<void>(lane.release());
    return;
  }
  const std::lock_guard lock(mutex_);
  others_.push_back(std::move(lane));
  ++otherCount_;
}

void IdleLanes::clear() {
  for (std::atomic<Lane*>& place : places_) takeFrom(place);
  std::vector<std::unique_ptr<Lane>> others;
  const std::lock_guard lock(mutex_);
  others.swap(others_);
  otherCount_ = 0;
}

}  // namespace android::transport
