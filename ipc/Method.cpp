#include "ipc/Method.h"

namespace com::qv {

using android::binder::Status;

namespace {

/** One default-constructed value for each of some types. */
class Values {
 public:
  Values(const ArgumentType* const* types, size_t count) : types_(types), count_(count) {
    for (size_t i = 0; i < count_; ++i) types_[i]->construct(storage_ + i);
  }
  ~Values() {
    for (size_t i = 0; i < count_; ++i) types_[i]->destroy(storage_ + i);
  }
  Values(const Values&) = delete;
  Values& operator=(const Values&) = delete;

  void* operator[](size_t i) { return storage_ + i; }

 private:
  const ArgumentType* const* const types_;
  const size_t count_;
  ArgumentStorage storage_[kMaxParameters];
};

/** Calls `f` with the index of each out-parameter in the order of a reply: the last one first,
 * since it is the method's return value, then the others as declared. Stops at the first
 * failure. */
template <class F>
status_t forEachOut(size_t count, F f) {
  if (count == 0) return android::OK;
  status_t status = f(count - 1);
  for (size_t i = 0; status == android::OK && i + 1 < count; ++i) status = f(i);
  return status;
}

/** Reads the out-values of a reply; writes none unless all could be read. */
status_t readOuts(const Parcel& reply, const ArgumentType* const* types, size_t count, void* const* values) {
  // A single read leaves its value untouched on failure.
  if (count == 1) return types[0]->read(reply, values[0]);
  Values received(types, count);
  const status_t status = forEachOut(count, [&](size_t i) { return types[i]->read(reply, received[i]); });
  if (status == android::OK) {
    for (size_t i = 0; i < count; ++i) types[i]->moveTo(received[i], values[i]);
  }
  return status;
}

/** Reads the Status of a reply. Without an exception it is a single 0, which takes a quarter of the
 * instructions of Status::readFromParcel to check. */
status_t readStatus(const Parcel& reply, Status* result) {
  int32_t exception = Status::EX_NONE;
  const status_t status = reply.readInt32(&exception);
  if (status != android::OK || exception == Status::EX_NONE) return status;
  reply.setDataPosition(0);
  return result->readFromParcel(reply);
}

}  // namespace

Status callMethod(android::IBinder* remote, const android::String16& token, uint32_t code,
                  const Signature& signature, void* const* values) {
  const size_t ins = signature.inCount;
  Parcel data;
  Parcel reply;
  Status result;

  status_t status = data.writeInterfaceToken(token);
  for (size_t i = 0; status == android::OK && i < ins; ++i) {
    status = signature.types[i]->write(&data, values[i]);
  }
  if (status == android::OK) status = remote->transact(code, data, &reply, 0);
  if (status == android::OK) status = readStatus(reply, &result);
  if (status == android::OK && result.isOk() && signature.outCount > 0) {
    status = readOuts(reply, signature.types + ins, signature.outCount, values + ins);
  }
  if (status != android::OK) result.setFromStatusT(status);
  return result;
}

status_t serveMethod(android::IInterface* service, const ServiceMethod& method, const Parcel& data,
                     Parcel* reply) {
  const Signature& signature = *method.signature;
  const size_t ins = signature.inCount;
  const size_t outs = signature.outCount;
  Values arguments(signature.types, ins + outs);
  void* values[kMaxParameters];
  for (size_t i = 0; i < ins + outs; ++i) values[i] = arguments[i];

  status_t status = android::OK;
  for (size_t i = 0; status == android::OK && i < ins; ++i) {
    status = signature.types[i]->read(data, values[i]);
  }
  if (status == android::OK) {
    const Status result = signature.invoke(service, method.method, values);
    status = result.writeToParcel(reply);
    if (status == android::OK && result.isOk()) {
      status =
          forEachOut(outs, [&](size_t i) { return signature.types[ins + i]->write(reply, values[ins + i]); });
    }
  }

  if (status == android::UNEXPECTED_NULL) {
    return Status::fromExceptionCode(Status::EX_NULL_POINTER).writeToParcel(reply);
  }
  return status;
}

}  // namespace com::qv
