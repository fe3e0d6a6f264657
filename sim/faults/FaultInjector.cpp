#include "faults/FaultInjector.h"

#include <binder/HostPlatform.h>
#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <binder/Status.h>

#include <algorithm>

#include "common/Records.h"

namespace sim {

namespace {

using android::Parcel;
using android::status_t;
using android::String8;
using android::binder::Status;
using vesk::interfaces::Type;

bool copyRecord(const Parcel& from, int32_t extraBytes, Parcel* to) {
  const int32_t marker = from.readInt32();
  to->writeInt32(marker);
  if (marker == 0) return true;
  String8 blob;
  if (from.readString8(&blob) != android::OK) return false;
  const std::string content = resized({blob.c_str(), blob.length()}, extraBytes);
  return to->writeString8(String8(content.data(), content.size())) == android::OK;
}

bool copyValue(const Parcel& from, Type type, int32_t extraBytes, Parcel* to) {
  switch (type) {
    case Type::kRecord:
      return copyRecord(from, extraBytes, to);
    case Type::kRecords: {
      const int32_t count = from.readInt32();
      to->writeInt32(count);
      for (int32_t i = 0; i < count; ++i) {
        if (!copyRecord(from, extraBytes, to)) return false;
      }
      return true;
    }
    case Type::kInt32:
    case Type::kBool:
      return to->writeInt32(from.readInt32()) == android::OK;
    default:
      return false;
  }
}

/** Changes the length of each record of a reply. Leaves a reply alone that cannot be read. */
void resizeRecords(const vesk::interfaces::Method& method, int32_t extraBytes, Parcel* reply) {
  reply->setDataPosition(0);
  Status status;
  if (status.readFromParcel(*reply) != android::OK || !status.isOk()) return;
  Parcel changed;
  status.writeToParcel(&changed);
  for (const Type type : method.replyTypes()) {
    if (!copyValue(*reply, type, extraBytes, &changed)) return;
  }
  reply->setData(changed.data(), changed.dataSize());
}

}  // namespace

const vesk::interfaces::Interface* eventsOf(const vesk::interfaces::Interface& service) {
  const auto listeners = vesk::interfaces::listeners();
  const auto found = std::ranges::find_if(listeners, [&](const auto& each) {
    return each.topic() == service.name &&
           std::ranges::any_of(each.methods, &FaultInjector::Method::takesRecord);
  });
  return found == listeners.end() ? nullptr : &*found;
}

status_t FaultInjector::registerService() {
  {
    const std::lock_guard lock(mutex_);
    dead_ = false;
  }
  const android::String16 name(interface_.serviceName().c_str());
  return android::defaultServiceManager()->addService(name, this);
}

uint64_t FaultInjector::die() {
  uint64_t deaths;
  {
    const std::lock_guard lock(mutex_);
    dead_ = true;
    deaths = ++deaths_;
  }
  changed_.notify_all();
  android::host::killObject(this);
  return deaths;
}

uint64_t FaultInjector::deaths() const {
  const std::lock_guard lock(mutex_);
  return deaths_;
}

void FaultInjector::add(const Fault& fault) {
  const std::lock_guard lock(mutex_);
  faults_.push_back(fault);
}

void FaultInjector::clearFaults() {
  {
    const std::lock_guard lock(mutex_);
    faults_.clear();
    ++clears_;
  }
  changed_.notify_all();
}

int32_t FaultInjector::takeExtraBytes(const Method& event) {
  Fault fault{};
  return take(Fault::kShort, event, &fault) ? fault.bytes : 0;
}

std::string FaultInjector::describe() const {
  static constexpr const char* kKinds[] = {"fail", "delay", "short"};
  const std::lock_guard lock(mutex_);
  const std::string name = interface_.serviceName();
  std::string text = dead_ ? name + " is dead\n" : "";
  for (const Fault& fault : faults_) {
    text += std::string(kKinds[fault.kind]) + " " + name;
    if (fault.target != nullptr) text += std::string(" ") + fault.target->name;
    text += fault.times == Fault::kAlways ? " always\n" : " times " + std::to_string(fault.times) + "\n";
  }
  return text;
}

bool FaultInjector::take(Fault::Kind kind, const Method& target, Fault* taken) {
  const std::lock_guard lock(mutex_);
  return takeLocked(kind, target, taken);
}

bool FaultInjector::takeLocked(Fault::Kind kind, const Method& target, Fault* taken) {
  const bool isMethod = interface_.find(target.code) == &target;
  const auto found = std::ranges::find_if(faults_, [&](const Fault& fault) {
    return fault.kind == kind && (fault.target == &target || (fault.target == nullptr && isMethod));
  });
  if (found == faults_.end()) return false;
  *taken = *found;
  if (found->times != Fault::kAlways && --found->times == 0) faults_.erase(found);
  return true;
}

status_t FaultInjector::onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) {
  const Method* const method = interface_.find(code);
  if (method == nullptr) return service_->transact(code, data, reply, flags);
  Fault fault{};
  {
    std::unique_lock lock(mutex_);
    const auto isCutShort = [&, clears = clears_, deaths = deaths_] {
      return clears_ != clears || deaths_ != deaths;
    };
    const uint64_t deaths = deaths_;
    if (takeLocked(Fault::kDelay, *method, &fault)) changed_.wait_for(lock, fault.delay, isCutShort);
    if (dead_ || deaths_ != deaths) return android::DEAD_OBJECT;
  }
  if (take(Fault::kFail, *method, &fault)) {
    if (fault.exception == 0) return fault.status;
    return Status::fromExceptionCode(fault.exception, "Injected fault").writeToParcel(reply);
  }
  const status_t status = service_->transact(code, data, reply, flags);
  if (status == android::OK && method->returnsRecord() && take(Fault::kShort, *method, &fault)) {
    resizeRecords(*method, fault.bytes, reply);
    reply->setDataPosition(0);
  }
  return status;
}

}  // namespace sim
