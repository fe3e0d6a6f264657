#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "ChildProcess.h"
#include "RunProgram.h"
#include "ScriptedService.h"
#include "WaitUntil.h"

/* veskctl as a process, against vesk-device and services that answer as they are told. */

namespace {

using vesk::test::ChildProcess;
using vesk::test::ScriptedService;
using vesk::test::Wire;
using Json = nlohmann::json;

CHILD_ROLE(device) {
  parent.ready();
  return vesk::test::become({VESK_DEVICE, "--speed", "50"});
}

/** What a shell prints, and its exit code. In the commands, $V is veskctl. */
class Shell {
 public:
  explicit Shell(const std::string& command) : pipe_(popen(("V='" VESKCTL "'; " + command).c_str(), "r")) {}
  ~Shell() {
    if (pipe_ != nullptr) pclose(pipe_);
  }
  Shell(const Shell&) = delete;
  Shell& operator=(const Shell&) = delete;

  /** Without its newline; nothing at the end. */
  std::optional<std::string> line() {
    std::string text;
    for (int c; (c = std::fgetc(pipe_)) != EOF;) {
      if (c == '\n') return text;
      text += static_cast<char>(c);
    }
    return text.empty() ? std::nullopt : std::optional(text);
  }

  int exitCode() {
    const int status = pclose(std::exchange(pipe_, nullptr));
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }

