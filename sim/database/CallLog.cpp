#include "database/CallLog.h"

#include <chrono>

#include "common/Records.h"
#include "database/DatabaseTables.h"

namespace sim {

void CallLog::notice(Time time, const Event& event) {
  if (event.type == EventType::newOngoingCallEvent) {
    const auto& info = std::get<CallInfo>(event.payload);
    Call& call = calls_[info.chan] = {};
    call.record.line = info.line;
    call.record.kind = info.incoming ? CallKind::kMissed : CallKind::kMade;
    call.record.time = wallClock();
    copyText(call.record.number, info.number);
    copyText(call.record.name, info.name);
  } else if (event.type == EventType::callStateChangedEvent) {
    const auto& info = std::get<CallInfo>(event.payload);
    const auto found = calls_.find(info.chan);
    if (found == calls_.end() || info.state != CallState::kTalking) return;
    Call& call = found->second;
    if (call.answeredAt == kNever) call.answeredAt = time;
    if (info.incoming) call.record.kind = CallKind::kReceived;
  } else if (event.type == EventType::deleteOngoingCallEvent) {
    const auto ended = calls_.extract(std::get<int32_t>(event.payload));
    if (ended.empty()) return;
    Call& call = ended.mapped();
    if (call.answeredAt != kNever) {
      // Rounded up: 0 stands for a call that was not answered.
      call.record.seconds =
          static_cast<int32_t>(std::chrono::ceil<std::chrono::seconds>(time - call.answeredAt).count());
    }
    add_(call.record);
  }
}

}  // namespace sim
