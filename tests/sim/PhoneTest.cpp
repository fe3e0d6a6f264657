#include "phone/Phone.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <regex>
#include <sstream>

namespace {

using namespace std::chrono_literals;
using sim::Phone;
using sim::Time;

/** A phone, and its events as text, each with its time in seconds. */
class Desk {
 public:
  Phone& operator*() { return phone_; }
  Phone* operator->() { return &phone_; }

  void wait(Time time) { phone_.advanceTo(phone_.now() + time); }

  /** Makes a call to a number that answers. */
  int32_t talkTo(const std::string& number) {
    const int32_t chan = phone_.makeCall(1, number);
    while (phone_.calls().back().state != sim::CallState::kTalking) wait(100ms);
    return chan;
  }

  /** The events since the last call, one in each line. */
  std::string takeEvents() { return std::exchange(events_, "\n"); }

 private:
  std::string events_ = "\n";
  Phone phone_{[this](Time time, const sim::Event& event) {
    char seconds[32];
    std::snprintf(seconds, sizeof(seconds), "%.1f ", static_cast<double>(time.count()) / 1000);
    events_ += seconds + toString(event) + "\n";
  }};
};

struct Scenario {
  const char* name;
  /** Runs first; its events are ignored. */
  void (*before)(Desk& desk);
  void (*play)(Desk& desk);
  /** A regular expression that selects the relevant events. */
  const char* about;
  const char* expected;
};

/** For the output of the test framework. */
void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.name; }

void nothing(Desk&) {}

constexpr const char* kAll = "";
constexpr const char* kRedialling = "makeCallRet|autoRedial|callCompletion|callState.*talking";

class PhoneScenario : public testing::TestWithParam<Scenario> {};

TEST_P(PhoneScenario, Events) {
  Desk desk;
  GetParam().before(desk);
  desk.takeEvents();
  GetParam().play(desk);
  const std::regex about(GetParam().about);
  std::istringstream events(desk.takeEvents());
  std::string seen;
  for (std::string line; std::getline(events, line);) {
    if (line.empty() || std::regex_search(line, about)) seen += line + "\n";
  }
  EXPECT_EQ(seen, GetParam().expected);
}

