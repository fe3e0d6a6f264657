#include "Binder.h"

#include <binder/IServiceManager.h>
#include <utils/String16.h>
#include <utils/String8.h>

#include <algorithm>

namespace veskctl {

namespace {

using android::Parcel;
using android::status_t;
using android::String16;

/** A request for the process id, which every object answers on newer platforms. The headers of
 * older ones have no constant for it. */
constexpr uint32_t kDebugPidTransaction = '_' << 24 | 'P' << 16 | 'I' << 8 | 'D';

std::optional<pid_t> pidOf(android::IBinder& binder) {
  Parcel data;
  Parcel reply;
  int32_t pid = 0;
  const bool answered = binder.transact(kDebugPidTransaction, data, &reply) == android::OK &&
                        reply.readInt32(&pid) == android::OK;
  return answered && pid > 0 ? std::optional<pid_t>(pid) : std::nullopt;
}

status_t readOuts(const Parcel& reply, const Method& method, std::vector<Value>* values) {
  status_t status = android::OK;
  for (const Type type : method.replyTypes()) {
    if (status == android::OK) status = read(reply, type, &values->emplace_back());
  }
  // From the order of the reply to that of outs().
  if (!values->empty()) std::rotate(values->begin(), values->begin() + 1, values->end());
  return status;
}

}  // namespace

android::sp<android::IBinder> findService(const std::string& name) {
  return android::defaultServiceManager()->checkService(String16(name.c_str()));
}

ServiceState inspect(const std::string& serviceName) {
  ServiceState state;
  const android::sp<android::IBinder> binder = findService(serviceName);
  if (binder == nullptr) return state;
  const auto start = std::chrono::steady_clock::now();
  state.isAlive = binder->pingBinder() == android::OK;
  state.roundTrip = std::chrono::steady_clock::now() - start;
  if (!state.isAlive) return state;
  state.pid = pidOf(*binder);
  state.descriptor = android::String8(binder->getInterfaceDescriptor()).c_str();
  return state;
}

Answer transact(android::IBinder& binder, const Interface& interface, const Method& method,
                const std::vector<Value>& ins) {
  Parcel data;
  Parcel reply;
  Answer answer;
  status_t status = data.writeInterfaceToken(String16(interface.descriptor().c_str()));
  for (auto in = ins.begin(); status == android::OK && in != ins.end(); ++in) status = write(&data, *in);
  if (status == android::OK) status = binder.transact(method.code, data, &reply, 0);
  if (status == android::OK) status = answer.status.readFromParcel(reply);
  if (status == android::OK && answer.status.isOk()) status = readOuts(reply, method, &answer.outs);
  if (status != android::OK) {
    answer.outs.clear();
    answer.status.setFromStatusT(status);
  }
  return answer;
}

status_t readArguments(const Parcel& data, const Method& method, std::vector<Value>* values) {
  status_t status = android::OK;
  for (const Parameter& parameter : method.ins()) {
    if (status == android::OK) status = read(data, parameter.type, &values->emplace_back());
  }
  return status;
}

}  // namespace veskctl
