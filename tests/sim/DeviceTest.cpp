#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vesk/vesk_client.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "ChildProcess.h"
#include "RunProgram.h"
#include "TemporaryDirectory.h"

/* A vesk-device process through the C API. */

namespace {

using vesk::test::become;
using vesk::test::ChildProcess;

CHILD_ROLE(device) {
  parent.ready();
  return become({VESK_DEVICE, "--speed", "50"});
}

CHILD_ROLE(exampleService) {
  parent.ready();
  return become({VESK_EXAMPLE_SERVICE});
}

/** Records the calls of the callbacks as lines of text. */
class Diary {
 public:
  void write(const char* format, ...) __attribute__((format(printf, 2, 3))) {
    char line[512];
    va_list args;
    va_start(args, format);
    std::vsnprintf(line, sizeof(line), format, args);
    va_end(args);
    const std::lock_guard lock(mutex_);
    lines_.push_back(line);
    changed_.notify_all();
  }

  /** Waits for the line `last`. Returns the lines up to it. */
  std::string readTo(const std::string& last) {
    std::unique_lock lock(mutex_);
    std::vector<std::string>::iterator found;
    const auto hasCome = [&] {
      found = std::ranges::find(lines_, last);
      return found != lines_.end();
    };
    const bool came = changed_.wait_for(lock, std::chrono::milliseconds(vesk::test::kTimeoutMs), hasCome);
    std::string text;
    const auto end = came ? found + 1 : lines_.end();
    for (auto line = lines_.begin(); line != end; ++line) text += *line + "\n";
    lines_.erase(lines_.begin(), end);
    if (!came) ADD_FAILURE() << "'" << last << "' did not come, but\n" << text;
    return text;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::string> lines_;
};

/** Never destroyed: callbacks may run until the process ends. */
Diary& diary = *new Diary;

void writeCall(const char* event, void* record) {
  struct {
    int32_t incoming, muted, video, reserved[4], state;
  } more;
  const auto* call = static_cast<const vesk_call_info*>(record);
  std::memcpy(&more, static_cast<const char*>(record) + 328, sizeof(more));
  diary.write("%s %d/%d '%s' %s %d%s%s%s", event, call->line, call->chan, call->name, call->number,
              more.state, more.incoming != 0 ? " incoming" : "", more.muted != 0 ? " muted" : "",
              more.video != 0 ? " video" : "");
}

void writeMembers(const char* event, int conference, const int* members, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += " " + std::to_string(members[i]);
  diary.write("%s %d:%s", event, conference, text.c_str());
}

bool connectWithDiary() {
  return connect_call_service(
      [](void* call) { writeCall("start", call); }, [](int chan) { diary.write("stop %d", chan); },
      [](int value) { diary.write("selection %d", value); }, [](void* call) { writeCall("new", call); },
      [](void* call) { writeCall("state", call); }, [](void* call) { writeCall("info", call); },
      [](int chan) { diary.write("current %d", chan); }, [](int chan) { diary.write("gone %d", chan); },
      [](int count) { diary.write("streams %d", count); },
      [](int conference, const int* members, int count) {
        writeMembers("conference", conference, members, count);
      },
      [](int conference) { diary.write("conference stop %d", conference); },
      [](int conference, const int* members, int count) {
        writeMembers("members", conference, members, count);
      },
      [] { diary.write("manager"); }, [](int code, int status) { diary.write("key %d %d", code, status); },
      [](const char* text) { diary.write("result %s", text); },
      [](void* call) { writeCall("dialing", call); },
      [](void* record) {
        const auto* info = static_cast<const vesk_auto_redial_info*>(record);
        diary.write("redial %d/%d %d '%s'", info->currenttimes, info->maxtimes, info->interval,
                    info->dialNumber);
      },
      [](void* record, bool free) {
        const auto* info = static_cast<const vesk_call_completion_info*>(record);
        diary.write("completion %d '%s' %d", info->line, info->dialNumber, free);
      },
      [] { diary.write("died"); });
}

class Device : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(connectWithDiary()); }
  void TearDown() override {
    command("quit");
    EXPECT_EQ(device_.wait(), 0) << "exit code of vesk-device";
    diary.readTo("died");
  }

  void command(const std::string& line) { EXPECT_TRUE(device_.channel().send(line + "\n")); }