const Scenario kCalls[] = {
    {"CallThatIsAnsweredAndClosed", nothing,
     [](Desk& desk) {
       desk->makeCall(2, "200");
       desk.wait(10s);
       desk->closeCall(1);
     },
     kAll, R"(
0.0 dialCallStartEvent line 2, chan 1, 200 (Alice Meyer), dialling
0.0 currentCallChangedEvent 1
0.0 dialingInfoChangedEvent line 2, chan 1, 200 (Alice Meyer), dialling
0.0 newOngoingCallEvent line 2, chan 1, 200 (Alice Meyer), dialling
0.5 callStateChangedEvent line 2, chan 1, 200 (Alice Meyer), ringing
2.0 callStateChangedEvent line 2, chan 1, 200 (Alice Meyer), talking
2.0 callInfoChangedEvent line 2, chan 1, 200 (Alice Meyer), talking
10.0 callStateChangedEvent line 2, chan 1, 200 (Alice Meyer), ended
10.0 deleteOngoingCallEvent 1
10.0 dialCallStopEvent 1
10.0 currentCallChangedEvent 0
)"},
    {"CallsEnd", nothing,
     [](Desk& desk) {
       desk->makeCall(0, "999");
       desk.wait(1s);
       desk->makeCall(1, "210");
       desk.wait(40s);
       desk.talkTo("230");
       desk.wait(10s);
       desk.talkTo("250");  // Calls back once.
       desk.wait(90s);
     },
     "makeCallRet|ended|newOngoing.*incoming|Stop", R"(
0.5 makeCallRetEvent 'Number not in service'
0.5 callStateChangedEvent line 1, chan 1, 999, ended
0.5 dialCallStopEvent 1
31.5 makeCallRetEvent 'No answer'
31.5 callStateChangedEvent line 1, chan 1, 210 (Empty Office), ended
31.5 dialCallStopEvent 1
46.0 callStateChangedEvent line 1, chan 1, 230 (Time Signal), ended
46.0 dialCallStopEvent 1
55.0 callStateChangedEvent line 1, chan 1, 250 (Call Me Back), ended
55.0 dialCallStopEvent 1
57.0 newOngoingCallEvent line 1, chan 1, 250 (Call Me Back), incoming
87.0 callStateChangedEvent line 1, chan 1, 250 (Call Me Back), ended
)"},
    {"IncomingCallIsAnsweredAtTheHeadset",
     [](Desk& desk) {
       desk.talkTo("200");
       desk->incomingCall(2, "201");
     },
     [](Desk& desk) { desk->headsetAnswerCall(); }, kAll, R"(
2.0 keycodeEvent 226 pressed
2.0 keycodeEvent 226 released
2.0 callStateChangedEvent line 1, chan 1, 200 (Alice Meyer), held
2.0 callStateChangedEvent line 2, chan 2, 201 (Ben Okafor), talking
2.0 currentCallChangedEvent 2
2.0 callInfoChangedEvent line 2, chan 2, 201 (Ben Okafor), talking
)"},
    {"SecondCallHoldsTheFirst", [](Desk& desk) { desk.talkTo("200"); },
     [](Desk& desk) {
       desk->makeCall(1, "202");
       desk.wait(5s);
       desk->closeCall(0);
       desk->setCallHoldStatus(1, false);
     },
     "held|talking|current|ended", R"(
2.0 callStateChangedEvent line 1, chan 1, 200 (Alice Meyer), held
2.0 currentCallChangedEvent 2
3.0 callStateChangedEvent line 1, chan 2, 202 (Zoë Lindqvist), talking
3.0 callInfoChangedEvent line 1, chan 2, 202 (Zoë Lindqvist), talking
7.0 callStateChangedEvent line 1, chan 2, 202 (Zoë Lindqvist), ended
7.0 currentCallChangedEvent 1
7.0 callStateChangedEvent line 1, chan 1, 200 (Alice Meyer), talking
)"},
    {"HoldMuteAndCurrentCall",
     [](Desk& desk) {
       desk.talkTo("200");
       desk.talkTo("202");
     },
     [](Desk& desk) {
       desk->setCallHoldStatus(2, true);
       desk->setCurrentCall(1);
       desk->switchCallMutedState();
       desk->switchCallMutedState();
     },
     kAll, R"(
3.0 callStateChangedEvent line 1, chan 2, 202 (Zoë Lindqvist), held
3.0 currentCallChangedEvent 1
3.0 callInfoChangedEvent line 1, chan 1, 200 (Alice Meyer), held, muted
3.0 callInfoChangedEvent line 1, chan 1, 200 (Alice Meyer), held
)"},
    {"NumberIsDialledInSteps", nothing,
     [](Desk& desk) {
       desk->createNewCall(1);
       desk->dialNumberUpdateRequest("2");
       desk->dialNumberUpdateRequest("202");
       desk->edialChangeLine(2);
       desk->edialMakeCall();
     },
     "dialling", R"(
0.0 dialCallStartEvent line 1, chan 1, no number, dialling
0.0 dialingInfoChangedEvent line 1, chan 1, 2, dialling
0.0 dialingInfoChangedEvent line 1, chan 1, 202 (Zoë Lindqvist), dialling
0.0 dialingInfoChangedEvent line 2, chan 1, 202 (Zoë Lindqvist), dialling
0.0 newOngoingCallEvent line 2, chan 1, 202 (Zoë Lindqvist), dialling
)"},
    {"AnotherCallClosesTheDialler", [](Desk& desk) { desk->edialWithLine(2, "20"); },
     [](Desk& desk) { desk->redialCall(), desk->makeCall(1, "200"), desk->dialSelectionRequest(7); },
     "Start|Stop|Selection", R"(
0.0 dialCallStopEvent 1
0.0 dialCallStartEvent line 1, chan 1, 200 (Alice Meyer), dialling
0.0 dialSelectionEvent 7
)"},
    {"VideoStreamsAreCounted", nothing,
     [](Desk& desk) {
       desk->makeAvCall(1, "202", true);
       desk.wait(1s);
       desk->setVideoDisplayArea(1);
       desk->incomingCall(1, "240");
       desk->headsetAnswerCall();
       desk->closeCall(1);
     },
     "Video|current|ended|callState", R"(
0.0 currentCallChangedEvent 1
0.5 callStateChangedEvent line 1, chan 1, 202 (Zoë Lindqvist), ringing, video
1.0 callStateChangedEvent line 1, chan 1, 202 (Zoë Lindqvist), talking, video
1.0 updateCallVideoStreamEvent 1
1.0 updateCallVideoStreamEvent 1
1.0 callStateChangedEvent line 1, chan 1, 202 (Zoë Lindqvist), held, video
1.0 callStateChangedEvent line 1, chan 2, 240 (Front Door), talking, video
1.0 currentCallChangedEvent 2
1.0 updateCallVideoStreamEvent 2
1.0 callStateChangedEvent line 1, chan 1, 202 (Zoë Lindqvist), ended, video
1.0 updateCallVideoStreamEvent 1
)"},
};

