/*
 * Defines the classes of one interface from its rows; the twin of <com/qv/detail/DeclareInterface.h>, with
 * the same two macros.
 */

#include <com/qv/detail/Methods.h>

#include "ipc/Immortal.h"
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

const android::String16& COM_QV_I::descriptor =
    immortal<android::String16>("com.qv." COM_QV_STRING(COM_QV_I));

android::sp<COM_QV_I> COM_QV_I::asInterface(const android::sp<android::IBinder>& binder) {
  if (binder == nullptr) return nullptr;
  if (const android::sp<android::IInterface> local = binder->queryLocalInterface(descriptor);
      local != nullptr) {
    return static_cast<COM_QV_I*>(local.get());
  }
  return new COM_QV_BP(binder);
}

// What is called in here is inlined: as functions of their own, the base classes' constructors and
// destructors would bring virtual tables that nobody uses.
[[gnu::flatten]] COM_QV_BP::COM_QV_BP(const android::sp<android::IBinder>& remote)
    : android::BpInterface<COM_QV_I>(remote) {}
[[gnu::flatten]] COM_QV_BP::~COM_QV_BP() = default;

#define METHOD(code, name, ...)                                         \
  android::binder::Status COM_QV_BP::name(COM_QV_PARAMS(__VA_ARGS__)) { \
    return call<COM_QV_BP __VA_OPT__(, ) COM_QV_TYPES(__VA_ARGS__)>(    \
        this __VA_OPT__(, ) COM_QV_NAMES(__VA_ARGS__), code);           \
  }
#include COM_QV_METHODS
#undef METHOD

[[gnu::flatten]] COM_QV_BN::COM_QV_BN() = default;
[[gnu::flatten]] COM_QV_BN::~COM_QV_BN() = default;

template <>
Implementation implementationOf<COM_QV_I>(uint32_t code) {
  switch (code) {
#define METHOD(code, name, ...) \
  case code:                    \
    return implementation(&COM_QV_I::name);
#include COM_QV_METHODS
#undef METHOD
  }
  return {};
}

android::status_t COM_QV_BN::onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                        uint32_t flags) {
  if (code < android::IBinder::FIRST_CALL_TRANSACTION || code > std::size(kCodes)) {
    return BBinder::onTransact(code, data, reply, flags);
  }
  if (!data.checkInterface(this)) return android::BAD_TYPE;
  return serveMethod(static_cast<COM_QV_I*>(this), implementationOf<COM_QV_I>(code), data, reply);
}

}  // namespace com::qv

#undef COM_QV_I
#undef COM_QV_BP
#undef COM_QV_BN
#undef COM_QV_INTERFACE
#undef COM_QV_METHODS
