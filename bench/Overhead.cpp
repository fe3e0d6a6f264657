#include "Overhead.h"

#include <binder/Binder.h>
#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <binder/Status.h>
#include <com/qv/ICallService.h>
#include <com/qv/IConfigService.h>
#include <com/qv/IDatabaseService.h>
#include <vesk/vesk_client.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "Support.h"

using android::IBinder;
using android::OK;
using android::Parcel;
using android::sp;
using android::String16;
using android::binder::Status;
using com::qv::CommonParcelable;

namespace vesk::bench {

namespace {

constexpr int kLine = 1;
constexpr size_t kListSize = 100;

enum : uint32_t {
  kCloseCall = 3,
  kMakeCall = 14,
  kGetNetworkStatus = 69,
  kGetGreetingWord = 160,
  kGetRtpStatus = 164,
  kPhonebookContactCreate = 21,
};

/** Answers all transactions of one code with the same reply, and all others with an empty one. */
class Answers : public android::BBinder {
 public:
  /** The reply to `code` after its status. */
  Parcel* reply(uint32_t code) {
    Parcel& answer = replies_[code];
    answer.writeInt32(Status::EX_NONE);
    return &answer;
  }

 protected:
  android::status_t onTransact(uint32_t code, const Parcel&, Parcel* reply, uint32_t) override {
    const Parcel& answer = replies_[code];
    if (answer.dataSize() == 0) return reply->writeInt32(Status::EX_NONE);
    return reply->setData(answer.data(), answer.dataSize());
  }

 private:
  std::array<Parcel, 256> replies_;
};

void check(bool fine) {
  if (!fine) fatal("a call failed");
}

/** A service for the calls that are written by hand. */
struct Service {
  IBinder* binder;
  const String16* descriptor;
};
Service callService;
Service configService;
Service databaseService;

void put(const char* name, const sp<Answers>& answers, const String16& descriptor, Service* service) {
  check(android::defaultServiceManager()->addService(String16(name), answers) == OK);
  *service = {answers.get(), &descriptor};
}

template <size_t kSize>
const std::array<char, kSize> kRecord{};

/** Makes one transaction: `write` adds the arguments, `read` takes the results. */
template <class Write, class Read>
void transact(const Service& service, uint32_t code, Write write, Read read) {
  Parcel data;
  Parcel reply;
  check(data.writeInterfaceToken(*service.descriptor) == OK && write(&data) == OK &&
        service.binder->transact(code, data, &reply) == OK);
  Status status;
  check(status.readFromParcel(reply) == OK && status.isOk() && read(reply) == OK);
}

android::status_t writeNothing(Parcel*) { return OK; }
android::status_t readNothing(const Parcel&) { return OK; }

void makeCall(const char* number) {
  int32_t result = -1;
  transact(
      callService, kMakeCall,
      [=](Parcel* data) {
        const android::status_t status = data->writeInt32(kLine);
        return status == OK ? data->writeUtf8AsUtf16(number) : status;
      },
      [&](const Parcel& reply) { return reply.readInt32(&result); });
  check(result == kLine);
}

constexpr const char* kShortNumber = "2001";
constexpr const char* kLongNumber = "sip:reception@example.com";

}  // namespace

void connectToLocalServices() {
  const sp<Answers> call = new Answers;
  call->reply(kMakeCall)->writeInt32(kLine);
  put("com.qv.CallService", call, com::qv::ICallService::descriptor, &callService);

  const sp<Answers> config = new Answers;
  const CommonParcelable networkStatus(kRecord<VESK_NETWORK_STATUS_SIZE>.data(), VESK_NETWORK_STATUS_SIZE);
  config->reply(kGetNetworkStatus)->writeParcelable(networkStatus);
  config->reply(kGetGreetingWord)->writeUtf8AsUtf16("Welcome");
  Parcel* const list = config->reply(kGetRtpStatus);
  list->writeInt32(kListSize);
  for (size_t i = 0; i < kListSize; ++i) {
    list->writeParcelable(CommonParcelable(kRecord<VESK_RTP_STATUS_SIZE>.data(), VESK_RTP_STATUS_SIZE));
  }
  put("com.qv.ConfigService", config, com::qv::IConfigService::descriptor, &configService);

  const sp<Answers> database = new Answers;
  database->reply(kPhonebookContactCreate)->writeInt32(0);
  put("com.qv.DatabaseService", database, com::qv::IDatabaseService::descriptor, &databaseService);

  check(connect_config_service(nullptr) && connect_database_service(nullptr) &&
        connect_call_service(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                             nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                             nullptr));
}

std::span<const OverheadCase> overheadCases() {
  static const OverheadCase kCases[] = {
      {"close_call", [] { binder_close_call(kLine); },
       [] {
         transact(
             callService, kCloseCall, [](Parcel* data) { return data->writeInt32(kLine); }, readNothing);
       },
       0},
      {"make_call", [] { check(binder_make_call(kLine, kShortNumber) == kLine); },
       [] { makeCall(kShortNumber); }, 0},
      {"make_call_with_a_long_number", [] { check(binder_make_call(kLine, kLongNumber) == kLine); },
       [] { makeCall(kLongNumber); }, 1},
      {"get_greeting_word",
       [] {
         char text[64];
         check(binder_get_greeting_word(text, sizeof(text)) == 0);
       },
       [] {
         std::string text;
         transact(configService, kGetGreetingWord, writeNothing,
                  [&](const Parcel& reply) { return reply.readUtf8FromUtf16(&text); });
         char copy[64];
         std::snprintf(copy, sizeof(copy), "%s", text.c_str());
       },
       0},
      {"get_network_status",
       [] {
         char status[VESK_NETWORK_STATUS_SIZE];
         check(binder_get_network_status(status) == 0);
       },
       [] {
         CommonParcelable record;
         transact(configService, kGetNetworkStatus, writeNothing,
                  [&](const Parcel& reply) { return reply.readParcelable(&record); });
         char status[VESK_NETWORK_STATUS_SIZE];
         check(record.copyTo(status, sizeof(status)));
       },
       1},
      {"phonebook_contact_create",
       [] { check(binder_phonebook_contact_create(0, kRecord<VESK_CONTACT_SIZE>.data()) == 0); },
       [] {
         int32_t result = -1;
         transact(
             databaseService, kPhonebookContactCreate,
             [](Parcel* data) {
               const android::status_t status = data->writeInt32(0);
               return status == OK ? data->writeParcelable(CommonParcelable(kRecord<VESK_CONTACT_SIZE>.data(),
                                                                            VESK_CONTACT_SIZE))
                                   : status;
             },
             [&](const Parcel& reply) { return reply.readInt32(&result); });
         check(result == 0);
       },
       2},
      {"list_of_100_records",
       [] {
         char records[kListSize * VESK_RTP_STATUS_SIZE];
         check(binder_get_rtp_status(records, kListSize) == static_cast<int>(kListSize));
       },
       [] {
         std::vector<CommonParcelable> list;
         transact(configService, kGetRtpStatus, writeNothing, [&](const Parcel& reply) {
           int32_t count = 0;
           android::status_t status = reply.readInt32(&count);
           for (int32_t i = 0; status == OK && i < count; ++i) {
             status = reply.readParcelable(&list.emplace_back());
           }
           return status;
         });
         char records[kListSize * VESK_RTP_STATUS_SIZE];
         for (size_t i = 0; i < list.size() && i < kListSize; ++i) {
           check(list[i].copyTo(records + i * VESK_RTP_STATUS_SIZE, VESK_RTP_STATUS_SIZE));
         }
       },
       2},
  };
  return kCases;
}

}  // namespace vesk::bench
