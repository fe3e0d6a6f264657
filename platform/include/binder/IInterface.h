#pragma once

#include <binder/Binder.h>

namespace android {

/** The base of every interface class. */
class IInterface : public virtual RefBase {
 public:
  IInterface();

  /** The binder of an interface object: the object itself if it is local, the remote object of a
   * proxy, null for null. */
  static sp<IBinder> asBinder(const IInterface* iface);
  static sp<IBinder> asBinder(const sp<IInterface>& iface);

 protected:
  ~IInterface() override;
  virtual IBinder* onAsBinder() = 0;
};

/** The base of the stub of `INTERFACE`: a local object. */
template <typename INTERFACE>
class BnInterface : public INTERFACE, public BBinder {
 public:
  sp<IInterface> queryLocalInterface(const String16& wanted) override {
    if (wanted == INTERFACE::descriptor) return sp<IInterface>(static_cast<INTERFACE*>(this));
    return nullptr;
  }
  const String16& getInterfaceDescriptor() const override { return INTERFACE::getInterfaceDescriptor(); }

 protected:
  using BaseInterface = INTERFACE;
  IBinder* onAsBinder() override { return this; }
};

/** The base of the proxy of `INTERFACE`. */
template <typename INTERFACE>
class BpInterface : public INTERFACE, public BpRefBase {
 public:
  explicit BpInterface(const sp<IBinder>& remote) : BpRefBase(remote) {}

 protected:
  using BaseInterface = INTERFACE;
  IBinder* onAsBinder() override { return remote(); }
};

}  // namespace android
