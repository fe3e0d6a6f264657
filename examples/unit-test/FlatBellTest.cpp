/*
 * A unit test of flat_bell.c without a device, with a fake call service. The fake runs in the
 * test's own process, in the last test in another one, which that test kills.
 */
#include <binder/IPCThreadState.h>
#include <binder/IServiceManager.h>
#include <com/qv/ICallService.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "flat_bell.h"

namespace {

using android::binder::Status;

/** Accepts calls to 200, fails with an exception for 666, and refuses other numbers with a
 * reason. */
class FakeCallService : public com::qv::DefaultCallService {
 public:
  Status registerCallEventListener(const android::sp<com::qv::ICallEventListener>& listener) override {
    listener_ = listener;
    return Status::ok();
  }

  Status getFirstValidLine(int32_t* line) override {
    *line = 3;
    return Status::ok();
  }

  Status makeCall(int32_t line, const std::string& number, int32_t* result) override {
    calls.push_back(std::to_string(line) + ":" + number);
    if (number == "666") return Status::fromExceptionCode(Status::EX_ILLEGAL_STATE, "out of order");
    *result = number == "200" ? 7 : -1;
    if (*result < 0) listener_->makeCallRetEvent("Nobody is there");
    return Status::ok();
  }

  std::vector<std::string> calls;

 private:
  android::sp<com::qv::ICallEventListener> listener_;
};

/** Replaces the fake that was registered before. */
android::sp<FakeCallService> registerFake() {
  android::sp<FakeCallService> fake = new FakeCallService;
  EXPECT_EQ(android::defaultServiceManager()->addService(android::String16("com.qv.CallService"), fake),
            android::OK);
  return fake;
}

class FlatBell : public testing::Test {
 protected:
  FlatBell() { EXPECT_TRUE(flat_bell_connect()); }

  static int ring(std::vector<const char*> numbers) { return flat_bell_ring(numbers.data(), numbers.size()); }

  const android::sp<FakeCallService> fake_ = registerFake();
};

TEST_F(FlatBell, CallsTheFirstNumberThatIsAccepted) {
  EXPECT_EQ(ring({"101", "200", "102"}), 7);
  EXPECT_EQ(fake_->calls, (std::vector<std::string>{"3:101", "3:200"}));
}

TEST_F(FlatBell, TriesTheNextNumberAfterAnException) {
  EXPECT_EQ(ring({"666", "200"}), 7);
  EXPECT_EQ(ring({"666"}), -1);
}

TEST_F(FlatBell, CountsRefusals) {
  const int before = flat_bell_refusals();
  EXPECT_EQ(ring({"101", "666", "102"}), -1);
  EXPECT_EQ(flat_bell_refusals() - before, 2);
}

/** The fake service in a process of its own, which runs this program with --serve. */
class FakeProcess {
 public:
  /** Returns when the service is registered. */
  FakeProcess() {
    int starting[2];
    EXPECT_EQ(pipe(starting), 0);
    pid_ = fork();
    if (pid_ == 0) {
      dup2(starting[1], STDOUT_FILENO);
      close(starting[0]);
      close(starting[1]);
      execl("/proc/self/exe", "FlatBellTest", "--serve", nullptr);
      _exit(127);
    }
    close(starting[1]);
    char end;
    EXPECT_EQ(read(starting[0], &end, 1), 0);
    close(starting[0]);
  }
  ~FakeProcess() { kill(); }
  FakeProcess(const FakeProcess&) = delete;
  FakeProcess& operator=(const FakeProcess&) = delete;

  void kill() {
    if (pid_ < 0) return;
    ::kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    pid_ = -1;
  }

 private:
  pid_t pid_ = -1;
};

TEST(FlatBellAlone, DeathOfTheService) {
  FakeProcess process;
  ASSERT_TRUE(flat_bell_connect());
  EXPECT_TRUE(flat_bell_works());

  process.kill();
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (flat_bell_works() && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  EXPECT_FALSE(flat_bell_works());
  const char* const number = "200";
  EXPECT_EQ(flat_bell_ring(&number, 1), -1);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 2 && std::string(argv[1]) == "--serve") {
    const android::sp<FakeCallService> fake = registerFake();
    close(STDOUT_FILENO);  // Tells the test that the service is registered.
    android::IPCThreadState::self()->joinThreadPool();
    return 0;
  }
  // A directory of its own, so that the test meets neither a device nor another test.
  std::string directory = (std::filesystem::temp_directory_path() / "flat-bell.XXXXXX").string();
  if (mkdtemp(directory.data()) == nullptr) return 1;
  setenv("BINDER_RUNTIME_DIR", directory.c_str(), 1);

  testing::InitGoogleTest(&argc, argv);
  const int result = RUN_ALL_TESTS();
  std::filesystem::remove_all(directory);
  return result;
}