const Scenario kConferences[] = {
    {"MemberJoinsAndLeaves",
     [](Desk& desk) {
       desk.talkTo("200");
       desk.talkTo("202");
     },
     [](Desk& desk) {
       desk->conferenceAddMembers({1});
       desk.talkTo("230");
       desk->conferenceAddMembers({3});
       desk->conferenceRemoveMember(1);
       desk.wait(10s);
     },
     "onference|held|ended|talking|current", R"(
3.0 conferenceStartEvent 1, members 1 2
3.0 callStateChangedEvent line 1, chan 1, 200 (Alice Meyer), in conference
3.0 callStateChangedEvent line 1, chan 2, 202 (Zoë Lindqvist), in conference
3.0 callStateChangedEvent line 1, chan 1, 200 (Alice Meyer), held in conference
3.0 callStateChangedEvent line 1, chan 2, 202 (Zoë Lindqvist), held in conference
3.0 currentCallChangedEvent 3
4.0 callStateChangedEvent line 1, chan 3, 230 (Time Signal), talking
4.0 callInfoChangedEvent line 1, chan 3, 230 (Time Signal), talking
4.0 conferenceMembersChangedEvent 1, members 1 2 3
4.0 callStateChangedEvent line 1, chan 1, 200 (Alice Meyer), in conference
4.0 callStateChangedEvent line 1, chan 2, 202 (Zoë Lindqvist), in conference
4.0 callStateChangedEvent line 1, chan 3, 230 (Time Signal), in conference
4.0 callStateChangedEvent line 1, chan 1, 200 (Alice Meyer), held
4.0 conferenceMembersChangedEvent 1, members 2 3
8.0 callStateChangedEvent line 1, chan 3, 230 (Time Signal), ended
8.0 conferenceStopEvent 1
8.0 callStateChangedEvent line 1, chan 2, 202 (Zoë Lindqvist), talking
8.0 currentCallChangedEvent 2
)"},
    {"MembersAreHeldAndMuted",
     [](Desk& desk) {
       desk.talkTo("200");
       desk.talkTo("202");
       desk->conferenceAddMembers({1, 2});
     },
     [](Desk& desk) {
       desk->conferenceMuteMember(1, true);
       desk->conferenceMuteAllMember(1, true);
       desk->setCallHoldStatus(2, true);
       desk->conferenceResumeMember(2);
       desk->conferenceHoldMember(1);
       desk->closeCall(2);
     },
     "State|Info|Stop|current|Manager", R"(
3.0 callInfoChangedEvent line 1, chan 1, 200 (Alice Meyer), in conference, muted
3.0 conferenceManagerEvent
3.0 callInfoChangedEvent line 1, chan 2, 202 (Zoë Lindqvist), in conference, muted
3.0 conferenceManagerEvent
3.0 callStateChangedEvent line 1, chan 2, 202 (Zoë Lindqvist), held in conference, muted
3.0 conferenceManagerEvent
3.0 callStateChangedEvent line 1, chan 2, 202 (Zoë Lindqvist), in conference, muted
3.0 conferenceManagerEvent
3.0 callStateChangedEvent line 1, chan 1, 200 (Alice Meyer), held in conference, muted
3.0 conferenceManagerEvent
3.0 callStateChangedEvent line 1, chan 2, 202 (Zoë Lindqvist), ended, muted
3.0 dialCallStopEvent 2
3.0 conferenceStopEvent 1
3.0 callStateChangedEvent line 1, chan 1, 200 (Alice Meyer), held, muted
3.0 currentCallChangedEvent 1
)"},
    {"ConferenceAndCallTakeTurns",
     [](Desk& desk) {
       desk.talkTo("200");
       desk.talkTo("202");
       desk->conferenceAddMembers({1, 2});
       desk.talkTo("200");
     },
     [](Desk& desk) {
       desk->conferenceResumeMember(1);
       desk->setCallHoldStatus(3, false);
     },
     kAll, R"(
5.0 callStateChangedEvent line 1, chan 3, 200 (Alice Meyer), held
5.0 callStateChangedEvent line 1, chan 1, 200 (Alice Meyer), in conference
5.0 conferenceManagerEvent
5.0 callStateChangedEvent line 1, chan 1, 200 (Alice Meyer), held in conference
5.0 callStateChangedEvent line 1, chan 3, 200 (Alice Meyer), talking
)"},
};