 private:
  ChildProcess device_{"device"};
};

TEST_F(Device, RedialAndCompletionRecords) {
  // A second connection replaces the listener of the first: each event arrives once.
  ASSERT_TRUE(connectWithDiary());
  EXPECT_EQ(binder_make_call(0, "221"), 1);
  EXPECT_EQ(diary.readTo("completion 1 '221' 0"),
            "start 1/1 'Hotline' 221 1\n"
            "current 1\n"
            "dialing 1/1 'Hotline' 221 1\n"
            "new 1/1 'Hotline' 221 1\n"
            "result Engaged\n"
            "state 1/1 'Hotline' 221 8\n"
            "gone 1\n"
            "stop 1\n"
            "current 0\n"
            "completion 1 '221' 0\n");
  binder_call_auto_redial();
  binder_auto_redial_make_call();
  EXPECT_EQ(diary.readTo("redial 1/5 5 '221'"), "redial 0/5 5 '221'\nredial 1/5 5 '221'\n");
  binder_auto_redial_cancel();
  diary.readTo("redial 1/5 5 ''");

  binder_make_call(1, "220");
  diary.readTo("completion 1 '220' 0");
  binder_call_completion();
  EXPECT_EQ(diary.readTo("completion 1 '220' 1"), "completion 1 '220' 1\n");
  binder_complete_dial_confirm(1, "220");
  diary.readTo("info 1/1 'Carla Rossi' 220 4");
}

TEST_F(Device, ConferenceEventsHaveTheMembers) {
  binder_make_call(1, "200");
  diary.readTo("info 1/1 'Alice Meyer' 200 4");
  command("incoming 202 2");
  diary.readTo("new 2/2 'Zoë Lindqvist' 202 3 incoming");
  binder_headset_answer_call();
  diary.readTo("info 2/2 'Zoë Lindqvist' 202 4 incoming");
  const int members[] = {2, 1};
  binder_add_conference_members(members, 2);
  binder_mute_all_conference_member(1, true);
  binder_remove_conference_member(2);
  EXPECT_EQ(diary.readTo("state 1/1 'Alice Meyer' 200 4 muted"),
            "conference 1: 2 1\n"
            "state 2/2 'Zoë Lindqvist' 202 6 incoming\n"
            "state 1/1 'Alice Meyer' 200 6\n"
            "info 2/2 'Zoë Lindqvist' 202 6 incoming muted\n"
            "info 1/1 'Alice Meyer' 200 6 muted\n"
            "manager\n"
            "state 2/2 'Zoë Lindqvist' 202 5 incoming muted\n"
            "conference stop 1\n"
            "state 1/1 'Alice Meyer' 200 4 muted\n");
}

TEST_F(Device, Snapshots) {
  binder_make_av_call(1, "240", 1);
  diary.readTo("streams 1");
  binder_set_video_display_area(1, "0123456789abcdef", "0123456789abcdef");
  diary.readTo("streams 1");
  binder_video_snapshot(1);
  binder_video_snapshot(1);
  EXPECT_EQ(binder_get_snapshot_nums(1), 2);

  struct {
    int32_t chan, index, takenAtMs, width, height;
    char number[64], name[172];
  } info{};
  static_assert(sizeof(info) == VESK_SNAPSHOT_INFO_SIZE);
  info.chan = 77;
  binder_get_snapshot_info_by_index(1, 2, &info);
  EXPECT_EQ(info.chan, 77) << "there is no such snapshot";
  binder_get_snapshot_info_by_index(1, 1, &info);
  EXPECT_EQ(info.chan, 1);
  EXPECT_EQ(info.index, 1);
  EXPECT_GT(info.takenAtMs, 0);
  EXPECT_EQ(info.width, 640);
  EXPECT_EQ(info.height, 480);
  EXPECT_STREQ(info.number, "240");
  EXPECT_STREQ(info.name, "Front Door");

  binder_delete_snapshot(1);
  EXPECT_EQ(binder_get_snapshot_nums(1), 0);
}

