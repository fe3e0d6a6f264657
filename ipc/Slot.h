#pragma once

#include <mutex>
#include <utility>

#include <utils/StrongPointer.h>

namespace com::qv {

/**
 * The process's current client of a service. Threads of the application read it while others connect and
 * while the service dies; the lock is held only to copy or exchange the pointer, and nothing is released or
 * called under it.
 *
 * Meant to be immortal: calls and events may still look in while the process exits.
 */
template <class Client>
class Slot {
 public:
  /** The proxy of the current client; null without one. */
  android::sp<typename Client::Service> service() const {
    const std::lock_guard lock(mutex_);
    return client_ == nullptr ? nullptr : client_->service;
  }

  bool holds(const void* client) const {
    const std::lock_guard lock(mutex_);
    return client_ != nullptr && client_.get() == client;
  }

  void put(android::sp<Client> client) {
    const std::lock_guard lock(mutex_);
    std::swap(client_, client);
  }

  /** Empties the slot if `client` is still in it: it may have been replaced meanwhile. */
  void drop(const void* client) {
    android::sp<Client> dropped;  // Outlives the lock, so that the client goes outside it.
    const std::lock_guard lock(mutex_);
    if (client_.get() == client) std::swap(client_, dropped);
  }

 private:
  mutable std::mutex mutex_;
  android::sp<Client> client_;
};

}  // namespace com::qv
