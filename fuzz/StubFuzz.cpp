/* Sends transactions to the stubs of all interfaces. */
#include "Binders.h"
#include "Interfaces.h"

namespace {

using android::IBinder;
using android::OK;
using android::Parcel;
using android::sp;
using namespace vesk::fuzz;

void transact(const Transaction& transaction) {
  static const std::vector<sp<android::BBinder>>& stubs = *[] {
    auto* made = new std::vector<sp<android::BBinder>>;
    for (const Interface& interface : interfaces()) made->push_back(interface.stub());
    return made;
  }();
  static const std::vector<sp<IBinder>>& objects = *new std::vector<sp<IBinder>>(stubs.begin(), stubs.end());
  const Interface& interface = interfaces()[transaction.interface];
  const sp<android::BBinder>& stub = stubs[transaction.interface];

  Parcel token;
  token.writeInterfaceToken(interface.descriptor);
  std::vector<uint8_t> bytes;
  if (!transaction.isRaw) bytes.assign(token.data(), token.data() + token.dataSize());
  bytes.insert(bytes.end(), transaction.data.begin(), transaction.data.end());
  Parcel data;
  fill(&data, bytes, objects);

  Parcel reply;
  answers = Input(transaction.answers);
  calls = 0;
  const android::status_t status = stub->transact(transaction.code, data, &reply, transaction.flags);
  const bool isMethod = transaction.code >= 1 && transaction.code <= interface.methods;
  const bool hasToken =
      bytes.size() >= token.dataSize() && std::memcmp(bytes.data(), token.data(), token.dataSize()) == 0;
  if (isMethod && !hasToken) FUZZ_CHECK(status == android::BAD_TYPE);
  FUZZ_CHECK(calls <= (isMethod && hasToken ? 1 : 0));
  if (isMethod && status == OK) {
    android::binder::Status header;
    FUZZ_CHECK(header.readFromParcel(reply) == OK);
    FUZZ_CHECK(calls == 1 || header.exceptionCode() == android::binder::Status::EX_NULL_POINTER);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  setUp();
  forEachTransaction({data, size}, transact);
  return 0;
}