TEST_F(Device, InjectedFailuresAndDeath) {
  ASSERT_TRUE(connect_config_service(nullptr));
  // The key event confirms that the previous commands have run.
  const auto confirmed = [&](const std::string& line) {
    command(line);
    command("key 1 up");
    diary.readTo("key 1 0");
  };
  confirmed("fail call getFirstValidLine times 2 DEAD_OBJECT");
  EXPECT_EQ(binder_get_snapshot_nums(1), 0) << "another method";
  EXPECT_NE(binder_get_first_valid_line(), 1);
  EXPECT_NE(binder_get_first_valid_line(), 1);
  EXPECT_EQ(binder_get_first_valid_line(), 1);

  confirmed("fail call always EX_SECURITY");
  for (int i = 0; i < 3; ++i) EXPECT_NE(binder_get_first_valid_line(), 1);
  confirmed("heal config");
  EXPECT_NE(binder_get_first_valid_line(), 1) << "the faults of another service were cleared";
  confirmed("heal");
  EXPECT_EQ(binder_get_first_valid_line(), 1);

  for (const char* bytes : {"-1", "3"}) {
    confirmed("short config screeninfoGetConfig " + std::string(bytes));
    std::string record(VESK_SCREENINFO_CONFIG_SIZE + 8, '-');
    const std::string before = record;
    binder_screeninfo_get_config(record.data());
    EXPECT_EQ(record, before) << bytes;
    EXPECT_EQ(binder_screeninfo_get_config(record.data()), 0);
    EXPECT_NE(record, before);
  }

  // The client drops the two events with short records, and delivers the others.
  command("short call newOngoingCallEvent times 2");
  for (const char* number : {"200", "201", "202"}) command("incoming " + std::string(number));
  EXPECT_EQ(diary.readTo("new 1/3 'Zoë Lindqvist' 202 3 incoming"),
            "current 1\nnew 1/3 'Zoë Lindqvist' 202 3 incoming\n");
  for (const char* chan : {"1", "2", "3"}) command("hangup " + std::string(chan));
  diary.readTo("current 0");

  confirmed("delay call getFirstValidLine 300ms");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(binder_get_first_valid_line(), 1);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(300));

  // The pause of the first death ends while the service is dead again: it stays dead.
  command("die call for 50ms");
  command("die call for 60s");
  diary.readTo("died");
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  setenv("BINDER_LOOKUP_MS", "0", 1);
  EXPECT_FALSE(connectWithDiary());
  unsetenv("BINDER_LOOKUP_MS");
  command("die call for 200ms");
  char value[64];
  EXPECT_EQ(binder_get_config("section", "key", "", value, sizeof(value)), 0) << "the others live";
  ASSERT_TRUE(connectWithDiary());
  EXPECT_EQ(binder_get_first_valid_line(), 1);
  binder_make_call(1, "210");
  command("answer");
  diary.readTo("info 1/1 'Empty Office' 210 4");
  command("hangup");
  diary.readTo("gone 1");
}

TEST(Example, ServiceServesThreeMethods) {
  ChildProcess service("exampleService");
  ASSERT_TRUE(connectWithDiary());
  EXPECT_EQ(binder_get_first_valid_line(), 1);
  EXPECT_EQ(binder_make_call(1, "200"), -1);
  EXPECT_EQ(diary.readTo("result Nobody is there"), "result Nobody is there\n");
  EXPECT_EQ(binder_get_snapshot_nums(1), -1);
  service.kill();
  diary.readTo("died");
}

/** The output of the device for a command line, and its exit code. */
std::pair<std::string, int> run(const std::string& arguments) {
  FILE* program = popen(("'" VESK_DEVICE "' " + arguments + " 2>&1 </dev/null").c_str(), "r");
  std::string output;
  for (int c; program != nullptr && (c = std::fgetc(program)) != EOF;) output += static_cast<char>(c);
  const int status = program == nullptr ? -1 : pclose(program);
  return {output, WIFEXITED(status) ? WEXITSTATUS(status) : -1};
}

