#include <cstdio>

#include <com/qv/IAteEventListener.h>
#include <com/qv/ICallEventListener.h>
#include <com/qv/ICallService.h>
#include <com/qv/IConfigService.h>
#include <com/qv/IDatabaseService.h>
#include <com/qv/IExternalKeyService.h>
#include <com/qv/IMiscEventListener.h>
#include <com/qv/IMiscService.h>
#include <com/qv/IRelayService.h>

namespace {

class CallService : public com::qv::DefaultCallService {
 public:
  android::binder::Status makeCall(int32_t line, const std::string& number, int32_t* result) override {
    *result = line * 1000 + static_cast<int32_t>(number.size());
    return android::binder::Status::ok();
  }
};

/** Overrides nothing, so that its virtual table refers to each method of the library's proxy. */
template <class Proxy>
class Derived : public Proxy {
 public:
  using Proxy::Proxy;
};

template <class... Proxies>
bool areDerivable(const android::sp<android::IBinder>& binder) {
  return ((android::sp<Proxies>(new Derived<Proxies>(binder)) != nullptr) && ...);
}

}  // namespace

int main() {
  const android::sp<android::IBinder> service = new CallService;
  // Not asInterface(), which would give the object itself: the call is to go through proxy and
  // stub.
  const android::sp<com::qv::ICallService> proxy = new com::qv::BpCallService(service);
  using namespace com::qv;
  const bool derivable =
      areDerivable<BpAteEventListener, BpCallEventListener, BpCallService, BpConfigService, BpDatabaseService,
                   BpExternalKeyService, BpMiscEventListener, BpMiscService, BpRelayService>(service);
  int32_t result = -1;
  BpCallService direct(service);
  const bool called = proxy->makeCall(7, "100", &result).isOk() &&
                      direct.makeCall(7, "100", &result).isOk() &&
                      direct.BpCallService::makeCall(7, "100", &result).isOk();
  const bool refused =
      proxy->redialCall().exceptionCode() == android::binder::Status::EX_UNSUPPORTED_OPERATION;
  std::printf("makeCall: %d, redialCall refused: %d\n", result, refused);
  return derivable && called && result == 7003 && refused ? 0 : 1;
}
