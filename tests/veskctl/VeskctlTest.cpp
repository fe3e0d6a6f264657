#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "ChildProcess.h"
#include "RunProgram.h"
#include "ScriptedService.h"
#include "WaitUntil.h"

/* veskctl as a process, with vesk-device and with scripted services. */

namespace {

using vesk::test::ChildProcess;
using vesk::test::ScriptedService;
using vesk::test::Wire;
using Json = nlohmann::json;

CHILD_ROLE(device) {
  parent.ready();
  return vesk::test::become({VESK_DEVICE, "--speed", "50"});
}

/** A shell command, in which $V is veskctl. */
class Shell {
 public:
  explicit Shell(const std::string& command) : pipe_(popen(("V='" VESKCTL "'; " + command).c_str(), "r")) {}
  Shell(const Shell&) = delete;
  Shell& operator=(const Shell&) = delete;

  /** The next line of its output with the newline; empty at the end. */
  std::string line() {
    std::string text;
    for (int c; !text.ends_with('\n') && (c = std::fgetc(pipe_)) != EOF;) text += static_cast<char>(c);
    return text;
  }
  /** Waits until it has exited. */
  int exitCode() {
    const int status = pclose(pipe_);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }

 private:
  FILE* const pipe_;
};

std::string run(const std::string& command, int exitCode = 0) {
  Shell shell(command + " 2>&1");
  std::string output;
  for (std::string line; !(line = shell.line()).empty();) output += line;
  EXPECT_EQ(shell.exitCode(), exitCode) << command << ": " << output;
  return output;
}

struct Row {
  const char* command;
  int exitCode;
  /** A part of the output. */
  const char* says;
};

void expectRows(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    const std::string output = run(row.command, row.exitCode);
    EXPECT_NE(output.find(row.says), std::string::npos) << row.command << ": " << output;
  }
}

/** An exception as a service answers it. */
Wire exception(int32_t code, const char16_t* message) { return Wire().i32(code).text(message).i32(0); }

TEST(Veskctl, CommandLines) {
  expectRows({
      {"$V --help", 0, "Usage: veskctl [OPTION]... COMMAND\n"},
      {"$V call --help", 0, "SERVICE METHOD [ARGUMENT]...\n"},
      {"$V --version", 0, "veskctl "},
      {"$V", 2, "veskctl: no command is given\nTry 'veskctl --help'.\n"},
      {"$V lost", 2, "there is no command 'lost'"},
      {"$V --lost list", 2, "there is no option '--lost'"},
      {"$V list --bogus", 2, "--bogus"},
      {"$V list --timeout soon", 2, "'soon' is not a number of seconds"},
      {"$V list --timeout -1", 2, "'-1' is not a number of seconds"},
      {"$V list --timeout nan", 2, "'nan' is not a number of seconds"},
      {"$V list --color blue", 2, "'blue' is none of auto, always and never"},
      {"$V methods call misc", 2, "misc"},
      {"$V methods nothing", 2, "there is no service 'nothing'"},
      {"$V ping call-events", 2, "there is no service 'call-events'"},
      {"$V watch news", 2, "there is no topic 'news'"},
      {"$V call", 2, "SERVICE and METHOD are missing"},
      {"$V call --lost call redialCall", 2, "there is no option '--lost'"},
      {"$V call call", 2, "no method of com.qv.ICallService is given"},
      {"$V call call makeCall 1", 2,
       "veskctl: 2 arguments expected, 1 given\n  makeCall(int32 line, string number) -> int32 result\n"},
      {"$V call call redialCall --json", 2, "options must precede the service\n  redialCall()\n"},
      {"$V call call makeCall one 200", 2, "line: 'one' is not a number of 32 bits\n  makeCall("},
      {"$V call misc registerMiscEventListener yes", 2, "listener: 'yes' is not a listener: - for none"},
      {"$V call call redialCall", 3, "CallService: no such service is running; BINDER_RUNTIME_DIR is '/"},
      {"env -u BINDER_RUNTIME_DIR XDG_RUNTIME_DIR=\"$BINDER_RUNTIME_DIR\" $V call call redialCall", 3,
       "BINDER_RUNTIME_DIR is not set"},
      {"$V call --at no.such.name call-events 1 zero:360", 3, "no.such.name: no such service is running"},
      {"$V ping relay", 3, "com.qv.RelayService        absent\n"},
      {"$V list", 0, "externalkey  com.qv.ExternalKeyService  absent           -        5  -\n"},
      {"$V methods misc-events", 0, "    2  wkRingHdl(int32 value)\n"},
      {"$V methods --json | grep -c '\"signature\"'", 0, "486\n"},
      {"($V methods >/dev/full)", 1, "veskctl: can't write: No space left on device\n"},
      {"bash -c \"'$V' methods | head -n 1; exit \\${PIPESTATUS[0]}\"", 0, "call  com.qv.ICallService, 42 "},
      {"bash -c \"'$V' watch | head -n 1; exit \\${PIPESTATUS[0]}\"", 0, "is not running; waiting for it"},
      {"NO_COLOR=1 $V methods relay --color always", 0, "\033[1m"},
      {"$V --colour=never methods relay | grep -c '\033'", 1, "0\n"},
  });
}

