#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>
#include <com/qv/IMiscService.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <vesk/misc.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <mutex>

#include "ChildProcess.h"
#include "LogCapture.h"
#include "RecordingBinder.h"
#include "WaitUntil.h"

using android::IBinder;
using android::IInterface;
using android::Parcel;
using android::sp;
using android::String16;
using android::binder::Status;
using vesk::test::ChildProcess;
using vesk::test::LogCapture;
using vesk::test::LogLine;
using vesk::test::Wire;

namespace {

constexpr const char* kName = "com.qv.MiscService";

void registerService(const sp<IBinder>& service) {
  EXPECT_EQ(android::defaultServiceManager()->addService(String16(kName), service), android::OK);
}

/** Takes the listeners; may raise an event at once. */
class ListeningService : public com::qv::DefaultMiscService {
 public:
  Status registerAteEventListener(const sp<com::qv::IAteEventListener>& listener) override {
    ate = listener;
    if (eager) ate->updateContextEvent("early");
    return Status::ok();
  }
  Status registerMiscEventListener(const sp<com::qv::IMiscEventListener>& listener) override {
    misc = listener;
    if (eager) misc->wkRingHdl(-2);
    return Status::ok();
  }
  /** Raises an event while a client waits. */
  Status localAteStart(int32_t value) override { return misc->wkRingHdl(value); }
  Status getUdiskStatus(int32_t* status) override {
    *status = 7;
    return Status::ok();
  }

  bool eager = false;
  sp<com::qv::IAteEventListener> ate;
  sp<com::qv::IMiscEventListener> misc;
};

/** The callbacks that were called, from any thread. */
class {
 public:
  void add(std::string event) {
    const std::lock_guard lock(mutex_);
    events_.push_back(std::move(event));
  }
  std::vector<std::string> take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(events_, {});
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> events_;
} called;

constexpr vesk_misc_callbacks kCallbacks{
    .on_online_ate_started = [] { called.add("ATE started"); },
    .on_online_ate_stopped = [] { called.add("ATE stopped"); },
    .on_update_context = [](const char* text) { called.add(std::string("context ") + text); },
    .on_lcd_switch = [] { called.add("LCD"); },
    .on_touch_screen_start = [] { called.add("touch started"); },
    .on_touch_screen_stop = [] { called.add("touch stopped"); },
    .on_system_reboot = [] { called.add("reboot"); },
    .reserved = {},
    .on_web_screenshot = [] { called.add("screenshot"); },
    .on_ring = [](int value) { called.add("ring " + std::to_string(value)); },
    .on_scan_cancel = [] { called.add("scan cancelled"); },
};

std::atomic<int> deaths;

class MiscEventTest : public testing::Test {
 protected:
  MiscEventTest() {
    setenv("BINDER_LOOKUP_MS", "0", 1);
    registerService(service_);
    deaths = 0;
    called.take();
  }