 private:
  FILE* pipe_;
};

struct Outcome {
  std::string output;
  int exitCode;
};

Outcome run(const std::string& command) {
  Shell shell(command);
  Outcome outcome{};
  while (const auto line = shell.line()) outcome.output += *line + "\n";
  outcome.exitCode = shell.exitCode();
  return outcome;
}

struct Row {
  const char* command;
  int exitCode;
  const char* says;
};

template <class Rows>
void expectRows(const Rows& rows) {
  for (const Row& row : rows) {
    const Outcome outcome = run(std::string(row.command) + " 2>&1");
    EXPECT_EQ(outcome.exitCode, row.exitCode) << row.command;
    EXPECT_NE(outcome.output.find(row.says), std::string::npos) << row.command << ": " << outcome.output;
  }
}

void waitForDevice() {
  vesk::test::waitUntil("vesk-device", [] { return run("$V ping >/dev/null").exitCode == 0; });
}

/** An exception as a service answers it. */
Wire exception(int32_t code, const char16_t* message) { return Wire().i32(code).text(message).i32(0); }

TEST(Veskctl, AnswersAndRefusesCommandLines) {
  const Row rows[] = {
      {"$V --help", 0, "Usage: veskctl [OPTION]... COMMAND\n"},
      {"$V call --help", 0, "SERVICE METHOD [ARGUMENT]...\n"},
      {"$V --version", 0, "veskctl "},
      {"$V", 2, "veskctl: which command?\nTry 'veskctl --help'.\n"},
      {"$V lost", 2, "there is no command 'lost'"},
      {"$V --lost list", 2, "there is no option '--lost'"},
      {"$V list call", 2, "call"},
      {"$V list --bogus", 2, "--bogus"},
      {"$V list --timeout soon", 2, "'soon' is not a number of seconds"},
      {"$V list --timeout -1", 2, "'-1' is not a number of seconds"},
      {"$V list --timeout nan", 2, "'nan' is not a number of seconds"},
      {"$V list --color blue", 2, "'blue' is none of auto, always and never"},
      {"$V methods call misc", 2, "misc"},
      {"$V methods nothing", 2, "there is no service 'nothing'"},
      {"$V ping call-events", 2, "there is no service 'call-events'"},
      {"$V watch news", 2, "there is nothing to watch of 'news'"},
      {"$V call", 2, "which service"},
      {"$V call --lost call redialCall", 2, "there is no option '--lost'"},
      {"$V call call", 2, "which method of com.qv.ICallService?"},
      {"$V call cal redialCall", 2, "did you mean call, call-events?"},
      {"$V call call makeCalls 1 200", 2, "did you mean makeCall"},
      {"$V call call makeCall 1", 2,
       "veskctl: 2 arguments expected, 1 given\n  makeCall(int32 line, string number) -> int32 result\n"},
      {"$V call call redialCall --json", 2, "options stand before the service\n  redialCall()\n"},
      {"$V call call makeCall one 200", 2, "line: 'one' is not a number of 32 bits\n  makeCall("},
      {"$V call misc registerMiscEventListener yes", 2, "listener: 'yes' is not a listener: - for none"},
      {"$V call call redialCall", 3,
       "com.qv.CallService: no such service is running; BINDER_RUNTIME_DIR is '/"},
      {"env -u BINDER_RUNTIME_DIR XDG_RUNTIME_DIR=\"$BINDER_RUNTIME_DIR\" $V call call redialCall", 3,
       "BINDER_RUNTIME_DIR is not set"},
      {"$V call --at no.such.name call-events 1 zero:360", 3, "no.such.name: no such service is running"},
      {"$V ping relay", 3, "com.qv.RelayService        absent\n"},
      {"$V list", 0, "externalkey  com.qv.ExternalKeyService  absent           -        5  -\n"},
      {"$V methods misc-events", 0, "    2  wkRingHdl(int32 value)\n"},
      {"($V methods >/dev/full)", 1, "veskctl: can't write: No space left on device\n"},
      {"bash -c \"'$V' methods | head -n 1; exit \\${PIPESTATUS[0]}\"", 0,
       "call  com.qv.ICallService, 42 methods\n"},
  };
  expectRows(rows);
}

TEST(Veskctl, IsInColourWhereItIsWanted) {
  constexpr const char* kBold = "\033[1m";
  EXPECT_EQ(run("$V methods relay").output.find('\033'), std::string::npos);
  EXPECT_NE(run("NO_COLOR=1 $V methods relay --color always").output.find(kBold), std::string::npos);
  EXPECT_EQ(run("$V --colour=never list").output.find('\033'), std::string::npos);
}

TEST(Veskctl, TellsHowACallEnded) {
  ScriptedService service("com.qv.RelayService");
  struct {
    Wire answer;
    android::status_t status;
    Row row;
  } const rows[] = {
      {Wire().i32(0).i32(-5),
       android::OK,
       {"$V call relay getPureLocalScene", 0, "ok\n  scene  int32     -5\n"}},
      {exception(-1, u"no"), android::OK, {"$V call relay 16", 4, "EX_SECURITY (-1): \"no\"\n"}},
      {exception(-8, u"busy\n").i32(17),
       android::OK,
       {"$V call relay 16", 4, "EX_SERVICE_SPECIFIC 17: \"busy\\n\"\n"}},
      {exception(-8, u"busy").i32(17),
       android::OK,
       {"$V call --json relay 16", 4, "\"message\": \"busy\",\n    \"serviceSpecific\": 17\n"}},
      {exception(-77, u""), android::OK, {"$V call relay 16", 4, "an exception of unknown code (-77)\n"}},
      {Wire(),
       android::UNKNOWN_TRANSACTION,
       {"$V call relay 16", 5, "EX_TRANSACTION_FAILED: UNKNOWN_TRANSACTION\n"}},
      {Wire().i32(0), android::OK, {"$V call relay 16", 5, "EX_TRANSACTION_FAILED: NOT_ENOUGH_DATA\n"}},
      {Wire().i32(0).i32(0), android::OK, {"$V call relay getRelayDevInfo", 5, "UNEXPECTED_NULL\n"}},
      {Wire().i32(0), android::OK, {"$V --json call relay 16", 5, "\"name\": \"NOT_ENOUGH_DATA\""}},
  };
  for (const auto& row : rows) {
    service.answer(row.answer, row.status);
    expectRows(std::vector{row.row});
  }
  service.take();
  service.answer(Wire().i32(0).i32(0));
  // A relay action of three integers, by way of a file.
  run("printf '\\001\\0\\0\\0\\002\\0\\0\\0\\003\\0\\0\\0' | $V call relay relaySetAct @-");
  const auto request = service.take();
  ASSERT_TRUE(request.has_value());
  EXPECT_EQ(request->code, 11u);
  EXPECT_EQ(request->bytes,
            Wire().text(u"com.qv.IRelayService").record(std::string("\1\0\0\0\2\0\0\0\3\0\0\0", 12)).bytes());
  service.dieOverNextRequest();
  expectRows(std::vector<Row>{{"$V call relay 16", 5, "EX_TRANSACTION_FAILED: DEAD_OBJECT\n"}});
  service.kill();
}

TEST(Veskctl, CallsAListenerThatHasAName) {
  ScriptedService listener("my.listener");
  listener.answer(Wire().i32(0));
  expectRows(std::vector<Row>{{"$V call --at my.listener call-events deleteOngoingCallEvent 3", 0, "ok\n"}});
  EXPECT_EQ(listener.take()->bytes, Wire().text(u"com.qv.ICallEventListener").i32(3).bytes());
}

TEST(Veskctl, DoesNotWaitForEverForAProcessThatHangs) {
  ChildProcess service("scriptedService", {"com.qv.ConfigService"});
  service.suspend();
  const Row rows[] = {
      {"$V list --timeout 0.3", 0, "com.qv.ConfigService       no answer"},
      {"$V list --timeout 0.3", 0, "com.qv.CallService         absent"},
      {"$V ping --timeout 0.3 config", 6, "no answer"},
      {"$V call --timeout 0.3 config saveConfig", 6, "com.qv.ConfigService: no answer in time"},
  };
  expectRows(rows);
  service.resume();
}

TEST(Veskctl, ShowsAndCallsTheDevice) {
  ChildProcess device("device");
  waitForDevice();
  const Json services = Json::parse(run("$V list --json").output);
  ASSERT_EQ(services.size(), 6u);
  for (const Json& service : services) {
    EXPECT_EQ(service["state"], "alive");
    EXPECT_EQ(service["pid"], device.pid());
    EXPECT_EQ(service["interface"].get<std::string>().erase(7, 1), service["service"]);
  }
  const Json tables = Json::parse(run("$V methods --json").output);
  size_t methods = 0;
  for (const Json& table : tables) methods += table["methods"].size();
  EXPECT_EQ(methods, 486u);
  for (const Json& answer : Json::parse(run("$V ping --json").output)) EXPECT_GT(answer["milliseconds"], 0);

  const Row rows[] = {
      {"$V ping call misc", 0, "com.qv.MiscService         alive      "},
      {"$V call call makeCall 0 300", 0, "ok\n  result  int32     1\n"},
      {"$V call call makeCall -1 300", 0, "ok\n  result  int32     -1\n"},
      {"$V call relay getRelayDevConfig 77", 4, "EX_ILLEGAL_ARGUMENT"},
      {"$V call config getDsskeyDisplay 0 0 0", 0, "    name=\"Alice Meyer\" value=\"200\" icon="},
      {"$V call config getDsskeyDisplay 0 0 0", 0, "    0000  41 6c 69 63 65 20 4d 65  79 65 72 "},
      {"$V call config setGreetingWord 'Grüß \"Gott\"'", 0, "ok\n  result  int32     0\n"},
      {"$V call config getGreetingWord", 0, "ok\n  text  string    \"Grüß \\\"Gott\\\"\"\n"},
      {"$V call misc getUdiskRecordsFiles", 0,
       "  files  record[]  3 records\n    [0] 64 bytes\n      0000  "},
      {"$V call call registerCallEventListener -", 4, "EX_NULL_POINTER"},
  };
  expectRows(rows);

  const Json memo = Json::parse(run("$V call --json database getMemoByIndex 0").output);
  EXPECT_EQ(memo["status"]["exception"], "EX_NONE");
  EXPECT_EQ(memo["out"][0]["name"], "memo");
  EXPECT_EQ(memo["out"][0]["value"]["size"], 268);
  EXPECT_EQ(memo["out"][0]["value"]["hex"].get<std::string>().size(), 2 * 268u);
  EXPECT_EQ(memo["out"][1]["value"], 1);
  device.kill();
}

/** A veskctl that runs until it is told to end. */
class Watcher {
 public:
  explicit Watcher(const std::string& arguments) : shell_("echo $$; exec \"$V\" " + arguments) {
    pid_ = std::stoi(shell_.line().value());
  }

