#include <cstdio>

#include <com/qv/ICallService.h>

namespace {

class CallService : public com::qv::DefaultCallService {
 public:
  android::binder::Status makeCall(int32_t line, const std::string& number, int32_t* result) override {
    *result = line * 1000 + static_cast<int32_t>(number.size());
    return android::binder::Status::ok();
  }
};

}  // namespace

int main() {
  const android::sp<android::IBinder> service = new CallService;
  // Not asInterface(), which would give the object itself: the call is to go through proxy and stub.
  const android::sp<com::qv::ICallService> proxy = new com::qv::BpCallService(service);
  int32_t result = -1;
  const bool called = proxy->makeCall(7, "100", &result).isOk();
  const bool refused =
      proxy->redialCall().exceptionCode() == android::binder::Status::EX_UNSUPPORTED_OPERATION;
  std::printf("makeCall: %d, redialCall refused: %d\n", result, refused);
  return called && result == 7003 && refused ? 0 : 1;
}
