/*
 * C calls from an application to a service process, compared with bare sockets: calls of several
 * sizes from one thread, and a short call from many threads.
 */
#include <binder/IPCThreadState.h>
#include <binder/IServiceManager.h>
#include <com/qv/IConfigService.h>
#include <com/qv/IDatabaseService.h>
#include <vesk/vesk_client.h>

#include <array>
#include <string>
#include <thread>
#include <vector>

#include "BarePairs.h"
#include "MakeCall.h"
#include "Measure.h"

using android::sp;
using android::String16;
using android::binder::Status;
using com::qv::CommonParcelable;
using namespace vesk::bench;

namespace {

constexpr size_t kListSize = 100;
const std::vector<int> kThreadCounts = {1, 2, 4, 16, 64, 256};

template <size_t kSize>
CommonParcelable emptyRecord() {
  static constexpr std::array<char, kSize> kBytes{};
  return {kBytes.data(), kSize};
}

class ConfigService : public com::qv::DefaultConfigService {
 public:
  Status getNetworkStatus(CommonParcelable* status) override {
    *status = emptyRecord<VESK_NETWORK_STATUS_SIZE>();
    return Status::ok();
  }
  Status getRtpStatus(std::vector<CommonParcelable>* status) override {
    *status = rtpStatus_;
    return Status::ok();
  }

 private:
  /** Each record has its own buffer, as different records have. */
  static std::vector<CommonParcelable> records() {
    std::vector<CommonParcelable> all;
    for (size_t i = 0; i < kListSize; ++i) all.push_back(emptyRecord<VESK_RTP_STATUS_SIZE>());
    return all;
  }
  const std::vector<CommonParcelable> rtpStatus_ = records();
};

class DatabaseService : public com::qv::DefaultDatabaseService {
 public:
  Status phonebookContactCreate(int32_t, const CommonParcelable&, int32_t* result) override {
    *result = 0;
    return Status::ok();
  }
};

/** A C function, and the sizes of its frames. */
struct Function {
  const char* name;
  FrameSizes sizes;
  void (*call)();
};

void check(bool fine) {
  if (!fine) fatal("a call failed");
}

void makeCall() { check(binder_make_call(kLine, kNumber) == kLine); }

std::vector<Function> functions() {
  using namespace com::qv;
  int32_t number;
  CommonParcelable record;
  std::vector<CommonParcelable> list;
  return {
      {"make_call", makeCallSizes(), makeCall},
      {"get_network_status",
       frameSizes<BpConfigService, ConfigService>([&](auto* proxy) { proxy->getNetworkStatus(&record); }),
       [] {
         char status[VESK_NETWORK_STATUS_SIZE];
         check(binder_get_network_status(status) == 0);
       }},
      {"phonebook_contact_create", frameSizes<BpDatabaseService, DatabaseService>([&](auto* proxy) {
         proxy->phonebookContactCreate(0, emptyRecord<VESK_CONTACT_SIZE>(), &number);
       }),
       [] {
         const char contact[VESK_CONTACT_SIZE] = {};
         check(binder_phonebook_contact_create(0, contact) == 0);
       }},
      {"list_of_100_records",
       frameSizes<BpConfigService, ConfigService>([&](auto* proxy) { proxy->getRtpStatus(&list); }),
       [] {
         char records[kListSize * VESK_RTP_STATUS_SIZE];
         check(binder_get_rtp_status(records, kListSize) == static_cast<int>(kListSize));
       }},
  };
}

void serveAll() {
  const auto add = [](const char* name, const sp<android::IBinder>& service) {
    if (android::defaultServiceManager()->addService(String16(name), service) != android::OK) {
      fatal("addService");
    }
  };
  add("com.qv.ConfigService", new ConfigService);
  add("com.qv.DatabaseService", new DatabaseService);
  add("com.qv.CallService", new CallService);
  android::IPCThreadState::self()->joinThreadPool();
}

bool connectAll() {
  return connect_config_service(nullptr) && connect_database_service(nullptr) &&
         connect_call_service(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                              nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                              nullptr);
}

}  // namespace

int main(int argc, char** argv) {
  const PrivateRuntimeDir runtimeDir;
  std::vector<Function> all = functions();
  std::vector<BarePairs> single;
  single.reserve(all.size());
  for (const Function& function : all) single.emplace_back(1, function.sizes);
  const BarePairs many(static_cast<size_t>(kThreadCounts.back()), all.front().sizes);

  const Child bare([&] {
    std::vector<std::thread> threads;
    const auto serve = [&](const BarePairs& pairs) {
      for (size_t i = 0; i < pairs.count(); ++i) threads.emplace_back([&pairs, i] { pairs.serve(i); });
    };
    for (const BarePairs& pairs : single) serve(pairs);
    serve(many);
    threads.front().join();
  });
  const Child service(serveAll);
  if (!connectAll()) fatal("connect");

  for (size_t i = 0; i < all.size(); ++i) {
    registerCalls(all[i].name, "stream", {bare.pid()}, [&pairs = single[i]] { pairs.call(0); });
    registerCalls(all[i].name, "library", {service.pid()}, all[i].call);
  }
  registerThreads("threads", "stream", kThreadCounts, [&](size_t thread) { many.call(thread); });
  registerThreads("threads", "library", kThreadCounts, [](size_t) { makeCall(); });

  return run(argc, argv);
}