TEST(CommandLine, OptionsAndErrors) {
  struct {
    const char* arguments;
    int exitCode;
    const char* says;
  } const rows[] = {
      {"--help", 0, "Usage: vesk-device [OPTIONS]"},
      {"--version", 0, "vesk-device "},
      {"--speed 0", 2, "--speed: '0' is not a number"},
      {"--speed nan", 2, "--speed: 'nan' is not a number"},
      {"--speed 2x", 2, "--speed: '2x' is not a number"},
      {"--incoming 200", 2, "--incoming: '200' is not"},
      {"--incoming 3:200", 2, "--incoming: '3:200' is not"},
      {"--incoming=-1s:200", 2, "--incoming: '-1s:200' is not"},
      {"--incoming 3s:", 2, "--incoming: '3s:' is not"},
      {"--incoming 3s:200:3", 2, "--incoming: '3s:200:3' is not"},
      {"--incoming 3s:200:", 2, "--incoming: '3s:200:' is not"},
      {"--bogus", 2, "--bogus"},
      {"again", 2, "again"},
      {"--script /nonexistent", 2, "/nonexistent: can't be read"},
      {"--script /proc/version", 2, "/proc/version:1: no command: Linux"},
  };
  for (const auto& row : rows) {
    const auto [output, exitCode] = run(row.arguments);
    EXPECT_EQ(exitCode, row.exitCode) << row.arguments;
    EXPECT_NE(output.find(row.says), std::string::npos) << row.arguments << ": " << output;
  }
}

/** Runs a device with a script of these lines. */
std::pair<std::string, int> runScript(const std::string& lines) {
  const vesk::test::TemporaryDirectory directory;
  const std::string path = directory.path() + "/script";
  std::ofstream(path) << lines;
  return run("--speed 100 --script '" + path + "'");
}

TEST(Script, RunsInOrder) {
  const auto [output, exitCode] = runScript(
      "# Each command with output, or an effect that 'status' shows.\n"
      "engaged\ntest passed\nudisk out\nmulticast page\n"
      "voicemail 1 3 4\nvoicemail 9 1\nrelay 1 on\nrelay 9 on\nsms 200 Hello there\nincoming 200\n"
      "fail database EX_SECURITY\ndelay relay getRelayDoState times 3 5s\n"
      "short call always newOngoingCallEvent 4\ndie misc for 60s\nstatus\nheal relay\nwait "
      "1s\nstatus\nquit\n");
  const std::string shown =
      "* line 1, chan 1, 200 (Alice Meyer), incoming\n"
      "tone 5, DTMF type 0, key multiplexing off, door LED off\n"
      "page 0, backlight 5, USB disk out, recording stopped, test off, multicast page\n"
      "short com.qv.CallService newOngoingCallEvent always\n"
      "fail com.qv.DatabaseService times 1\n"
      "com.qv.MiscService is dead\n";
  EXPECT_EQ(output,
            "ready\n"
            "There is no call that waits for its far end\n"
            "The touch screen is not being tested\n"
            "There is no such line, or number of messages\n"
            "There is no such output, or it is disabled\n" +
                shown + "delay com.qv.RelayService getRelayDoState times 3\n" + shown);
  EXPECT_EQ(exitCode, 0);
}

TEST(Script, ErrorsAreListed) {
  struct {
    const char* line;
    const char* says;
  } const rows[] = {
      {"incoming 201 nine", "not a line: nine"},
      {"key five", "usage: key CODE [down|up]"},
      {"voicemail one 2", "usage: voicemail LINE UNHEARD [HEARD]"},
      {"relay 1 up", "usage: relay OUTPUT on|off|toggle|pulse"},
      {"udisk away", "usage: udisk in|out"},
      {"test sleep", "usage: test start [TEST]|stop|passed|failed"},
      {"fail call 3", "neither a method of call nor another valid argument: 3"},
      {"fail nobody", "no service: nobody"},
      {"delay call", "usage: delay SERVICE [METHOD] [times N|always] TIME"},
      {"short call makeCall", "makeCall returns no record"},
      {"short call dialCallStopEvent", "dialCallStopEvent has no record"},
      {"short misc times 0", "usage: short SERVICE [METHOD|EVENT] [times N|always] [BYTES]"},
      {"die call 5s", "usage: die SERVICE [for TIME]"},
      {"heal nobody", "no service: nobody"},
      {"wait soon", "usage: wait TIME"},
  };
  std::string script;
  for (const auto& row : rows) script += std::string(row.line) + "\n";
  const auto [output, exitCode] = runScript(script);
  EXPECT_EQ(exitCode, 2);
  for (size_t at = 0; at < std::size(rows); ++at) {
    const std::string error = "script:" + std::to_string(at + 1) + ": " + rows[at].says + "\n";
    EXPECT_NE(output.find(error), std::string::npos) << rows[at].line << "\n" << output;
  }
}

}  // namespace