  std::string line() { return shell_.line().value_or("(the end)"); }
  Json json() { return Json::parse(line()); }

  /** The next `count` lines, whose order among each other is open. */
  void expectStates(const char* state, size_t count) {
    for (size_t i = 0; i < count; ++i) EXPECT_EQ(json()["state"], state);
  }
  /** Events up to the one of that name; its arguments. */
  Json argumentsOf(const char* topic, const char* event) {
    for (;;) {
      const Json next = json();
      if (next.contains("state")) ADD_FAILURE() << next << " instead of " << event;
      if (next.contains("state") || (next["topic"] == topic && next["event"] == event))
        return next["arguments"];
    }
  }
  void endBy(int signal) {
    ::kill(pid_, signal);
    EXPECT_EQ(shell_.exitCode(), 0);
  }

 private:
  Shell shell_;
  pid_t pid_;
};

TEST(Watch, SeesEventsOfAllTopicsAndServicesComeAndGo) {
  Watcher watcher("watch --json");
  watcher.expectStates("waiting", 2);
  for (int round = 0; round < 2; ++round) {
    ChildProcess device("device");
    watcher.expectStates("watching", 2);
    run("$V call call makeCall 1 221");
    const Json call = watcher.argumentsOf("call", "callStateChangedEvent")["callInfo"];
    EXPECT_EQ(call["fields"], Json::parse(R"({"line": 1, "chan": 1, "name": "Hotline", "number": "221"})"));
    const Json completion = watcher.argumentsOf("call", "callCompletionInfoChangedEvent");
    EXPECT_EQ(completion["completionInfo"]["fields"]["dialNumber"], "221");
    EXPECT_EQ(completion["flag"], false);
    run("$V call misc notifyLcdScreenShotReady");
    watcher.argumentsOf("misc", "webscreenshot");
    run("$V call misc localAteStart 1");
    EXPECT_EQ(watcher.argumentsOf("test", "updateContextEvent")["text"], "Display");
    watcher.argumentsOf("test", "onlineAteStopedEvent");
    device.kill();
    watcher.expectStates("died", 2);
  }
  watcher.endBy(SIGTERM);
}

TEST(Watch, SaysWhyThereAreNoEvents) {
  ScriptedService service("com.qv.CallService");
  service.answer(exception(-7, u"not here"));
  Watcher watcher("watch --json call");
  const Json refused = watcher.json();
  EXPECT_EQ(refused["state"], "refused");
  EXPECT_EQ(refused["reason"], "registerCallEventListener: EX_UNSUPPORTED_OPERATION (-7): \"not here\"");
  watcher.endBy(SIGINT);
}

TEST(Watch, GoesWithTheCallThatRegistersIt) {
  ChildProcess device("device");
  waitForDevice();
  Watcher watcher("call call registerCallEventListener @watch");
  EXPECT_EQ(watcher.line(), "ok");
  run("$V call call edialWithLine 2 200");
  constexpr size_t kTime = 14;  // "12:34:56.789  "
  const std::string start = watcher.line().substr(kTime);
  EXPECT_TRUE(start.starts_with(
      R"(call  dialCallStartEvent  callInfo={line=2 chan=1 name="Alice Meyer" number="200")"))
      << start;
  EXPECT_EQ(watcher.line().substr(kTime), "call  currentCallChangedEvent  chan=1");
  watcher.endBy(SIGINT);
  device.kill();
}

TEST(Watch, EndsWhenNobodyReadsIt) {
  const Outcome outcome = run("bash -c \"'$V' watch | head -n 1; exit \\${PIPESTATUS[0]}\"");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_NE(outcome.output.find("is not running; waiting for it"), std::string::npos) << outcome.output;
}

}  // namespace
