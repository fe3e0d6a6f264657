#pragma once

#include <functional>
#include <map>

#include "clock/TimerQueue.h"
#include "database/DatabaseRecords.h"
#include "phone/Event.h"

namespace sim {

/** Makes entries of the call log from the events of the phone. Not thread-safe. */
class CallLog {
 public:
  explicit CallLog(std::function<void(const CallLogRecord&)> add) : add_(std::move(add)) {}

  void notice(Time time, const Event& event);

 private:
  struct Call {
    CallLogRecord record;
    Time answeredAt = kNever;
  };

  const std::function<void(const CallLogRecord&)> add_;
  /** By channel. */
  std::map<int32_t, Call> calls_;
};

}  // namespace sim