TEST(Veskctl, AnswersOfServices) {
  ScriptedService service("com.qv.RelayService");
  const struct {
    Wire answer;
    Row row;
    android::status_t status = android::OK;
  } rows[] = {
      {Wire().i32(0).i32(-5), {"$V call relay getPureLocalScene", 0, "ok\n  scene  int32     -5\n"}},
      {exception(-1, u"no"), {"$V call relay 16", 4, "EX_SECURITY (-1): \"no\"\n"}},
      {exception(-8, u"busy\n").i32(17), {"$V call relay 16", 4, "EX_SERVICE_SPECIFIC 17: \"busy\\n\"\n"}},
      {exception(-8, u"busy").i32(17),
       {"$V call --json relay 16", 4, "\"message\": \"busy\",\n    \"serviceSpecific\": 17\n"}},
      {exception(-77, u""), {"$V call relay 16", 4, "an exception of unknown code (-77)\n"}},
      {{},
       {"$V call relay 16", 5, "EX_TRANSACTION_FAILED: UNKNOWN_TRANSACTION\n"},
       android::UNKNOWN_TRANSACTION},
      {Wire().i32(0), {"$V call relay 16", 5, "EX_TRANSACTION_FAILED: NOT_ENOUGH_DATA\n"}},
      {Wire().i32(0).i32(0), {"$V call relay getRelayDevInfo", 5, "UNEXPECTED_NULL\n"}},
      {Wire().i32(0), {"$V --json call relay 16", 5, "\"name\": \"NOT_ENOUGH_DATA\""}},
  };
  for (const auto& row : rows) {
    service.answer(row.answer, row.status);
    expectRows({row.row});
  }
  service.take();
  service.answer(Wire().i32(0).i32(0));
  run("printf '\\001\\0\\0\\0\\002\\0\\0\\0\\003\\0\\0\\0' | $V call relay relaySetAct @-");
  const auto request = service.take();
  ASSERT_TRUE(request.has_value());
  EXPECT_EQ(request->code, 11u);
  EXPECT_EQ(request->bytes,
            Wire().text(u"com.qv.IRelayService").record(std::string("\1\0\0\0\2\0\0\0\3\0\0\0", 12)).bytes());
  service.dieOnNextRequest();
  expectRows({{"$V call relay 16", 5, "EX_TRANSACTION_FAILED: DEAD_OBJECT\n"}});
  service.kill();

  ScriptedService listener("my.listener");
  listener.answer(Wire().i32(0));
  expectRows({{"$V call --at my.listener call-events deleteOngoingCallEvent 3", 0, "ok\n"}});
  EXPECT_EQ(listener.take()->bytes, Wire().text(u"com.qv.ICallEventListener").i32(3).bytes());
}

TEST(Veskctl, Timeout) {
  ChildProcess service("scriptedService", {"com.qv.ConfigService"});
  service.suspend();
  expectRows({
      {"$V list --timeout 0.3", 0, "com.qv.ConfigService       no answer"},
      {"$V list --timeout 0.3", 0, "com.qv.CallService         absent"},
      {"$V ping --timeout 0.3 config", 6, "no answer"},
      {"$V call --timeout 0.3 config saveConfig", 6, "com.qv.ConfigService: no answer in time"},
  });
  service.resume();
}

