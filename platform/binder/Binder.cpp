#include <binder/Binder.h>

#include <binder/IInterface.h>
#include <binder/Parcel.h>
#include <unistd.h>

#include "Transport.h"

namespace android {

sp<IInterface> IBinder::queryLocalInterface(const String16& /*descriptor*/) { return nullptr; }

BBinder* IBinder::localBinder() { return nullptr; }

BpBinder* IBinder::remoteBinder() { return nullptr; }

BBinder::BBinder() = default;

BBinder::~BBinder() {
  const uint64_t number = exportedAs_.load(std::memory_order_relaxed);
  if (number != 0 && !transport::Transport::self().forked) {
    transport::Transport::self().exports.remove(number);
  }
}

const String16& BBinder::getInterfaceDescriptor() const {
  static const String16& none = *new String16();
  return none;
}

bool BBinder::isBinderAlive() const { return true; }

status_t BBinder::pingBinder() { return OK; }

status_t BBinder::dump(int /*fd*/, const Vector<String16>& /*args*/) { return OK; }

status_t BBinder::transact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) {
  Parcel unwanted;
  if (reply == nullptr) reply = &unwanted;
  data.setDataPosition(0);
  status_t status;
  switch (code) {
    case PING_TRANSACTION:
      status = reply->writeInt32(pingBinder());
      break;
    case DEBUG_PID_TRANSACTION:
      status = reply->writeInt32(getpid());
      break;
    default:
      status = onTransact(code, data, reply, flags);
      break;
  }
  reply->setDataPosition(0);
  return status;
}

status_t BBinder::linkToDeath(const sp<DeathRecipient>& /*recipient*/, void* /*cookie*/, uint32_t /*flags*/) {
  return INVALID_OPERATION;
}

status_t BBinder::unlinkToDeath(const wp<DeathRecipient>& /*recipient*/, void* /*cookie*/, uint32_t /*flags*/,
                                wp<DeathRecipient>* /*outRecipient*/) {
  return INVALID_OPERATION;
}

BBinder* BBinder::localBinder() { return this; }

status_t BBinder::onTransact(uint32_t code, const Parcel& /*data*/, Parcel* reply, uint32_t /*flags*/) {
  switch (code) {
    case INTERFACE_TRANSACTION:
      return reply->writeString16(getInterfaceDescriptor());
    case DUMP_TRANSACTION:
      return dump(-1, {});
    case SHELL_COMMAND_TRANSACTION:
    case SYSPROPS_TRANSACTION:
      return OK;
    default:
      return UNKNOWN_TRANSACTION;
  }
}

BpRefBase::BpRefBase(const sp<IBinder>& o) : remote_(o) {}

BpRefBase::~BpRefBase() = default;

IInterface::IInterface() = default;

IInterface::~IInterface() = default;

sp<IBinder> IInterface::asBinder(const IInterface* iface) {
  return iface == nullptr ? nullptr : const_cast<IInterface*>(iface)->onAsBinder();
}

sp<IBinder> IInterface::asBinder(const sp<IInterface>& iface) { return asBinder(iface.get()); }

}  // namespace android
