#include "ipc/Method.h"

namespace com::qv {

using android::binder::Status;

namespace {

/** Some values of a parameter list, made empty. */
class Values {
 public:
  Values(const Type* const* types, size_t count) : types_(types) {
    for (; count_ < count; ++count_) types_[count_]->make(storage_ + count_);
  }
  ~Values() {
    while (count_ > 0) {
      --count_;
      types_[count_]->destroy(storage_ + count_);
    }
  }
  Values(const Values&) = delete;
  Values& operator=(const Values&) = delete;

  void* operator[](size_t i) { return storage_ + i; }

 private:
  const Type* const* types_;
  size_t count_ = 0;
  Storage storage_[kMaxParameters];
};

/**
 * Applies `f` to the number of each out-parameter, counted from the first one, in the order in which they
 * stand in a reply, until one fails: the last one first (it is the method's return value), then the others as
 * they are declared.
 */
template <class F>
status_t forEachOut(const Signature& signature, F f) {
  const size_t count = signature.outs();
  if (count == 0) return android::OK;
  status_t status = f(count - 1);
  for (size_t i = 0; status == android::OK && i + 1 < count; ++i) status = f(i);
  return status;
}

/** Takes the out-values of a reply that has more than one: none is written before all have been read. */
[[gnu::noinline]] status_t takeOuts(const Parcel& reply, const Signature& signature, void* const* values) {
  const Type* const* const types = signature.types + signature.ins;
  Values received(types, signature.outs());
  const status_t status = forEachOut(signature, [&](size_t i) { return types[i]->read(reply, received[i]); });
  if (status == android::OK) {
    for (size_t i = 0; i < signature.outs(); ++i) types[i]->move(values[i], received[i]);
  }
  return status;
}

}  // namespace

Status callMethod(android::IBinder* remote, const android::String16& token, uint32_t code,
                  const Signature& signature, void* const* values) {
  Parcel data;
  Parcel reply;
  Status result;

  status_t status = data.writeInterfaceToken(token);
  const size_t ins = signature.ins;
  for (size_t i = 0; status == android::OK && i < ins; ++i) {
    status = signature.types[i]->write(&data, values[i]);
  }

  if (status == android::OK) status = remote->transact(code, data, &reply, 0);
  if (status == android::OK) status = result.readFromParcel(reply);
  if (status == android::OK && result.isOk()) {
    if (signature.outs() == 1) {
      status = signature.types[ins]->read(reply, values[ins]);
    } else if (signature.outs() > 1) {
      status = takeOuts(reply, signature, values + ins);
    }
  }
  if (status != android::OK) result.setFromStatusT(status);
  return result;
}

status_t serveMethod(android::IInterface* service, AnyMethod method, const Signature& signature,
                     const Parcel& data, Parcel* reply) {
  Values locals(signature.types, signature.count);
  void* values[kMaxParameters];
  status_t status = android::OK;
  for (size_t i = 0; i < signature.count; ++i) {
    values[i] = locals[i];
    if (status == android::OK && i < signature.ins) status = signature.types[i]->read(data, locals[i]);
  }

  if (status == android::OK) {
    const Status result = signature.invoke(service, method, values);
    status = result.writeToParcel(reply);
    if (status == android::OK && result.isOk()) {
      status = forEachOut(signature, [&](size_t i) {
        const size_t out = signature.ins + i;
        return signature.types[out]->write(reply, locals[out]);
      });
    }
  }

  if (status == android::UNEXPECTED_NULL) {
    return Status::fromExceptionCode(Status::EX_NULL_POINTER).writeToParcel(reply);
  }
  return status;
}

}  // namespace com::qv
