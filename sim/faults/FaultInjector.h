#pragma once

#include <binder/Binder.h>
#include <interfaces/Interfaces.h>
#include <utils/Errors.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace sim {

/** A fault in the next calls of a service, or in the next events of one kind. */
struct Fault {
  enum Kind { kFail, kDelay, kShort };
  static constexpr int32_t kAlways = -1;

  Kind kind;
  /** A method of the service or, for kShort, an event of its listener; null for every method. */
  const vesk::interfaces::Method* target = nullptr;
  /** The number of calls or events. */
  int32_t times = 1;
  /** kFail: the exception in the reply or, if this is 0, the status of the transaction. */
  int32_t exception = 0;
  android::status_t status = android::OK;
  /** kDelay: the time before the service is called. */
  std::chrono::milliseconds delay{0};
  /** kShort: added to the length of each record. */
  int32_t bytes = -1;
};

/**
 * The interface of the listeners of the service; null if the service has no events with records.
 */
const vesk::interfaces::Interface* eventsOf(const vesk::interfaces::Interface& service);

/** Wraps a service and injects faults into its transactions. Thread-safe,
 * except for die() and registerService(), which one thread calls. */
class FaultInjector : public android::BBinder {
 public:
  using Interface = vesk::interfaces::Interface;
  using Method = vesk::interfaces::Method;

  FaultInjector(const Interface& interface, android::sp<android::BBinder> service)
      : interface_(interface), service_(std::move(service)) {}

  const Interface& interface() const { return interface_; }

  /** Registers the service, for the first time or after its death. */
  android::status_t registerService();
  /** Simulates the death of the service's process for its callers. Returns the number of deaths so
   * far. */
  uint64_t die();
  uint64_t deaths() const;

  void add(const Fault& fault);
  /** Removes all faults. Delayed calls go on at once. */
  void clearFaults();
  /**
   * Counts an event against the fault of its kind. Returns the number of bytes to add to the
   * event's record; 0 without a fault.
   */
  int32_t takeExtraBytes(const Method& event);
  /** One line for each fault; empty without faults. */
  std::string describe() const;

  const android::String16& getInterfaceDescriptor() const override {
    return service_->getInterfaceDescriptor();
  }

 protected:
  android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                               uint32_t flags) override;

 private:
  /**
   * Consumes one use of the first fault of the kind for the method or event; false without one.
   */
  bool take(Fault::Kind kind, const Method& target, Fault* taken);
  bool takeLocked(Fault::Kind kind, const Method& target, Fault* taken);

  const Interface& interface_;
  const android::sp<android::BBinder> service_;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Fault> faults_;
  /** The number of clearFaults() calls. */
  uint64_t clears_ = 0;
  uint64_t deaths_ = 0;
  bool dead_ = false;
};

}  // namespace sim
