#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include <binder/Parcel.h>

#include "Exports.h"
#include "Frame.h"
#include "Listener.h"
#include "OwnerProcesses.h"
#include "Reactor.h"
#include "RuntimeDir.h"
#include "ServedChannels.h"

namespace android::transport {

/** Everything that a process knows of others. It is made on first need and never destroyed: threads
 * still use it while the process exits. */
struct Transport {
  static Transport& self();

  Transport();

  /** This process, in every address. */
  const uint64_t id;
  Exports exports;
  OwnerProcesses owners;
  Reactor reactor;
  ServedChannels served{*this};
  Listener listener{*this};
  /** Set once binder threads may run. */
  std::atomic<bool> poolStarted{false};
  /** Set in a forked child, which must not use the connections, the epoll set and the objects of
   * its parent, nor take a lock that a thread of its parent may have held. */
  std::atomic<bool> forked{false};

  /** The address of an object, local or not, which makes this process reachable if the object is
   * its own. */
  status_t addressOf(IBinder* object, Address* address);
  /** The object at an address. DEAD_OBJECT if it is no more, other errors if it can't be had for
   * now. */
  status_t objectAt(const Address& address, sp<IBinder>* object);

  /** The binders in a parcel as they go out with it. */
  status_t flattenBinders(const Parcel& parcel, std::vector<ObjectEntry>* entries);
  /**
   * Gives a parcel that came in its binders, holding them; those whose processes have died arrive
   * dead. BAD_VALUE if the entries don't fit its data.
   */
  status_t unflattenBinders(Parcel* parcel, const std::vector<ObjectEntry>& entries);
};

}  // namespace android::transport
