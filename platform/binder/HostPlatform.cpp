#include <binder/HostPlatform.h>

#include <memory>
#include <vector>

#include <binder/Binder.h>

#include "Transport.h"

namespace android::host {

void killObject(const sp<IBinder>& object) {
  BBinder* const local = object == nullptr ? nullptr : object->localBinder();
  if (local == nullptr) return;
  transport::Transport& transport = transport::Transport::self();
  if (transport.forked) return;
  std::vector<std::shared_ptr<transport::HolderProcess>> holders;
  const uint64_t number = transport.exports.retire(local, &holders);
  for (const std::shared_ptr<transport::HolderProcess>& holder : holders) {
    holder->sendDeath(number);
  }
}

}  // namespace android::host