void dialEngaged(Desk& desk, const char* number) {
  desk->makeCall(1, number);
  desk.wait(500ms);
}

const Scenario kRedials[] = {
    {"EngagedNumberOffersCompletion", nothing, [](Desk& desk) { dialEngaged(desk, "221"); }, kRedialling, R"(
0.5 makeCallRetEvent 'Engaged'
0.5 callCompletionInfoChangedEvent line 1, 221, offered
)"},
    {"CompletionAsksWhenTheNumberIsFree", [](Desk& desk) { dialEngaged(desk, "220"); },
     [](Desk& desk) {
       desk->callCompletion();
       desk.wait(20s);
       desk->callCompleteDialConfirm(1, "220");
       desk.wait(5s);
     },
     kRedialling, R"(
8.5 callCompletionInfoChangedEvent line 1, 220, free
22.5 callStateChangedEvent line 1, chan 1, 220 (Carla Rossi), talking
)"},
    {"CompletionIsCancelled", [](Desk& desk) { dialEngaged(desk, "220"); },
     [](Desk& desk) {
       desk->callCompletion();
       desk->callCompleteCancel(1, "220");
       desk.wait(20s);
     },
     kRedialling, "\n"},
    {"AnsweredNumberIsEngagedAnew",
     [](Desk& desk) {
       dialEngaged(desk, "220");
       desk.wait(10s);
       desk.talkTo("220");
       desk->closeCall(0);
     },
     [](Desk& desk) { dialEngaged(desk, "220"); }, kRedialling, R"(
13.0 makeCallRetEvent 'Engaged'
13.0 callCompletionInfoChangedEvent line 1, 220, offered
)"},
    {"AutoRedialEndsWithAnAnswer", [](Desk& desk) { dialEngaged(desk, "220"); },
     [](Desk& desk) {
       desk->callAutoRedial();
       desk.wait(60s);
     },
     kRedialling, R"(
0.5 autoRedialInfoChangedEvent 220, 0 of 5 times, every 5 s
5.5 autoRedialInfoChangedEvent 220, 1 of 5 times, every 5 s
6.0 makeCallRetEvent 'Engaged'
11.0 autoRedialInfoChangedEvent 220, 2 of 5 times, every 5 s
13.0 callStateChangedEvent line 1, chan 1, 220 (Carla Rossi), talking
13.0 autoRedialInfoChangedEvent over
)"},
    {"AutoRedialGivesUp", [](Desk& desk) { dialEngaged(desk, "221"); },
     [](Desk& desk) {
       desk->callAutoRedial();
       desk->autoRedialsoftbtnMakeCall();
       desk.wait(60s);
     },
     kRedialling, R"(
0.5 autoRedialInfoChangedEvent 221, 0 of 5 times, every 5 s
0.5 autoRedialInfoChangedEvent 221, 1 of 5 times, every 5 s
1.0 makeCallRetEvent 'Engaged'
6.0 autoRedialInfoChangedEvent 221, 2 of 5 times, every 5 s
6.5 makeCallRetEvent 'Engaged'
11.5 autoRedialInfoChangedEvent 221, 3 of 5 times, every 5 s
12.0 makeCallRetEvent 'Engaged'
17.0 autoRedialInfoChangedEvent 221, 4 of 5 times, every 5 s
17.5 makeCallRetEvent 'Engaged'
22.5 autoRedialInfoChangedEvent 221, 5 of 5 times, every 5 s
23.0 makeCallRetEvent 'Engaged'
23.0 autoRedialInfoChangedEvent over
23.0 callCompletionInfoChangedEvent line 1, 221, offered
)"},
    {"AutoRedialWaitsForOtherCallsAndIsCancelled", [](Desk& desk) { dialEngaged(desk, "221"); },
     [](Desk& desk) {
       desk->callAutoRedial();
       desk->incomingCall(1, "200");
       desk.wait(6s);
       desk->closeCall(1);
       desk.wait(4s);
       desk->autoRedialsoftbtnCancel();
       desk.wait(60s);
     },
     kRedialling, R"(
0.5 autoRedialInfoChangedEvent 221, 0 of 5 times, every 5 s
10.5 autoRedialInfoChangedEvent 221, 1 of 5 times, every 5 s
10.5 autoRedialInfoChangedEvent over
)"},
};

