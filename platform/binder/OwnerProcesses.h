#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include <binder/IBinder.h>
#include <utils/Errors.h>

#include "Channel.h"
#include "Deadline.h"
#include "Frame.h"
#include "IdleChannels.h"
#include "Reactor.h"
#include "UniqueFd.h"

namespace android {
class BpBinder;
}

namespace android::transport {

/** Another process whose objects this one holds: the channels to it and the proxies of its
 * objects. */
class OwnerProcess : public std::enable_shared_from_this<OwnerProcess> {
 public:
  explicit OwnerProcess(uint64_t process, bool dead = false) : id_(process), dead_(dead) {}

  uint64_t id() const { return id_; }
  bool isDead() const { return dead_.load(); }

  /** Makes the watch connection, if there is none yet. After a failure this object can't be used
   * again. */
  status_t connect();

  /** The one proxy of an object. DEAD_OBJECT if the object is dead. */
  status_t proxy(uint64_t number, sp<IBinder>* object);

  status_t transact(uint64_t number, uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags);

  /** Drops the reference of a proxy that is destroyed. Never waits. */
  void release(const BpBinder& proxy);

 private:
  /** The reactor's handler of the watch connection. */
  void onWatchReady();
  void objectDied(uint64_t number);
  void died();

  status_t openWatch(std::string* failure);
  std::unique_ptr<Channel> openChannel(status_t* status);
  /** Sends a frame and receives its reply. The channel is left to the caller. */
  status_t exchange(const FrameHeader& request, const Parcel* data, const std::vector<ObjectEntry>& objects,
                    const Deadline& deadline, std::unique_ptr<Channel>* channel, FrameHeader* header,
                    Parcel* reply);
  status_t acquire(uint64_t number);
  /** Never waits. Under the lock. */
  void release(uint64_t number);
  /** Sends as many as the watch connection takes; the reactor waits for room for the others. Under
   * the lock. */
  void sendReleases();
  /** Under the lock. */
  sp<BpBinder> knownProxy(uint64_t number);

  const uint64_t id_;
  std::atomic<bool> dead_;
  std::mutex connecting_;
  /** The result of connect(), once it was tried. */
  std::optional<status_t> connected_;

  IdleChannels idle_;
  std::mutex mutex_;
  /** Open from connect() until the process dies. */
  UniqueFd watch_;
  Reactor::Key watchKey_ = 0;
  /** 0 before the first change. */
  uint32_t watchedEvents_ = 0;
  std::vector<Release> unsentReleases_;
  std::unordered_map<uint64_t, wp<BpBinder>> proxies_;
  /** Objects that threads are about to acquire, and whether they died meanwhile. The deaths of
   * others need not be remembered: their process answers that they are dead. */
  struct Acquiring {
    int threads = 0;
    bool isDead = false;
  };
  std::unordered_map<uint64_t, Acquiring> acquiring_;
};

/** All processes whose objects this process holds. */
class OwnerProcesses {
 public:
  /** The process of that number. DEAD_OBJECT if it is dead. */
  status_t connect(uint64_t process, std::shared_ptr<OwnerProcess>* owner);
  void remove(const OwnerProcess& owner);

 private:
  std::mutex mutex_;
  std::unordered_map<uint64_t, std::shared_ptr<OwnerProcess>> owners_;
};

}  // namespace android::transport
