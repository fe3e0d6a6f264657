#include "ipc/ClientApi.h"

#include <system_error>
#include <thread>

namespace com::qv {

namespace {

/** The head of a list that grows only while the library is loaded. */
constinit ClientSlot* firstSlot = nullptr;

}  // namespace

/** Releases the clients when the library's static objects are destroyed. */
struct ReleaseAtExit {
  ~ReleaseAtExit() {
    for (ClientSlot* slot = firstSlot; slot != nullptr; slot = slot->next_) {
      // A forked child releases only a client that it has connected itself: the others are its parent's.
      if (slot->connectedBy_ == ::getpid()) slot->disconnect();
    }
  }
};

namespace {

const ReleaseAtExit kReleaseAtExit;

}  // namespace

ClientSlot::ClientSlot() : next_(std::exchange(firstSlot, this)) {}

void ClientSlot::disconnect() {
  Connection dropped;
  const std::lock_guard lock(mutex_);
  std::swap(current_, dropped);
}

void ClientSlot::retire(const Connection& connection) {
  // The service may outlive many connects, and would keep a link for each.
  if (connection.client != nullptr && connection.client->deathHook != nullptr) {
    connection.client->binder->unlinkToDeath(connection.client);
  }
}

void ClientSlot::linkToDeath(const android::sp<ClientBase>& client) {
  if (client->binder->linkToDeath(client, nullptr, 0) != android::DEAD_OBJECT) return;
  // The service died before the link, so there is no obituary: it is made here, on a thread of its own as the
  // binder's are, since the application may hold locks around its connect.
  try {
    std::thread([client] { client->binderDied(client->binder); }).detach();
  } catch (const std::system_error&) {
    client->binderDied(client->binder);  // Without a thread, here is better than not at all.
  }
}

void ClientSlot::died(const ClientBase* client) {
  std::unique_lock lock(mutex_);
  if (current_.client.get() != client) return;
  const DiedCallback onServiceDied = current_.onServiceDied;
  lock.unlock();
  if (onServiceDied != nullptr) onServiceDied();

  Connection dropped;  // Outlives the lock, so that the client is released outside of it.
  lock.lock();
  // The callback may have connected again.
  if (current_.client.get() == client) std::swap(current_, dropped);
  lock.unlock();
}

}  // namespace com::qv
