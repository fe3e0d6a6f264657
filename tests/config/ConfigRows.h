#pragma once

#include <climits>
#include <string>
#include <vector>

#include "Result.h"
#include "Wire.h"

using vesk::test::Result;

/** Where every row puts what it receives, and how much room it says to have. */
inline constexpr size_t kRoom = 1300;
inline std::string buffer(kRoom, '#');
inline int room = kRoom;

/** What every row sends as a record, cut to its size; there are zeros in it. */
extern const std::string kSent;

/** What the rows of one kind have in common. */
struct Outcome {
  enum Text { kNone, kCut, kWhole };

  vesk::test::Wire reply;
  Result ok;
  Result failed;
  Result absent;
  size_t record = 0;
  Text text = kNone;
  bool logs = false;
};

inline const Outcome kVoid{{}, {}, {}, {}};
/** Sent, whatever came of it. */
inline const Outcome kDone{{}, 0, 0, -1};

inline Outcome integer(int absent, int failed) {
  return {vesk::test::Wire().i32(4711), 4711, failed, absent};
}
inline const Outcome kInt = integer(-1, -1);
inline const Outcome kZero = integer(0, 0);
inline Outcome flag(int absent) { return {vesk::test::Wire().i32(1), 1, 0, absent}; }
inline const Outcome kFlag = flag(0);

/** A record of `size` bytes into the buffer. */
inline Outcome record(size_t size) {
  return {vesk::test::Wire().record(std::string(size, 'r')), 0, -1, -1, size};
}
inline Outcome logged(Outcome outcome) {
  outcome.logs = true;
  return outcome;
}

/** A text into the buffer; a failed call is an empty one. */
inline Outcome text(Outcome::Text rule, Result result, Result absent) {
  return {vesk::test::Wire().text(u"text"), result, result, absent, 0, rule};
}
inline const Outcome kCut = text(Outcome::kCut, 0, -1);
inline const Outcome kWhole = text(Outcome::kWhole, 0, -1);

/** One C function, and one of its calls. */
struct Row {
  const char* call;
  Result (*make)();
  uint32_t code;
  vesk::test::Wire arguments;
  Outcome outcome;
};

#define ROW(call, code, arguments, outcome)                                                   \
  Row {                                                                                       \
#call, [] { return vesk::test::resultOf([] { return call; }); }, code, arguments, outcome \
  }

/** The rows that send a record send this much of it. */
inline vesk::test::Wire sent(size_t size) { return vesk::test::Wire().record(kSent.substr(0, size)); }

/** Keys, DND, DSS keys, dial peers, time, screen, network, accounts, provisioning, the device's settings. */
std::vector<Row> settingsRows();

/** Quality of service, passwords, call features, firmware, discovery, doors, NAT share. */
std::vector<Row> featureRows();
