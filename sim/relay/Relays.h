#pragma once

#include <sys/types.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "clock/TimerQueue.h"
#include "relay/RelayRecords.h"
#include "store/RecordTable.h"

namespace sim {

/**
 * The model of the relay service: a device with eight outputs. Their configuration is in the store;
 * one process at a time can change it, between begin() and commit(). Time passes only in
 * advanceTo(). Not thread-safe.
 */
class Relays {
 public:
  /** There is one device. */
  static constexpr int32_t kDevice = 1;
  static constexpr int32_t kMaxMs = 3'600'000;
  static constexpr int32_t kMaxScheduled = 100;

  explicit Relays(std::shared_ptr<Store> store) : store_(std::move(store)) {}
  Relays(const Relays&) = delete;
  Relays& operator=(const Relays&) = delete;

  /** To be called first. False, with the reason in `error`, if the store fails. */
  bool load(std::string* error);

  std::optional<Time> nextTimer() const { return timers_.next(); }
  void advanceTo(Time time) { timers_.advanceTo(time); }

  std::string name() const;
  RelayOutputsRecord outputs() const;

  /* These methods return false, and change nothing, on refusal or if the store fails. */
  bool setName(const RelayNameRecord& name);
  /**
   * Begins the changes of a process. A second begin() of the same process discards its changes, and
   * so does the death of the process.
   */
  bool begin(pid_t process);
  bool setType(pid_t process, const RelayTypeRecord& type);
  bool setTime(pid_t process, const RelayTimeRecord& time);
  bool setEnabled(pid_t process, const RelayEnabledRecord& enabled);
  bool setOutput(pid_t process, const RelayOutputRecord& output);
  bool commit(pid_t process);
  bool isEditable(pid_t process) const;

  bool act(const RelayActRecord& act);
  bool schedule(const ScheduledRelayActRecord& act);
  /** Empty if there is no such output. */
  std::optional<RelayAct> lastAct(int32_t output) const;
  std::optional<bool> isOn(int32_t output) const;

 private:
  struct Output {
    RelayOutput config;
    RelayAct lastAct = RelayAct::kOff;
    /** The next automatic change. */
    TimerQueue::Id timer = 0;
  };
  using Configs = std::array<RelayOutput, kRelayOutputs>;

  struct Bracket {
    pid_t owner;
    Configs changed;
  };

  static bool isOutput(int32_t output) { return output >= 1 && output <= kRelayOutputs; }
  static bool isActable(const RelayActRecord& act);
  /** The output as changed by the process; null if the process has not called begin(), or there is
   * no such output. */
  RelayOutput* toChange(pid_t process, int32_t device, int32_t output);
  Output& at(int32_t output) { return outputs_[static_cast<size_t>(output - 1)]; }
  const Output& at(int32_t output) const { return outputs_[static_cast<size_t>(output - 1)]; }
  void perform(const RelayActRecord& act);
  void switchOn(Output& output, bool goesOff);

  const std::shared_ptr<Store> store_;
  const RecordTable<RelayOutput> outputTable_{"relay_outputs"};
  const RecordTable<RelayNameRecord> nameTable_{"relay_devices"};
  TimerQueue timers_;
  RelayNameRecord name_{};
  std::array<Output, kRelayOutputs> outputs_{};
  std::optional<Bracket> bracket_;
  int32_t scheduled_ = 0;
};

}  // namespace sim
