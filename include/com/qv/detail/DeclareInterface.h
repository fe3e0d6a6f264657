/*
 * Declares the classes of one interface from its rows. Included once per interface, outside of any
 * namespace, with COM_QV_INTERFACE defined as the interface's name without the leading I, for
 * example CallService. Its rows are in <com/qv/CallService.def> then. The macro is undefined again
 * at the end. The bodies come from ipc/DefineInterface.h.
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

/** The interface: one method for each row, in code order. */
class COM_QV_EXPORT COM_QV_I : public android::IInterface {
 public:
  /** "com.qv." and the interface's name. Never destroyed: binder threads still compare it while the
   * process exits. */
  static const android::String16& descriptor;
  virtual const android::String16& getInterfaceDescriptor() const { return descriptor; }

  /** The object itself if it lives in this process, a new proxy for it if not; null for null. */
  static android::sp<COM_QV_I> asInterface(const android::sp<android::IBinder>& binder);

#define METHOD(code, name, ...) virtual android::binder::Status name(COM_QV_PARAMS(__VA_ARGS__)) = 0;
#include COM_QV_METHODS
#undef METHOD
};

/** The proxy. A failed call writes no out-argument. Safe to use from several threads. */
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

/** The stub, from which a process that serves the whole interface derives. Methods are called on
 * binder threads, several at once. */
class COM_QV_EXPORT COM_QV_BN : public android::BnInterface<COM_QV_I> {
 public:
  COM_QV_BN();
  ~COM_QV_BN() override;

  android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                               uint32_t flags = 0) override;
};

/** A stub that answers EX_UNSUPPORTED_OPERATION to everything, for a process that serves a part of
 * the interface. */
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
