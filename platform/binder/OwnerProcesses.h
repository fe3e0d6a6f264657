#pragma once

#include <atomic>
#include <chrono>
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
#include "Frame.h"
#include "IdleChannels.h"
#include "Reactor.h"
#include "UniqueFd.h"

namespace android {
class BpBinder;
}

namespace android::transport {

/** Another process, as the holder of its objects sees it: the channels to it and the proxies of its objects.
 */
class OwnerProcess : public std::enable_shared_from_this<OwnerProcess> {
 public:
  explicit OwnerProcess(uint64_t process, bool dead = false) : id_(process), dead_(dead) {}

  uint64_t id() const { return id_; }
  bool isDead() const { return dead_.load(); }

  /** Makes the watch connection, if there is none yet. After a failure this OwnerProcess is of no more use.
   */
  status_t connect();

  /** The one proxy of an object. DEAD_OBJECT if the object is no more. */
  status_t proxy(uint64_t number, sp<IBinder>* object);

  status_t transact(uint64_t number, uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags);

  /** A proxy is destroyed. */
  void release(const BpBinder& proxy);

 private:
  /** The reactor's handler of the watch connection: an object is dead, or this process. */
  void onWatchReadable();
  void objectDied(uint64_t number);
  void died();

  /** An idle channel or a new one, over which the releases that were put off have been sent, as far as it
   * takes them. */
  std::unique_ptr<Channel> takeChannel(status_t* status);
  std::unique_ptr<Channel> openChannel(std::chrono::steady_clock::time_point deadline,
                                       status_t* status) const;
  void returnChannel(std::unique_ptr<Channel> channel);
  status_t openWatch(std::string* failure);
  status_t acquire(uint64_t number);
  void sendRelease(uint64_t number);
  /** Sends what was put off. On a thread that may wait. */
  void sendDeferredReleases();
  void deferRelease(const uint64_t* numbers, size_t count);
  sp<BpBinder> knownProxy(uint64_t number);

  const uint64_t id_;
  std::atomic<bool> dead_;
  UniqueFd watch_;
  Reactor::Key watchKey_ = 0;
  std::mutex connecting_;
  /** What came of connecting, once it has been tried. */
  std::optional<status_t> connected_;

  IdleChannels idle_;
  std::mutex mutex_;
  std::unordered_map<uint64_t, wp<BpBinder>> proxies_;
  /** Objects that threads are about to hold, and whether they died meanwhile. Of others there is nothing to
   * remember: their process says itself that they are no more. */
  struct Acquiring {
    int threads = 0;
    bool isDead = false;
  };
  std::unordered_map<uint64_t, Acquiring> acquiring_;
  /** Objects to be released that no channel would take at the time. */
  std::vector<uint64_t> unreleased_;
  std::atomic<bool> hasUnreleased_{false};
  /** A thread is about to send them. */
  std::atomic<bool> sendsDeferred_{false};
};

/** All processes whose objects this process holds. */
class OwnerProcesses {
 public:
  /** The process of that number. DEAD_OBJECT if it is no more. */
  status_t connect(uint64_t process, std::shared_ptr<OwnerProcess>* owner);
  void remove(const OwnerProcess& owner);

 private:
  std::mutex mutex_;
  std::unordered_map<uint64_t, std::shared_ptr<OwnerProcess>> owners_;
};

}  // namespace android::transport
