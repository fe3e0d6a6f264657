#include "faults/FaultInjector.h"

#include <binder/HostPlatform.h>
#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <binder/Status.h>

#include <algorithm>
#include <utility>

namespace sim {

namespace {

using android::Parcel;
using android::status_t;
using android::String8;
using android::binder::Status;

/** The types of a method's out-arguments in the order of the answer: the last one first. */
std::vector<std::string_view> outTypes(const MethodRow& method) {
  std::vector<std::string_view> types;
  std::string_view rest = method.parameters;
  for (size_t open; (open = rest.find('(')) != std::string_view::npos;) {
    const std::string_view type = rest.substr(open + 1, rest.find(',', open) - open - 1);
    if (type.ends_with('*')) types.push_back(type.substr(0, type.size() - 1));
    rest.remove_prefix(rest.find(')', open) + 1);
  }
  if (!types.empty()) std::rotate(types.begin(), types.end() - 1, types.end());
  return types;
}

bool copyRecord(const Parcel& from, int32_t bytes, Parcel* to) {
  int32_t marker;
  if (from.readInt32(&marker) != android::OK) return false;
  to->writeInt32(marker);
  if (marker == 0) return true;
  String8 blob;
  if (from.readString8(&blob) != android::OK) return false;
  std::string content(blob.c_str(), blob.length());
  const int64_t size = static_cast<int64_t>(content.size()) + bytes;
  content.resize(static_cast<size_t>(std::max<int64_t>(size, 0)));
  return to->writeString8(String8(content.data(), content.size())) == android::OK;
}

/** Resizes the records of an answer; false, and nothing has happened, if it can't be read. */
bool resizeRecords(const MethodRow& method, int32_t bytes, Parcel* reply) {
  reply->setDataPosition(0);
  Status status;
  if (status.readFromParcel(*reply) != android::OK || !status.isOk()) return false;
  Parcel changed;
  status.writeToParcel(&changed);
  for (const std::string_view type : outTypes(method)) {
    if (type == "CommonParcelable") {
      if (!copyRecord(*reply, bytes, &changed)) return false;
    } else if (type == "std::vector<CommonParcelable>") {
      int32_t count;
      if (reply->readInt32(&count) != android::OK) return false;
      changed.writeInt32(count);
      for (int32_t i = 0; i < count; ++i) {
        if (!copyRecord(*reply, bytes, &changed)) return false;
      }
    } else if (type == "int32_t" || type == "bool") {
      changed.writeInt32(reply->readInt32());
    } else if (type == "std::string") {
      changed.writeString16(reply->readString16());
    } else {
      return false;
    }
  }
  return reply->setData(changed.data(), changed.dataSize()) == android::OK;
}

}  // namespace

bool bringsRecord(const MethodRow& event) {
  return std::string_view(event.parameters).find("CommonParcelable") != std::string_view::npos;
}

bool answersWithRecord(const MethodRow& method) {
  return std::ranges::any_of(outTypes(method), [](std::string_view type) {
    return type.find("CommonParcelable") != std::string_view::npos;
  });
}

status_t FaultInjector::revive() {
  {
    const std::lock_guard lock(mutex_);
    dead_ = false;
  }
  return android::defaultServiceManager()->addService(android::String16(name_), this);
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

int32_t FaultInjector::moreBytesOfEvent(uint32_t code) {
  Fault fault{};
  return take(Fault::kShort, code + Fault::kEvent, &fault) ? fault.bytes : 0;
}

void FaultInjector::clearFaults() {
  {
    const std::lock_guard lock(mutex_);
    faults_.clear();
    ++healed_;
  }
  changed_.notify_all();
}

std::string FaultInjector::describe() const {
  static constexpr const char* kKinds[] = {"fail", "delay", "short"};
  const std::lock_guard lock(mutex_);
  std::string text = dead_ ? std::string(name_) + " is dead\n" : "";
  for (const Fault& fault : faults_) {
    const MethodRow* method = find(fault.code);
    text += std::string(kKinds[fault.kind]) + " " + name_ + (method != nullptr ? " " : "") +
            (method != nullptr ? method->name : "") +
            (fault.times == Fault::kAlways ? " always" : " times " + std::to_string(fault.times)) + "\n";
  }
  return text;
}

const MethodRow* FaultInjector::find(uint32_t code) const {
  const std::span<const MethodRow> rows = code < Fault::kEvent ? methods_ : events_;
  const auto found = std::ranges::find(rows, code % Fault::kEvent, &MethodRow::code);
  return found == rows.end() ? nullptr : &*found;
}

bool FaultInjector::take(Fault::Kind kind, uint32_t code, Fault* taken) {
  const std::lock_guard lock(mutex_);
  return takeLocked(kind, code, taken);
}

bool FaultInjector::takeLocked(Fault::Kind kind, uint32_t code, Fault* taken) {
  const auto found = std::ranges::find_if(faults_, [&](const Fault& fault) {
    return fault.kind == kind && (fault.code == code || (fault.code == 0 && code < Fault::kEvent));
  });
  if (found == faults_.end()) return false;
  *taken = *found;
  if (found->times != Fault::kAlways && --found->times == 0) faults_.erase(found);
  return true;
}

status_t FaultInjector::onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) {
  const MethodRow* const method = find(code);
  if (method == nullptr) return service_->transact(code, data, reply, flags);
  Fault fault{};
  {
    std::unique_lock lock(mutex_);
    const uint64_t deaths = deaths_;
    const auto isCutShort = [&, healed = healed_] { return healed_ != healed || deaths_ != deaths; };
    if (takeLocked(Fault::kDelay, code, &fault)) changed_.wait_for(lock, fault.delay, isCutShort);
    if (dead_ || deaths_ != deaths) return android::DEAD_OBJECT;
  }
  if (take(Fault::kFail, code, &fault)) {
    if (fault.exception == 0) return fault.status;
    return Status::fromExceptionCode(fault.exception, "As commanded").writeToParcel(reply);
  }
  const status_t status = service_->transact(code, data, reply, flags);
  if (status == android::OK && answersWithRecord(*method) && take(Fault::kShort, code, &fault)) {
    resizeRecords(*method, fault.bytes, reply);
    reply->setDataPosition(0);
  }
  return status;
}

}  // namespace sim
