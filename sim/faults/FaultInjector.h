#pragma once

#include <binder/Binder.h>
#include <utils/Errors.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

/** A row of an interface's table. */
struct MethodRow {
  uint32_t code;
  const char* name;
  /** As in the table: (type, name), ... */
  const char* parameters;
};

/** What goes wrong with calls of a service, or with an event that it sends. */
struct Fault {
  enum Kind { kFail, kDelay, kShort };
  static constexpr int32_t kAlways = -1;
  static constexpr uint32_t kEvent = 1U << 24;

  Kind kind;
  /** The method, or the event with kEvent added, or 0 for every method. */
  uint32_t code = 0;
  /** How many calls. */
  int32_t times = 1;
  /** kFail: an exception that the service answers, or, if it is 0, what the transaction comes to. */
  int32_t exception = 0;
  android::status_t status = android::OK;
  /** kDelay: until the service is called. */
  std::chrono::milliseconds delay{0};
  /** kShort: how many bytes each record of the answer, or of the event, has more. */
  int32_t bytes = -1;
};

/**
 * Stands between a service and its callers, and does with calls what it is told to. For any thread, but for
 * die() and revive(), which are for one.
 */
class FaultInjector : public android::BBinder {
 public:
  FaultInjector(const char* name, android::sp<android::BBinder> service, std::span<const MethodRow> methods,
                std::span<const MethodRow> events)
      : name_(name), service_(std::move(service)), methods_(methods), events_(events) {}

  const char* name() const { return name_; }

  /** Tells of the service under its name. */
  android::status_t revive();
  /** To its callers it is as if its process had died. Returns how often it has died. */
  uint64_t die();
  uint64_t deaths() const;

  void add(const Fault& fault);
  /** How many bytes the record of this event is to have more. */
  int32_t moreBytesOfEvent(uint32_t code);
  /** Takes away all faults; calls that are being delayed go on. */
  void clearFaults();
  /** One line for each fault; empty if there is none. */
  std::string describe() const;

  const android::String16& getInterfaceDescriptor() const override {
    return service_->getInterfaceDescriptor();
  }

 protected:
  android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                               uint32_t flags) override;

 private:
  /** A method or an event. */
  const MethodRow* find(uint32_t code) const;
  /** Counts the first fault of the kind that is for the method; false if there is none. */
  bool take(Fault::Kind kind, uint32_t code, Fault* taken);
  /** The same for who holds the mutex. */
  bool takeLocked(Fault::Kind kind, uint32_t code, Fault* taken);

  const char* const name_;
  const android::sp<android::BBinder> service_;
  const std::span<const MethodRow> methods_;
  const std::span<const MethodRow> events_;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Fault> faults_;
  /** Counts the times that delays were cut short. */
  uint64_t healed_ = 0;
  uint64_t deaths_ = 0;
  bool dead_ = false;
};

/** Whether the method answers with a record. */
bool answersWithRecord(const MethodRow& method);
/** Whether the event brings one. */
bool bringsRecord(const MethodRow& event);

}  // namespace sim