std::string nameOf(const testing::TestParamInfo<Scenario>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Calls, PhoneScenario, testing::ValuesIn(kCalls), nameOf);
INSTANTIATE_TEST_SUITE_P(Conferences, PhoneScenario, testing::ValuesIn(kConferences), nameOf);
INSTANTIATE_TEST_SUITE_P(Redials, PhoneScenario, testing::ValuesIn(kRedials), nameOf);

TEST(Phone, RefusalsChangeNothing) {
  const std::string tooLong(sim::kMaxNumberLength + 1, '1');
  struct {
    const char* what;
    std::function<bool(Phone&)> isRefused;
  } const rows[] = {
      {"a line that is not registered", [](Phone& p) { return p.makeCall(3, "200") == sim::kRefused; }},
      {"a negative line", [](Phone& p) { return p.makeCall(-1, "200") == sim::kRefused; }},
      {"no number", [](Phone& p) { return p.makeCall(1, "") == sim::kRefused; }},
      {"a number that fits no record", [&](Phone& p) { return p.makeCall(1, tooLong) == sim::kRefused; }},
      {"a dialler that is not open", [](Phone& p) { return p.edialMakeCall() == sim::kRefused; }},
      {"a line for no dialler", [](Phone& p) { return p.edialChangeLine(1) == sim::kRefused; }},
      {"a number for no dialler", [](Phone& p) { return p.dialNumberUpdateRequest("1").has_value(); }},
      {"closing nothing", [](Phone& p) { return p.closeCall(2).has_value(); }},
      {"holding what is held", [](Phone& p) { return p.setCallHoldStatus(1, true).has_value(); }},
      {"a current call that is not there", [](Phone& p) { return p.setCurrentCall(2).has_value(); }},
      {"an answer to nobody", [](Phone& p) { return p.headsetAnswerCall().has_value(); }},
      {"a conference with nobody else", [](Phone& p) { return p.conferenceAddMembers({1}).has_value(); }},
      {"a conference with an unused channel",
       [](Phone& p) {
         return p.conferenceAddMembers({1, 9}).has_value();
       }},
      {"a conference of none", [](Phone& p) { return p.conferenceAddMembers({}).has_value(); }},
      {"a member of no conference", [](Phone& p) { return p.conferenceRemoveMember(1).has_value(); }},
      {"muting no conference", [](Phone& p) { return p.conferenceMuteAllMember(1, true).has_value(); }},
      {"automatic redial of nothing", [](Phone& p) { return p.callAutoRedial().has_value(); }},
      {"cancelling no automatic redial", [](Phone& p) { return p.autoRedialsoftbtnCancel().has_value(); }},
      {"completion of nothing", [](Phone& p) { return p.callCompletion().has_value(); }},
      {"confirming nothing", [](Phone& p) { return p.callCompleteDialConfirm(1, "220").has_value(); }},
      {"a picture without video", [](Phone& p) { return p.videoSnapshot(1).has_value(); }},
      {"a call to a line that is not there", [](Phone& p) { return p.incomingCall(4, "200").has_value(); }},
  };
  for (const auto& row : rows) {
    Desk desk;
    desk.talkTo("200");
    desk->setCallHoldStatus(1, true);
    const std::vector<sim::CallInfo> before = desk->calls();
    EXPECT_TRUE(row.isRefused(*desk)) << row.what;
    EXPECT_EQ(desk->calls(), before) << row.what;
  }
}

