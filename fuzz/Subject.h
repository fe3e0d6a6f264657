/* Defines the function COM_QV_INTERFACE(), which returns the Interface for the rows of that
 * interface. Included once for each interface, by Interfaces.cpp. */

#define COM_QV_I COM_QV_CAT(I, COM_QV_INTERFACE)
#define COM_QV_BN COM_QV_CAT(Bn, COM_QV_INTERFACE)
#define COM_QV_BP COM_QV_CAT(Bp, COM_QV_INTERFACE)
#define COM_QV_STUB COM_QV_CAT(Stub, COM_QV_INTERFACE)

namespace com::qv {
namespace {

class COM_QV_STUB : public COM_QV_BN {
 public:
#define METHOD(code, name, ...)                                       \
  android::binder::Status name(COM_QV_PARAMS(__VA_ARGS__)) override { \
    return vesk::fuzz::serve(COM_QV_NAMES(__VA_ARGS__));              \
  }
#include COM_QV_METHODS
#undef METHOD
};

}  // namespace
}  // namespace com::qv

namespace vesk::fuzz {
namespace {

Interface COM_QV_INTERFACE() {
  using namespace com::qv;
  return {COM_QV_I::descriptor,
#define METHOD(...) +1
          0
#include COM_QV_METHODS
#undef METHOD
          ,
          []() -> android::sp<android::BBinder> { return new COM_QV_STUB; },
          [](uint32_t code, const android::sp<android::IBinder>& remote, Input* arguments,
             const android::sp<android::IBinder>& object) {
            const android::sp<COM_QV_I> proxy = new COM_QV_BP(remote);
            switch (code) {
#define METHOD(number, name, ...) \
  case number:                    \
    return callWith(proxy.get(), &COM_QV_I::name, arguments, object);
#include COM_QV_METHODS
#undef METHOD
            }
            return android::binder::Status::fromStatusT(android::UNKNOWN_TRANSACTION);
          }};
}

}  // namespace
}  // namespace vesk::fuzz

#undef COM_QV_I
#undef COM_QV_BN
#undef COM_QV_BP
#undef COM_QV_STUB
#undef COM_QV_INTERFACE
