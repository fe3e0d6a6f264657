/*
 * Sends events to the library's three listeners. The application's callbacks must be called for
 * well-formed events only, and may read all of their arguments.
 */
#include <binder/IServiceManager.h>
#include <com/qv/ICallService.h>
#include <com/qv/IMiscService.h>
#include <vesk/call.h>
#include <vesk/misc.h>

#include "Binders.h"

namespace {

using android::OK;
using android::Parcel;
using android::sp;
using android::binder::Status;
using vesk::fuzz::Bytes;
using vesk::fuzz::Input;
using vesk::fuzz::touch;

int called = 0;

template <size_t kSize>
void onRecord(void* record) {
  ++called;
  // The library promises a zero byte after a text that fills the record.
  touch(record, kSize + 1);
  FUZZ_CHECK(static_cast<const char*>(record)[kSize] == '\0');
}
void onText(const char* text) {
  ++called;
  FUZZ_CHECK(std::strlen(text) < 128);
}
void onMembers(int, const int* members, int count) {
  ++called;
  touch(members, static_cast<size_t>(count) * sizeof(int));
}

/** The listeners that the services below receive. */
sp<android::IBinder> listeners[3];

class CallService : public com::qv::DefaultCallService {
  Status registerCallEventListener(const sp<com::qv::ICallEventListener>& listener) override {
    listeners[0] = android::IInterface::asBinder(listener);
    return Status::ok();
  }
};

class MiscService : public com::qv::DefaultMiscService {
  Status registerAteEventListener(const sp<com::qv::IAteEventListener>& listener) override {
    listeners[1] = android::IInterface::asBinder(listener);
    return Status::ok();
  }
  Status registerMiscEventListener(const sp<com::qv::IMiscEventListener>& listener) override {
    listeners[2] = android::IInterface::asBinder(listener);
    return Status::ok();
  }
};

bool connect() {
  vesk::fuzz::setUp();
  const sp<android::IServiceManager> manager = android::defaultServiceManager();
  FUZZ_CHECK(manager->addService(android::String16("com.qv.CallService"), new CallService) == OK);
  FUZZ_CHECK(manager->addService(android::String16("com.qv.MiscService"), new MiscService) == OK);
  const auto onNotice = [] { ++called; };
  const auto onValue = [](int) { ++called; };
  const auto onCallInfo = onRecord<VESK_CALL_INFO_SIZE>;
  FUZZ_CHECK(connect_call_service(
      onCallInfo, onValue, onValue, onCallInfo, onCallInfo, onCallInfo, onValue, onValue, onValue, onMembers,
      onValue, onMembers, onNotice, [](int, int) { ++called; }, onText, onCallInfo,
      onRecord<VESK_AUTO_REDIAL_INFO_SIZE>,
      [](void* record, bool) { onRecord<VESK_CALL_COMPLETION_INFO_SIZE>(record); }, nullptr));
  FUZZ_CHECK(connect_misc_service(
      {onNotice, onNotice, onText, onNotice, onNotice, onNotice, onNotice, {}, onNotice, onValue, onNotice},
      nullptr));
  return true;
}

/** The smallest size of an event's arguments, and the size of its record if it has one. */
struct Event {
  size_t size;
  int32_t record = -1;
};

constexpr Event recordEvent(int32_t record, size_t rest) {
  return {12 + static_cast<size_t>(record) + rest, record};
}
constexpr Event kCall = recordEvent(VESK_CALL_INFO_SIZE, 0);
constexpr Event kRedial = recordEvent(VESK_AUTO_REDIAL_INFO_SIZE, 0);
constexpr Event kCompletion = recordEvent(VESK_CALL_COMPLETION_INFO_SIZE, 4);
constexpr Event kNotice{0};
constexpr Event kValue{4};
constexpr Event kTwo{8};
constexpr Event kText{8};

const std::vector<Event> kEvents[3] = {
    {kCall, kValue, kValue, kCall, kCall, kCall, kValue, kValue, kValue, kTwo, kValue, kTwo, kNotice, kText,
     kTwo, kCall, kRedial, kCompletion},
    {kNotice, kNotice, kText, kNotice, kNotice, kNotice, kNotice},
    {kNotice, kValue, kNotice},
};

void raise(size_t which, uint32_t code, Bytes arguments) {
  const sp<android::IBinder>& listener = listeners[which];
  Parcel token;
  token.writeInterfaceToken(listener->getInterfaceDescriptor());
  std::vector<uint8_t> bytes(token.data(), token.data() + token.dataSize());
  bytes.insert(bytes.end(), arguments.begin(), arguments.end());
  Parcel data;
  vesk::fuzz::fill(&data, bytes);
  Parcel reply;
  called = 0;
  const android::status_t status = listener->transact(code, data, &reply);
  FUZZ_CHECK(called <= 1);
  if (code > kEvents[which].size()) {
    FUZZ_CHECK(called == 0);
    return;
  }

  const Event& event = kEvents[which][code - 1];
  int32_t front[2] = {};
  std::memcpy(front, arguments.data(), std::min(arguments.size(), sizeof(front)));
  if (status != OK || arguments.size() < event.size) FUZZ_CHECK(called == 0);
  if (event.record < 0) {
    const bool isNull = reply.readInt32() != 0;
    if (status == OK) FUZZ_CHECK(called == (isNull ? 0 : 1));
  } else {
    if (status == OK) FUZZ_CHECK((called == 1) == (front[0] != 0 && front[1] == event.record));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const bool connected = connect();
  FUZZ_CHECK(connected);
  Input input({data, size});
  while (!input.empty()) {
    const size_t which = input.byte() % std::size(kEvents);
    const auto code = static_cast<uint32_t>(1 + input.byte() % (kEvents[which].size() + 1));
    raise(which, code, input.take(input.number<uint16_t>()));
  }
  return 0;
}
