/*
 * Declares the classes of one interface. Include it once for each interface, outside of any
 * namespace. Before that, define COM_QV_INTERFACE as the interface's name without the leading I:
 * for CallService, the methods are the rows of <com/qv/CallService.def>. This file undefines the
 * macro. ipc/DefineInterface.h defines the member functions.
 */

#include <com/qv/detail/Platform.h>

#include <binder/IInterface.h>
#include <binder/Parcel.h>
#include <binder/Status.h>
#include <com/qv/CommonParcelable.h>
#include <com/qv/Export.h>
#include <com/qv/detail/Methods.h>

#define COM_QV_I COM_QV_CAT(I, COM_QV_INTERFACE)
#define COM_QV_BP COM_QV_CAT(Bp, COM_QV_INTERFACE)
#define COM_QV_BN COM_QV_CAT(Bn, COM_QV_INTERFACE)
#define COM_QV_DEFAULT COM_QV_CAT(Default, COM_QV_INTERFACE)

namespace com::qv {

/** The interface: one method for each row, in the order of the codes. */
class COM_QV_EXPORT COM_QV_I : public android::IInterface {
 public:
  /** "com.qv." and the interface's name. Never destroyed, since binder threads may use it while the
   * process exits. */
  static const android::String16& descriptor;
  virtual const android::String16& getInterfaceDescriptor() const { return descriptor; }

  /** The object itself if it lives in this process, otherwise a new proxy; null for null. */
  static android::sp<COM_QV_I> asInterface(const android::sp<android::IBinder>& binder);

#define METHOD(code, name, ...) virtual android::binder::Status name(COM_QV_PARAMS(__VA_ARGS__)) = 0;
#include COM_QV_METHODS
#undef METHOD
};

/** The proxy. A failed call leaves the out-arguments unchanged. Thread-safe. */
class COM_QV_EXPORT COM_QV_BP : public android::BpInterface<COM_QV_I> {
 public:
  explicit COM_QV_BP(const android::sp<android::IBinder>& remote);
  ~COM_QV_BP() override;

#define METHOD(code, name, ...) android::binder::Status name(COM_QV_PARAMS(__VA_ARGS__)) override;
#include COM_QV_METHODS
#undef METHOD

 private:
  template <class... Parameters>
  COM_QV_HIDDEN android::binder::Status callRemote(Parameters... parameters, uint32_t code);
};

/** The stub: base class of a service that implements the whole interface. Methods are called on
 * binder threads, several at once. */
class COM_QV_EXPORT COM_QV_BN : public android::BnInterface<COM_QV_I> {
 public:
  COM_QV_BN();
  ~COM_QV_BN() override;

  android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                               uint32_t flags = 0) override;
};

/** A stub whose methods return EX_UNSUPPORTED_OPERATION: base class of a service that implements a
 * part of the interface. */
class COM_QV_EXPORT COM_QV_DEFAULT : public COM_QV_BN {
 public:
#define METHOD(code, name, ...)                                                                           \
  android::binder::Status name(COM_QV_TYPES(__VA_ARGS__)) override {                                      \
    return android::binder::Status::fromExceptionCode(android::binder::Status::EX_UNSUPPORTED_OPERATION); \
  }
#include COM_QV_METHODS
#undef METHOD
};

}  // namespace com::qv

#undef COM_QV_I
#undef COM_QV_BP
#undef COM_QV_BN
#undef COM_QV_DEFAULT
#undef COM_QV_INTERFACE
