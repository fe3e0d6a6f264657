#pragma once

#include <mutex>
#include <utility>

#include <utils/StrongPointer.h>

#include "ipc/ShortLock.h"

namespace com::qv {

/**
 * The process's current connection to a service. Threads of the application read it while others connect and
 * while the service dies; the lock is held only to copy or exchange the contents, and nothing is released or
 * called under it.
 *
 * Meant to be immortal: calls and events may still look in while the process exits.
 */
template <class Client>
class Slot {
 public:
  using DiedCallback = void (*)();

  struct Connection {
    android::sp<Client> client;
    DiedCallback onServiceDied = nullptr;
  };

  /** The proxy of the current client; null without one. */
  android::sp<typename Client::Service> service() const {
    const std::lock_guard guard(lock_);
    return current_.client == nullptr ? nullptr : current_.client->service;
  }

  /** What to call when `client` has died; null if it is not the current one. */
  template <class Base>
  DiedCallback onDeathOf(const Base* client) const {
    const std::lock_guard guard(lock_);
    return current_.client.get() == client ? current_.onServiceDied : nullptr;
  }

  /** Gives back the connection before. */
  [[nodiscard]] Connection exchange(Connection connection) {
    const std::lock_guard guard(lock_);
    return std::exchange(current_, std::move(connection));
  }

  /** Empties the slot if `client` is still in it: it may have been replaced meanwhile. */
  template <class Base>
  void drop(const Base* client) {
    Connection dropped;  // Outlives the lock, so that the client goes outside it.
    const std::lock_guard guard(lock_);
    if (current_.client.get() == client) std::swap(current_, dropped);
  }

 private:
  mutable ShortLock lock_;
  Connection current_;
};

}  // namespace com::qv
