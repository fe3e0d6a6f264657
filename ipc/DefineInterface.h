/*
 * Defines the classes that <com/qv/detail/DeclareInterface.h> declares. Included once per interface
 * with COM_QV_INTERFACE defined, for example as CallService.
 */

#include <com/qv/detail/Methods.h>

#include "ipc/Method.h"

#define COM_QV_I COM_QV_CAT(I, COM_QV_INTERFACE)
#define COM_QV_BP COM_QV_CAT(Bp, COM_QV_INTERFACE)
#define COM_QV_BN COM_QV_CAT(Bn, COM_QV_INTERFACE)

namespace com::qv {

namespace {

constexpr uint32_t kCodes[] = {
#define METHOD(code, name, ...) code,
#include COM_QV_METHODS
#undef METHOD
};

constexpr bool codesAreDense() {
  uint32_t next = android::IBinder::FIRST_CALL_TRANSACTION;
  for (const uint32_t code : kCodes) {
    if (code != next++) return false;
  }
  return true;
}
static_assert(codesAreDense(), "the rows of an interface stand in code order, from 1, without a gap");

}  // namespace

const android::String16& COM_QV_I::descriptor = *new android::String16("com.qv." COM_QV_STRING(COM_QV_I));

android::sp<COM_QV_I> COM_QV_I::asInterface(const android::sp<android::IBinder>& binder) {
  if (binder == nullptr) return nullptr;
  if (const android::sp<android::IInterface> local = binder->queryLocalInterface(descriptor);
      local != nullptr) {
    return android::sp<COM_QV_I>(static_cast<COM_QV_I*>(local.get()));
  }
  return android::sp<COM_QV_I>(new COM_QV_BP(binder));
}

// Flattened, since base constructors of their own would need construction vtables in the library.
[[gnu::flatten]] COM_QV_BP::COM_QV_BP(const android::sp<android::IBinder>& remote)
    : android::BpInterface<COM_QV_I>(remote) {}
[[gnu::flatten]] COM_QV_BP::~COM_QV_BP() = default;

/** One instance for each parameter list. `code` is last, so that the other arguments stay in their
 * registers. */
template <class... Parameters>
[[gnu::noinline]] android::binder::Status COM_QV_BP::callRemote(Parameters... parameters, uint32_t code) {
  using Types = SignatureOf<Parameters...>;
  void* const values[] = {Types::template addressOf<Parameters>(parameters)..., nullptr};
  return callMethod(remote(), getInterfaceDescriptor(), code, Types::kSignature, values);
}

#define METHOD(code, name, ...)                                                                            \
  android::binder::Status COM_QV_BP::name(COM_QV_PARAMS(__VA_ARGS__)) {                                    \
    return callRemote<COM_QV_TYPES(__VA_ARGS__)>(COM_QV_NAMES(__VA_ARGS__) __VA_OPT__(, ) uint32_t{code}); \
  }
#include COM_QV_METHODS
#undef METHOD

[[gnu::flatten]] COM_QV_BN::COM_QV_BN() = default;
[[gnu::flatten]] COM_QV_BN::~COM_QV_BN() = default;

android::status_t COM_QV_BN::onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                        uint32_t flags) {
  ServiceMethod method;
  switch (code) {
#define METHOD(code, name, ...)              \
  case code:                                 \
    method = serviceMethod(&COM_QV_I::name); \
    break;
#include COM_QV_METHODS
#undef METHOD
    default:
      return BBinder::onTransact(code, data, reply, flags);
  }
  if (!data.checkInterface(this)) return android::BAD_TYPE;
  return serveMethod(static_cast<COM_QV_I*>(this), method, data, reply);
}

}  // namespace com::qv

#undef COM_QV_I
#undef COM_QV_BP
#undef COM_QV_BN
#undef COM_QV_INTERFACE
