#pragma once

#include <memory>
#include <mutex>

#include <com/qv/ClientBase.h>
#include <utils/StrongPointer.h>

#include "ipc/FutexMutex.h"
#include "ipc/Method.h"

namespace com::qv {

/**
 * The process's current connection to a service. Threads of the application read it while others connect and
 * while the service dies; the lock is held only to copy or exchange the contents, and nothing is released or
 * called under it.
 *
 * Meant to be immortal: calls and events may still look in while the process exits.
 */
class Slot {
 public:
  using DiedCallback = void (*)();

  /** What calls go to. */
  struct Callee {
    android::sp<android::IInterface> service;
    /** What `service` is a proxy of; null if it is an object of this process. */
    android::sp<android::IBinder> remote;
    const android::String16& descriptor;
    Implementation (*implementationOf)(uint32_t code);
  };

  struct Connection {
    android::sp<ClientBase> client;
    DiedCallback onServiceDied = nullptr;
    /** Apart from the client, which calls that are under way don't keep. Counted by this pointer alone,
     * inline. */
    std::shared_ptr<const Callee> callee;
  };

  /** The proxy of the current client, which is a `Client`; null without one. */
  template <class Client>
  android::sp<typename Client::Service> service() const {
    const std::lock_guard guard(lock_);
    return current_.client == nullptr ? nullptr : static_cast<const Client&>(*current_.client).service;
  }

  /** Calls a method of the current client's service, which is held meanwhile. False without a client. */
  bool call(uint32_t code, const Arguments& arguments, void** values) const;

  /** What to call when `client` has died; null if it is not the current one. */
  DiedCallback onDeathOf(const ClientBase* client) const;

  /** Gives back the connection before. */
  [[nodiscard]] Connection exchange(Connection connection);

  /** Empties the slot if `client` is still in it: it may have been replaced meanwhile. */
  void drop(const ClientBase* client);

 private:
  std::shared_ptr<const Callee> callee() const;

  mutable FutexMutex lock_;
  Connection current_;
};

}  // namespace com::qv
