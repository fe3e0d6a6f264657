#include "ipc/ClientApi.h"

#include <exception>
#include <thread>

namespace com::qv {

namespace {

/** The head of a list that only the static initialisers of the library write, on one thread. */
constinit ClientSlot* firstSlot = nullptr;

}  // namespace

/** Releases the clients when the library's static objects are destroyed. */
struct ReleaseAtExit {
  ~ReleaseAtExit() {
    for (ClientSlot* slot = firstSlot; slot != nullptr; slot = slot->next_) {
      // A forked child releases only a client that it has connected itself: the others are its
      // parent's.
      if (slot->connectedPid_ == ::getpid()) slot->disconnect();
    }
  }
};

namespace {

const ReleaseAtExit kReleaseAtExit;

}  // namespace

ClientSlot::ClientSlot() : next_(std::exchange(firstSlot, this)) {}

void ClientSlot::disconnect() {
  Connection dropped;
  {
    const std::lock_guard lock(mutex_);
    std::swap(current_, dropped);
  }
  unlinkFromDeath(dropped);
}

void ClientSlot::unlinkFromDeath(const Connection& connection) {
  // The binder lives as long as its service, and would collect a link for each connect.
  if (connection.client != nullptr && connection.client->deathHook != nullptr) {
    connection.client->binder->unlinkToDeath(connection.client);
  }
}

void ClientSlot::linkToDeath(const android::sp<ClientBase>& client) {
  if (client->binder->linkToDeath(client, nullptr, 0) != android::DEAD_OBJECT) return;
  // The service died before the link, and the binder sends no obituary. The death is reported on a
  // new thread, since the application may hold locks around its connect.
  try {
    std::thread([client] { client->binderDied(client->binder); }).detach();
  } catch (const std::exception&) {
    client->binderDied(client->binder);  // Without a thread, rather here than not at all.
  }
}

void ClientSlot::died(const ClientBase* client) {
  Connection dropped;  // Declared before the lock, so that the client is released without it.
  std::unique_lock lock(mutex_);
  if (current_.client.get() != client) return;
  const DiedCallback onServiceDied = current_.onServiceDied;
  lock.unlock();
  if (onServiceDied != nullptr) onServiceDied();

  lock.lock();
  // The callback may have connected again.
  if (current_.client.get() == client) std::swap(current_, dropped);
}

}  // namespace com::qv
