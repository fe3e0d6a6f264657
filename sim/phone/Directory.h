#pragma once

#include <array>
#include <span>
#include <string_view>

#include "clock/TimerQueue.h"

namespace sim {

/** A number that can be called, and the behaviour of its remote party. */
struct Contact {
  std::string_view number;
  std::string_view name;
  /** From the first ring to the answer. */
  Time answersAfter = Time(1500);
  /** From the answer to the end of the call by the remote party. */
  Time hangsUpAfter = kNever;
  /** From the end of an answered call to the call back. */
  Time callsBackAfter = kNever;
  /** From the first attempt to call. Attempts after that time succeed. */
  Time engagedFor = Time(0);
  bool ivr = false;
  bool video = false;
};

/** The numbers that can be called, each with a different behaviour. */
inline constexpr std::array kDirectory = {
    Contact{.number = "200", .name = "Alice Meyer"},
    Contact{.number = "201", .name = "Ben Okafor", .answersAfter = Time(2500)},
    Contact{.number = "202", .name = "Zoë Lindqvist", .answersAfter = Time(500)},
    Contact{.number = "210", .name = "Empty Office", .answersAfter = kNever},
    Contact{.number = "220", .name = "Carla Rossi", .engagedFor = Time(8000)},
    Contact{.number = "221", .name = "Hotline", .engagedFor = kNever},
    Contact{.number = "230", .name = "Time Signal", .answersAfter = Time(500), .hangsUpAfter = Time(4000)},
    Contact{.number = "240", .name = "Front Door", .answersAfter = Time(0), .video = true},
    Contact{
        .number = "250", .name = "Call Me Back", .hangsUpAfter = Time(1000), .callsBackAfter = Time(2000)},
    Contact{.number = "300", .name = "Echo Test", .answersAfter = Time(0), .ivr = true},
    Contact{.number = "500", .name = "Voice Mail", .answersAfter = Time(0), .ivr = true},
};

/** The number that playMwi calls by default. */
constexpr std::string_view kVoiceMailNumber = "500";

/** Null for an unknown number. */
const Contact* findContact(std::span<const Contact> directory, std::string_view number);

}  // namespace sim
