#include "Transport.h"

#include <android/log.h>
#include <pthread.h>
#include <sys/random.h>

#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>
#include <utility>

#include "BpBinder.h"
#include "ParcelAccess.h"

namespace android::transport {

Transport& Transport::self() {
  static Transport& transport = *new Transport();
  return transport;
}

Transport::Transport() : id(randomNumber()) {}

status_t Transport::addressOf(IBinder* object, Address* address) {
  if (const BpBinder* proxy = object->remoteBinder(); proxy != nullptr) {
    *address = {proxy->process().id(), proxy->number()};
    return OK;
  }
  if (const status_t status = reactor.listen(); status != OK) return status;
  *address = {id, exports.numberOf(object->localBinder())};
  return OK;
}

sp<IBinder> Transport::objectAt(const Address& address) {
  if (address.process == id) return exports.find(address.number);
  const std::shared_ptr<Remote> remote = remotes.connect(address.process);
  return remote == nullptr ? nullptr : remote->proxy(address.number);
}

status_t Transport::describe(const Parcel& parcel, std::vector<ObjectEntry>* entries) {
  for (const ParcelAccess::Object& object : ParcelAccess::objects(parcel)) {
    Address address;
    if (const status_t status = addressOf(object.binder.get(), &address); status != OK) return status;
    entries->push_back({.owner = address.process, .number = address.number, .offset = object.offset});
  }
  return OK;
}

status_t Transport::adopt(Parcel* parcel, const std::vector<ObjectEntry>& entries) {
  size_t end = 0;
  for (const ObjectEntry& entry : entries) {
    if (entry.offset < end || !ParcelAccess::hasFlatBinder(*parcel, entry.offset)) return BAD_VALUE;
    end = entry.offset + sizeof(FlatBinder);
  }
  std::vector<ParcelAccess::Object> objects;
  objects.reserve(entries.size());
  for (const ObjectEntry& entry : entries) {
    sp<IBinder> binder = objectAt({entry.owner, entry.number});
    if (binder == nullptr) {
      // Its process is gone or out of reach: an object that is dead from the start.
      binder = new BpBinder(std::make_shared<Remote>(entry.owner, true), entry.number);
    }
    objects.push_back({entry.offset, std::move(binder)});
  }
  ParcelAccess::setObjects(parcel, std::move(objects));
  return OK;
}

uint64_t randomNumber() {
  uint64_t number = 0;
  // 0 stands for none. The call can't fail for so few bytes but by a signal early at boot.
  while (number == 0) {
    if (::getrandom(&number, sizeof(number), 0) != sizeof(number)) number = 0;
  }
  return number;
}

bool startThread(const char* name, std::function<void()> work) {
  // The application's signal handlers run on its own threads.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  bool started = true;
  try {
    std::thread thread(std::move(work));
    pthread_setname_np(thread.native_handle(), name);
    thread.detach();
  } catch (const std::system_error& error) {
    __android_log_print(ANDROID_LOG_ERROR, "binder", "can't start the thread %s: %s", name, error.what());
    started = false;
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return started;
}

}  // namespace android::transport