TEST(Phone, EightChannels) {
  Desk desk;
  for (int32_t chan = 1; chan <= Phone::kChannels; ++chan) EXPECT_EQ(desk->makeCall(1, "200"), chan);
  EXPECT_EQ(desk->makeCall(1, "200"), sim::kRefused);
  EXPECT_TRUE(desk->incomingCall(1, "200"));
  desk->closeCall(5);
  EXPECT_EQ(desk->makeCall(1, "200"), 5);
}

TEST(Phone, Redial) {
  Desk desk;
  EXPECT_TRUE(desk->redialCall());
  desk->makeCall(2, "999");
  desk.wait(1s);
  EXPECT_FALSE(desk->redialCall());
  ASSERT_EQ(desk->calls().size(), 1u);
  EXPECT_EQ(toString(desk->calls()[0]), "line 2, chan 1, 999, dialling");
}

TEST(Phone, Tones) {
  Desk desk;
  const auto tone = [&] { return static_cast<sim::Tone>(desk->tone()); };
  desk->createNewCall(1);
  EXPECT_EQ(tone(), sim::Tone::kDial);
  desk->dialNumberUpdateRequest("200");
  EXPECT_EQ(tone(), sim::Tone::kNone);
  desk->edialMakeCall();
  desk.wait(500ms);
  EXPECT_EQ(tone(), sim::Tone::kRingback);
  desk.wait(1500ms);
  EXPECT_EQ(tone(), sim::Tone::kNone);
  desk->playToneRequest(17);
  EXPECT_EQ(desk->tone(), 17);
  desk->closeCall(0);
  EXPECT_EQ(tone(), sim::Tone::kNone);
  dialEngaged(desk, "221");
  EXPECT_EQ(tone(), sim::Tone::kBusy);
  desk->stopToneRequest();
  EXPECT_EQ(tone(), sim::Tone::kNone);
  desk->incomingCall(1, "200");
  EXPECT_EQ(tone(), sim::Tone::kRing);
}

TEST(Phone, IvrIsReported) {
  Desk desk;
  EXPECT_FALSE(desk->getCallHaveIvr());
  desk->playMwi(1, "");
  EXPECT_FALSE(desk->getCallHaveIvr()) << "before the answer";
  desk.wait(1s);
  EXPECT_TRUE(desk->getCallHaveIvr());
  desk.talkTo("200");
  EXPECT_FALSE(desk->getCallHaveIvr());
}

TEST(Phone, DoorLedStaysOnForThreeSeconds) {
  Desk desk;
  desk->ctrlLedDooropen();
  desk.wait(2s);
  desk->ctrlLedDooropen();
  desk.wait(2s);
  EXPECT_TRUE(desk->doorLedOn());
  desk.wait(1s);
  EXPECT_FALSE(desk->doorLedOn());
}

TEST(TimerQueue, DueTimersRunInOrder) {
  sim::TimerQueue timers;
  std::string ran;
  timers.after(2s, [&] { ran += "c"; });
  timers.after(1s, [&] {
    ran += "a";
    timers.after(0s, [&] { ran += "b"; });
  });
  const sim::TimerQueue::Id cancelled = timers.after(2s, [&] { ran += "x"; });
  timers.after(2s, [&] { ran += "d"; });
  timers.after(3s, [&] { ran += "late"; });
  EXPECT_EQ(timers.after(sim::kNever, [] {}), 0u);
  timers.cancel(cancelled);

  timers.advanceTo(2999ms);
  EXPECT_EQ(ran, "abcd");
  EXPECT_EQ(timers.next(), 3s);
}

}  // namespace
