#include "ipc/Slot.h"

#include <utility>

#include "ipc/Transact.h"

namespace com::qv {

inline std::shared_ptr<const Slot::Callee> Slot::callee() const {
  const std::lock_guard guard(lock_);
  return current_.callee;
}

bool Slot::call(uint32_t code, const Arguments& arguments, void** values) const {
  const std::shared_ptr<const Callee> callee = this->callee();
  if (callee == nullptr) return false;
  if (callee->remote != nullptr) {
    transact(callee->remote.get(), callee->descriptor, code, arguments, values);
  } else {
    callLocally(callee->service.get(), callee->implementationOf(code), arguments, values);
  }
  return true;
}

Slot::DiedCallback Slot::onDeathOf(const ClientBase* client) const {
  const std::lock_guard guard(lock_);
  return current_.client.get() == client ? current_.onServiceDied : nullptr;
}

Slot::Connection Slot::exchange(Connection connection) {
  const std::lock_guard guard(lock_);
  return std::exchange(current_, std::move(connection));
}

void Slot::drop(const ClientBase* client) {
  Connection dropped;  // Outlives the lock, so that the client goes outside it.
  const std::lock_guard guard(lock_);
  if (current_.client.get() == client) std::swap(current_, dropped);
}

}  // namespace com::qv
