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

namespace android::transport {

/** Another process, as the owner of objects sees it: the references that it holds. */
class HolderProcess {
 public:
  HolderProcess(uint64_t process, pid_t pid) : id_(process), pid_(pid) {}

  uint64_t id() const { return id_; }
  pid_t pid() const { return pid_; }

  /** Counts a reference. False if the peer is dead already, or the object has lost that number. */
  bool hold(uint64_t number, const sp<BBinder>& object);
  /** Drops a reference; what the peer held then, so that it goes outside of any lock. */
  sp<BBinder> drop(uint64_t number);
  /** Drops all references to an object; what the peer held then. */
  sp<BBinder> forget(uint64_t number);
  /** The object, if the peer holds it. */
  sp<BBinder> find(uint64_t number);
  /** Drops everything for good. */
  std::vector<sp<BBinder>> dropAll();

 private:
  struct Reference {
    sp<BBinder> object;
    uint32_t count;
  };

  const uint64_t id_;
  const pid_t pid_;
  std::mutex mutex_;
  bool dead_ = false;
  std::unordered_map<uint64_t, Reference> references_;
};

/** The objects of this process that other processes know, by number. Numbers can't be guessed. */
class Exports {
 public:
  /** The object's number, which it gets if it has none. */
  uint64_t numberOf(BBinder* object);
  /** The object of that number, if it is alive. */
  sp<BBinder> find(uint64_t number);
  /** The object of that number is destroyed. */
  void remove(uint64_t number);
  /** Takes the object's number away for good; 0 if it has none. Nobody holds it by that any more, and
   * `holders` are those who did. */
  uint64_t retire(BBinder* object, std::vector<std::shared_ptr<HolderProcess>>* holders);
  static bool isNumberOf(const BBinder& object, uint64_t number) {
    return object.exportedAs_.load() == number;
  }

  /** Keeps a registered service alive, in place of what was registered under that name before. */
  void keepService(const std::string& name, const sp<IBinder>& service);

  /** A process has connected. Null if it has already. */
  std::shared_ptr<HolderProcess> addHolder(uint64_t process, pid_t pid);
  std::shared_ptr<HolderProcess> peer(uint64_t process);
  void removeHolder(const HolderProcess& peer);

 private:
  std::mutex mutex_;
  std::unordered_map<uint64_t, wp<BBinder>> objects_;
  std::unordered_map<std::string, sp<IBinder>> services_;
  std::unordered_map<uint64_t, std::shared_ptr<HolderProcess>> holders_;
};

}  // namespace android::transport
