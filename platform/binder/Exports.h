#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include <binder/Binder.h>
#include <utils/Errors.h>

#include "Frame.h"
#include "Reactor.h"
#include "UniqueFd.h"

namespace android::transport {

/** Another process, as the owner of objects sees it: the references that it holds. */
class HolderProcess {
 public:
  HolderProcess(uint64_t process, pid_t pid, UniqueFd watch)
      : id_(process), pid_(pid), watch_(std::move(watch)) {}

  uint64_t id() const { return id_; }
  pid_t pid() const { return pid_; }
  /** The watch connection. */
  int watch() const { return watch_.get(); }
  Reactor::Key watchKey = 0;

  /** Counts a reference. False if the holder is dead already, or the object has lost that
   * number. */
  bool hold(uint64_t number, const sp<BBinder>& object);
  /** Drops a reference. Returns the object if it was the last one, to be destroyed without the
   * lock. */
  sp<BBinder> drop(uint64_t number);
  /** Drops all references to an object; null if there was none. */
  sp<BBinder> forget(uint64_t number);
  /** The object, if the holder holds it. */
  sp<BBinder> find(uint64_t number);
  /** Drops all references for good, and ends the watch connection. */
  std::vector<sp<BBinder>> end();
  /** Reports that an object is dead though this process lives. */
  void sendDeath(ObjectDeath number);

 private:
  struct Reference {
    sp<BBinder> object;
    uint32_t count;
  };

  const uint64_t id_;
  const pid_t pid_;
  const UniqueFd watch_;
  std::mutex mutex_;
  bool dead_ = false;
  std::unordered_map<uint64_t, Reference> references_;
};

/** The objects of this process that other processes know, by random numbers. */
class Exports {
 public:
  /** The object's number, which it gets if it has none. */
  uint64_t numberOf(BBinder* object);
  /** The object of that number, if it is alive. */
  sp<BBinder> find(uint64_t number);
  /** Removes the number of an object that is being destroyed. */
  void remove(uint64_t number);
  /** Removes the object's number and drops all references by it. Returns the number, 0 if it had
   * none; `holders` are the processes that had references. */
  uint64_t retire(BBinder* object, std::vector<std::shared_ptr<HolderProcess>>* holders);
  static bool isNumberOf(const BBinder& object, uint64_t number) {
    return object.exportedAs_.load() == number;
  }

  /** Keeps a registered service alive. Returns the one that was kept under that name before. */
  sp<IBinder> keepService(const std::string& name, const sp<IBinder>& service);

  /** Null if there is one for that process already. */
  std::shared_ptr<HolderProcess> addHolder(uint64_t process, pid_t pid, UniqueFd watch);
  std::shared_ptr<HolderProcess> holder(uint64_t process);
  void removeHolder(const HolderProcess& holder);

 private:
  std::mutex mutex_;
  std::unordered_map<uint64_t, wp<BBinder>> objects_;
  std::unordered_map<std::string, sp<IBinder>> services_;
  std::unordered_map<uint64_t, std::shared_ptr<HolderProcess>> holders_;
};

}  // namespace android::transport