  LogCapture log_;
  const sp<ListeningService> service_ = new ListeningService;
};

TEST_F(MiscEventTest, EachEventCallsItsCallback) {
  ASSERT_TRUE(connect_misc_service(kCallbacks, nullptr));
  const sp<IBinder> ate = IInterface::asBinder(service_->ate);
  const sp<IBinder> misc = IInterface::asBinder(service_->misc);
  const auto xs = [](size_t count) { return Wire().text(std::u16string(count, u'x')); };
  const std::string cut = "context " + std::string(127, 'x');
  const struct {
    sp<IBinder> listener;
    const char16_t* token;
    uint32_t code;
    Wire arguments;
    std::string expected;
  } rows[] = {
      {ate, u"com.qv.IAteEventListener", 1, Wire(), "ATE started"},
      {ate, u"com.qv.IAteEventListener", 2, Wire(), "ATE stopped"},
      {ate, u"com.qv.IAteEventListener", 3, Wire().text(u"a\u00e4"), "context a\xC3\xA4"},
      {ate, u"com.qv.IAteEventListener", 3, Wire().text(u""), "context "},
      {ate, u"com.qv.IAteEventListener", 3, xs(127), cut},
      {ate, u"com.qv.IAteEventListener", 3, xs(128), cut},
      {ate, u"com.qv.IAteEventListener", 3, xs(200), cut},
      {ate, u"com.qv.IAteEventListener", 4, Wire(), "LCD"},
      {ate, u"com.qv.IAteEventListener", 5, Wire(), "touch started"},
      {ate, u"com.qv.IAteEventListener", 6, Wire(), "touch stopped"},
      {ate, u"com.qv.IAteEventListener", 7, Wire(), "reboot"},
      {misc, u"com.qv.IMiscEventListener", 1, Wire(), "screenshot"},
      {misc, u"com.qv.IMiscEventListener", 2, Wire().i32(-1), "ring -1"},
      {misc, u"com.qv.IMiscEventListener", 3, Wire(), "scan cancelled"},
  };
  const auto raise = [](const sp<IBinder>& listener, uint32_t code, const Wire& request, Parcel* reply) {
    Parcel data;
    data.setData(reinterpret_cast<const uint8_t*>(request.bytes().data()), request.bytes().size());
    return listener->transact(code, data, reply);
  };
  log_.take();
  for (const auto& row : rows) {
    SCOPED_TRACE(row.expected);
    Parcel reply;
    EXPECT_EQ(raise(row.listener, row.code, Wire().text(row.token).append(row.arguments), &reply),
              android::OK);
    EXPECT_EQ(vesk::test::bytesOf(reply), Wire().i32(0).bytes());
    EXPECT_EQ(called.take(), std::vector<std::string>{row.expected});
  }
  Parcel reply;
  EXPECT_EQ(raise(ate, 8, Wire().text(u"com.qv.IAteEventListener"), &reply), android::UNKNOWN_TRANSACTION);
  EXPECT_EQ(raise(misc, 4, Wire().text(u"com.qv.IMiscEventListener"), &reply), android::UNKNOWN_TRANSACTION);
  EXPECT_EQ(raise(misc, 1, Wire().text(u"com.qv.IAteEventListener"), &reply), android::BAD_TYPE);
  EXPECT_EQ(called.take(), std::vector<std::string>());
  EXPECT_EQ(log_.take(), std::vector<LogLine>());
}

TEST_F(MiscEventTest, ConnectingRegistersAndLogsBothListenersEvenIfRefused) {
  /** Refuses every request, and keeps their codes. */
  class RefusingService : public android::BBinder {
   public:
    std::vector<uint32_t> codes;

   protected:
    android::status_t onTransact(uint32_t code, const Parcel&, Parcel*, uint32_t) override {
      codes.push_back(code);
      return android::PERMISSION_DENIED;
    }
  };
  const sp<RefusingService> refusing = new RefusingService;
  registerService(refusing);
  EXPECT_TRUE(connect_misc_service(kCallbacks, nullptr));
  EXPECT_EQ(refusing->codes, (std::vector<uint32_t>{4, 5}));
  EXPECT_EQ(log_.take(),
            (std::vector<LogLine>{{ANDROID_LOG_INFO, "MiscClient", "Connect com.qv.MiscService done. "},
                                  {ANDROID_LOG_INFO, "MiscClient", "AteEventListener is registed."},
                                  {ANDROID_LOG_INFO, "MiscClient", "MiscEventListener is registed."}}));
}

TEST_F(MiscEventTest, EventDuringTheConnectGoesToTheEarlierCallbacks) {
  ASSERT_TRUE(connect_misc_service(kCallbacks, nullptr));
  vesk_misc_callbacks others = kCallbacks;
  others.on_ring = [](int) { called.add("other ring"); };
  service_->eager = true;
  ASSERT_TRUE(connect_misc_service(others, nullptr));
  EXPECT_EQ(called.take(), (std::vector<std::string>{"context early", "ring -2"}));
  EXPECT_TRUE(service_->misc->wkRingHdl(1).isOk());
  EXPECT_EQ(called.take(), std::vector<std::string>{"other ring"});
}

/* A process that has never been connected. */
CHILD_ROLE(connectToEagerService) {
  const sp<ListeningService> service = new ListeningService;
  service->eager = true;
  registerService(service);
  parent.ready();
  const bool connected = connect_misc_service(kCallbacks, nullptr);
  return connected && called.take().empty() ? 0 : 1;
}

TEST_F(MiscEventTest, EventDuringTheFirstConnectIsDropped) {
  EXPECT_EQ(ChildProcess("connectToEagerService").wait(), 0);
}

CHILD_ROLE(raiseAnEventWithoutACallback) {
  const rlimit noCore{0, 0};
  setrlimit(RLIMIT_CORE, &noCore);
  signal(SIGSEGV, SIG_DFL);  // Sanitizers would report it.
  const sp<ListeningService> service = new ListeningService;
  registerService(service);
  vesk_misc_callbacks callbacks = kCallbacks;
  callbacks.on_ring = nullptr;
  if (!connect_misc_service(callbacks, nullptr)) return 0;
  parent.ready();
  service->misc->wkRingHdl(1);
  return 0;
}

TEST_F(MiscEventTest, EventWithoutACallbackEndsTheProgram) {
  EXPECT_EQ(ChildProcess("raiseAnEventWithoutACallback").wait(), -SIGSEGV);
}

CHILD_ROLE(miscService) {
  registerService(new ListeningService);
  android::ProcessState::self()->startThreadPool();
  parent.ready();
  parent.waitForEnd();
  return 0;
}

TEST_F(MiscEventTest, ServiceInAnotherProcessRaisesEventsAndDies) {
  ChildProcess child("miscService");
  ASSERT_TRUE(connect_misc_service(kCallbacks, [] { ++deaths; }));
  EXPECT_EQ(binder_local_ate_start(42), 0);
  EXPECT_EQ(called.take(), std::vector<std::string>{"ring 42"});
  log_.take();
  child.kill();

  // The line is written after everything else.
  std::vector<LogLine> lines;
  vesk::test::waitUntil("the line", [&] { return !(lines = log_.take()).empty(); });
  EXPECT_EQ(lines, (std::vector<LogLine>{{ANDROID_LOG_INFO, "CallClient", "com.qv.MiscService is died. "}}));
  EXPECT_EQ(deaths, 1);
  EXPECT_EQ(binder_local_ate_start(1), -1);
  EXPECT_EQ(binder_get_udisk_status(), 3);
}

}  // namespace
