#include "Transport.h"

#include <pthread.h>

#include <utility>

#include "BpBinder.h"
#include "ParcelAccess.h"
#include "RandomNumber.h"

namespace android::transport {

Transport& Transport::self() {
  static Transport& transport = *new Transport();
  return transport;
}

Transport::Transport() : id(randomNumber()) {
  ::pthread_atfork(nullptr, nullptr, [] { self().forked = true; });
}

status_t Transport::addressOf(IBinder* object, Address* address) {
  if (forked) return FAILED_TRANSACTION;
  if (const BpBinder* proxy = object->remoteBinder(); proxy != nullptr) {
    *address = {proxy->process().id(), proxy->number()};
    return OK;
  }
  if (object->localBinder() == nullptr) return BAD_TYPE;
  if (const status_t status = listener.listen(); status != OK) return status;
  *address = {id, exports.numberOf(object->localBinder())};
  return OK;
}

status_t Transport::objectAt(const Address& address, sp<IBinder>* object) {
  if (forked) return FAILED_TRANSACTION;
  if (address.process == id) {
    *object = exports.find(address.number);
    return *object == nullptr ? DEAD_OBJECT : OK;
  }
  std::shared_ptr<OwnerProcess> owner;
  const status_t status = owners.connect(address.process, &owner);
  return status == OK ? owner->proxy(address.number, object) : status;
}

status_t Transport::flattenBinders(const Parcel& parcel, std::vector<ObjectEntry>* entries) {
  for (const ParcelAccess::Object& object : ParcelAccess::objects(parcel)) {
    Address address;
    if (const status_t status = addressOf(object.binder.get(), &address); status != OK) return status;
    entries->push_back({.owner = address.process, .number = address.number, .offset = object.offset});
  }
  return OK;
}

status_t Transport::unflattenBinders(Parcel* parcel, const std::vector<ObjectEntry>& entries) {
  size_t end = 0;
  for (const ObjectEntry& entry : entries) {
    if (entry.offset < end || !ParcelAccess::hasFlatBinder(*parcel, entry.offset)) return BAD_VALUE;
    end = entry.offset + sizeof(FlatBinder);
  }
  std::vector<ParcelAccess::Object> objects;
  objects.reserve(entries.size());
  for (const ObjectEntry& entry : entries) {
    sp<IBinder> binder;
    const status_t status = objectAt({entry.owner, entry.number}, &binder);
    if (status == DEAD_OBJECT) {
      binder = new BpBinder(std::make_shared<OwnerProcess>(entry.owner, true), entry.number);
    } else if (status != OK) {
      return status;
    }
    objects.push_back({entry.offset, std::move(binder)});
  }
  ParcelAccess::setObjects(parcel, std::move(objects));
  return OK;
}

}  // namespace android::transport
