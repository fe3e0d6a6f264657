#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace sim {

/* The events of the misc service, with the names of its listeners' methods. */

enum class AteEventType {
#define METHOD(code, name, ...) name = (code),
#include <com/qv/AteEventListener.def>
#undef METHOD
};
enum class MiscEventType {
#define METHOD(code, name, ...) name = (code),
#include <com/qv/MiscEventListener.def>
#undef METHOD
};

/** An event of the test mode. */
struct AteEvent {
  AteEventType type;
  std::variant<std::monostate, std::string> payload;
};

struct MiscEvent {
  MiscEventType type;
  std::variant<std::monostate, int32_t> payload;
};

/** The event's name and payload. */
std::string toString(const AteEvent& event);
std::string toString(const MiscEvent& event);

}  // namespace sim
