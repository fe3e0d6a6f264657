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

/** The state of the transport in this process. It is made on first use and never destroyed: threads
 * still use it while the process exits. */
struct Transport {
  static Transport& self();

  Transport();

  /** The number of this process in addresses. */
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

  /** The address of an object. For a local object, makes this process reachable first. */
  status_t addressOf(IBinder* object, Address* address);
  /** The object at an address. DEAD_OBJECT if it is dead, other errors if it can't be reached now. */
  status_t objectAt(const Address& address, sp<IBinder>* object);

  /** The entries for the binders in a parcel that is sent. */
  status_t flattenBinders(const Parcel& parcel, std::vector<ObjectEntry>* entries);
  /**
   * Sets the binders of a received parcel and takes references to them. Binders of dead processes
   * arrive dead. BAD_VALUE if the entries don't fit the parcel's data.
   */
  status_t unflattenBinders(Parcel* parcel, const std::vector<ObjectEntry>& entries);
};

}  // namespace android::transport
