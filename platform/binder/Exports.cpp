#include "Exports.h"

#include <sys/socket.h>

#include <utility>

#include "RandomNumber.h"
#include "RetryOnInterrupt.h"

namespace android::transport {

bool HolderProcess::hold(uint64_t number, const sp<BBinder>& object) {
  const std::lock_guard lock(mutex_);
  // A number that goes meanwhile is gone before retire() asks here.
  if (dead_ || !Exports::isNumberOf(*object, number)) return false;
  const auto [entry, isNew] = references_.try_emplace(number, Reference{object, 0});
  ++entry->second.count;
  return true;
}

sp<BBinder> HolderProcess::drop(uint64_t number) {
  const std::lock_guard lock(mutex_);
  const auto entry = references_.find(number);
  if (entry == references_.end() || --entry->second.count > 0) return nullptr;
  return std::move(references_.extract(entry).mapped().object);
}

sp<BBinder> HolderProcess::forget(uint64_t number) {
  const std::lock_guard lock(mutex_);
  const auto entry = references_.find(number);
  return entry == references_.end() ? nullptr : std::move(references_.extract(entry).mapped().object);
}

sp<BBinder> HolderProcess::find(uint64_t number) {
  const std::lock_guard lock(mutex_);
  const auto entry = references_.find(number);
  return entry == references_.end() ? nullptr : entry->second.object;
}

std::vector<sp<BBinder>> HolderProcess::end() {
  std::vector<sp<BBinder>> dropped;
  const std::lock_guard lock(mutex_);
  dead_ = true;
  for (auto& [number, reference] : references_) dropped.push_back(std::move(reference.object));
  references_.clear();
  // Not closed: the threads that serve this process keep it for a while.
  ::shutdown(watch_.get(), SHUT_RDWR);
  return dropped;
}

void HolderProcess::sendDeath(ObjectDeath number) {
  const auto sending = [&] {
    return ::send(watch_.get(), &number, sizeof(number), MSG_NOSIGNAL | MSG_DONTWAIT);
  };
  // A process that has left so many unread is stuck: this one counts as dead to it, and not the
  // object as alive.
  if (retryOnInterrupt(sending) < 0) ::shutdown(watch_.get(), SHUT_RDWR);
}

uint64_t Exports::numberOf(BBinder* object) {
  const std::lock_guard lock(mutex_);
  uint64_t number = object->exportedAs_.load(std::memory_order_relaxed);
  if (number == 0) {
    number = randomNumber();
    object->exportedAs_.store(number, std::memory_order_relaxed);
    objects_.emplace(number, object);
  }
  return number;
}

sp<BBinder> Exports::find(uint64_t number) {
  const std::lock_guard lock(mutex_);
  const auto entry = objects_.find(number);
  return entry == objects_.end() ? nullptr : entry->second.promote();
}

void Exports::remove(uint64_t number) {
  const std::lock_guard lock(mutex_);
  objects_.erase(number);
}

uint64_t Exports::retire(BBinder* object, std::vector<std::shared_ptr<HolderProcess>>* holders) {
  std::vector<std::shared_ptr<HolderProcess>> all;
  uint64_t number;
  {
    const std::lock_guard lock(mutex_);
    number = object->exportedAs_.exchange(0);
    if (number == 0) return 0;
    objects_.erase(number);
    for (const auto& [process, holder] : holders_) all.push_back(holder);
  }
  for (std::shared_ptr<HolderProcess>& holder : all) {
    if (holder->forget(number) != nullptr) holders->push_back(std::move(holder));
  }
  return number;
}

sp<IBinder> Exports::keepService(const std::string& name, const sp<IBinder>& service) {
  sp<IBinder> kept = service;
  const std::lock_guard lock(mutex_);
  services_[name].swap(kept);
  return kept;
}

std::shared_ptr<HolderProcess> Exports::addHolder(uint64_t process, pid_t pid, UniqueFd watch) {
  const std::lock_guard lock(mutex_);
  const auto [entry, isNew] = holders_.try_emplace(process);
  if (!isNew) return nullptr;
  entry->second = std::make_shared<HolderProcess>(process, pid, std::move(watch));
  return entry->second;
}

std::shared_ptr<HolderProcess> Exports::holder(uint64_t process) {
  const std::lock_guard lock(mutex_);
  const auto entry = holders_.find(process);
  return entry == holders_.end() ? nullptr : entry->second;
}

void Exports::removeHolder(const HolderProcess& holder) {
  const std::lock_guard lock(mutex_);
  holders_.erase(holder.id());
}

}  // namespace android::transport