TEST(Veskctl, Device) {
  ChildProcess device("device");
  vesk::test::waitUntil("vesk-device", [] { return Shell("$V ping >/dev/null").exitCode() == 0; });
  const Json services = Json::parse(run("$V list --json"));
  ASSERT_EQ(services.size(), 6u);
  for (const Json& service : services) {
    EXPECT_EQ(service["state"], "alive");
    EXPECT_EQ(service["pid"], device.pid());
    EXPECT_EQ(service["interface"].get<std::string>().erase(7, 1), service["service"]);
  }
  for (const Json& answer : Json::parse(run("$V ping --json"))) EXPECT_GT(answer["milliseconds"], 0);
  expectRows({
      {"$V ping call misc", 0, "com.qv.MiscService         alive      "},
      {"$V call call makeCall 0 300", 0, "ok\n  result  int32     1\n"},
      {"$V call relay getRelayDevConfig 77", 4, "EX_ILLEGAL_ARGUMENT"},
      {"$V call config getDsskeyDisplay 0 0 0", 0, "    name=\"Alice Meyer\" value=\"200\" icon="},
      {"$V call config getDsskeyDisplay 0 0 0", 0, "    0000  41 6c 69 63 65 20 4d 65  79 65 72 "},
      {"$V call config setGreetingWord 'Grüß \"Gott\"'", 0, "ok\n  result  int32     0\n"},
      {"$V call config getGreetingWord", 0, "ok\n  text  string    \"Grüß \\\"Gott\\\"\"\n"},
      {"$V call misc getUdiskRecordsFiles", 0,
       "  files  record[]  3 records\n    [0] 64 bytes\n      0000  "},
      {"$V call call registerCallEventListener -", 4, "EX_NULL_POINTER"},
  });
  const Json memo = Json::parse(run("$V call --json database getMemoByIndex 0"));
  EXPECT_EQ(memo["status"]["exception"], "EX_NONE");
  EXPECT_EQ(memo["out"][0]["name"], "memo");
  EXPECT_EQ(memo["out"][0]["value"]["size"], 268);
  EXPECT_EQ(memo["out"][0]["value"]["hex"].get<std::string>().size(), 2 * 268u);
  EXPECT_EQ(memo["out"][1]["value"], 1);
  device.kill();
}

/** A veskctl that runs until it receives a signal. */
class Watcher : public Shell {
 public:
  explicit Watcher(const std::string& arguments) : Shell("echo $$; exec \"$V\" " + arguments) {
    pid_ = std::stoi(line());
  }

  /** The next lines are changes to that state; their order is open. */
  void expectStates(const char* state, size_t count) {
    for (size_t i = 0; i < count; ++i) EXPECT_EQ(Json::parse(line())["state"], state);
  }
  /** The arguments of the next event of that name. */
  Json argumentsOf(const char* topic, const char* event) {
    for (;;) {
      const Json next = Json::parse(line());
      if (next.contains("state")) ADD_FAILURE() << next << " instead of " << event;
      if (next.contains("state") || (next["topic"] == topic && next["event"] == event))
        return next["arguments"];
    }
  }
  void endBy(int signal) {
    ::kill(pid_, signal);
    EXPECT_EQ(exitCode(), 0);
  }

 private:
  pid_t pid_;
};

TEST(Watch, EventsAndRestartsOfAllServices) {
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

TEST(Watch, RefusedListener) {
  ScriptedService service("com.qv.CallService");
  service.answer(exception(-7, u"not here"));
  Watcher watcher("watch --json call");
  EXPECT_EQ(Json::parse(watcher.line())["reason"],
            "registerCallEventListener: EX_UNSUPPORTED_OPERATION (-7): \"not here\"");
  watcher.endBy(SIGINT);
}

TEST(Watch, ListenerOfACall) {
  ChildProcess device("device");
  vesk::test::waitUntil("vesk-device", [] { return Shell("$V ping >/dev/null").exitCode() == 0; });
  Watcher watcher("call call registerCallEventListener @watch");
  EXPECT_EQ(watcher.line(), "ok\n");
  run("$V call call edialWithLine 2 200");
  constexpr size_t kTime = 14;  // "12:34:56.789  "
  EXPECT_EQ(watcher.line().substr(kTime, 81),
            R"(call  dialCallStartEvent  callInfo={line=2 chan=1 name="Alice Meyer" number="200")");
  EXPECT_EQ(watcher.line().substr(kTime), "call  currentCallChangedEvent  chan=1\n");
  watcher.endBy(SIGINT);
  device.kill();
}

}  // namespace
