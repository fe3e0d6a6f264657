/* Sends replies to the proxies of all interfaces. callWith() checks that a failed call changes no
 * out-argument. */
#include "Binders.h"
#include "Interfaces.h"

namespace {

using android::IBinder;
using android::Parcel;
using android::sp;
using namespace vesk::fuzz;

class Answerer : public android::BBinder {
 public:
  Transaction transaction;
  int requests = 0;

 protected:
  android::status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) override {
    FUZZ_CHECK(code == transaction.code && flags == 0);
    FUZZ_CHECK(data.enforceInterface(interfaces()[transaction.interface].descriptor));
    ++requests;
    const sp<IBinder> self = this;
    fill(reply, transaction.data, {&self, 1});
    return transaction.isRaw ? static_cast<android::status_t>(transaction.flags) : android::OK;
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  setUp();
  const sp<Answerer> answerer = new Answerer;
  const sp<IBinder> listener = new android::BBinder;
  forEachTransaction({data, size}, [&](const Transaction& transaction) {
    answerer->transaction = transaction;
    answerer->requests = 0;
    Input arguments(transaction.answers);
    const android::binder::Status status =
        interfaces()[transaction.interface].call(transaction.code, answerer, &arguments, listener);
    FUZZ_CHECK(answerer->requests == 1 || (answerer->requests == 0 && !status.isOk()));
  });
  return 0;
}
