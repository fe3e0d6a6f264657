#include "ipc/Method.h"

#include "ipc/Transact.h"

namespace com::qv {

using android::binder::Status;

namespace {

/** Some values of a parameter list. */
class Values {
 public:
  Values() = default;
  /** Empty ones. */
  Values(const Type* const* types, size_t count) {
    for (size_t i = 0; i < count; ++i) add(types[i], types[i]->make);
  }
  ~Values() {
    while (count_ > 0) {
      --count_;
      types_[count_]->destroy(storage_ + count_);
    }
  }
  Values(const Values&) = delete;
  Values& operator=(const Values&) = delete;

  /** One more, which `make` makes of its memory. */
  template <class Make>
  void* add(const Type* type, Make make) {
    Storage* const value = storage_ + count_;
    make(value);
    types_[count_++] = type;
    return value;
  }

  void* operator[](size_t i) { return storage_ + i; }

 private:
  size_t count_ = 0;
  const Type* types_[kMaxParameters];
  Storage storage_[kMaxParameters];
};

/**
 * Applies `f` to the number of each out-parameter, counted from the first one, in the order in which they
 * stand in a reply, until one fails: the last one first (it is the method's return value), then the others as
 * they are declared.
 */
template <class F>
status_t forEachOut(size_t count, F f) {
  if (count == 0) return android::OK;
  status_t status = f(count - 1);
  for (size_t i = 0; status == android::OK && i + 1 < count; ++i) status = f(i);
  return status;
}

}  // namespace

status_t takeOuts(const Parcel& reply, const Type* const* types, size_t count, void* const* values) {
  Values received(types, count);
  const status_t status = forEachOut(count, [&](size_t i) { return types[i]->read(reply, received[i]); });
  if (status == android::OK) {
    for (size_t i = 0; i < count; ++i) types[i]->move(values[i], received[i]);
  }
  return status;
}

Status callMethod(android::IBinder* remote, const android::String16& token, uint32_t code,
                  const Arguments& arguments, void* const* values) {
  return transact(remote, token, code, arguments, values);
}

void callLocally(android::IInterface* service, const Implementation& implementation,
                 const Arguments& arguments, void** values) {
  const Signature& signature = *implementation.signature;
  Values converted;
  for (size_t i = 0; i < arguments.inCount; ++i) {
    const Conversion conversion = arguments.ins[i].conversion;
    if (conversion == nullptr) continue;
    values[i] = converted.add(signature.types[i], [&](void* parameter) { conversion(parameter, values[i]); });
  }
  signature.invoke(service, implementation.method, values);
}

status_t serveMethod(android::IInterface* service, const Implementation& implementation, const Parcel& data,
                     Parcel* reply) {
  const Signature& signature = *implementation.signature;
  Values locals(signature.types, signature.count);
  void* values[kMaxParameters];
  status_t status = android::OK;
  for (size_t i = 0; i < signature.count; ++i) {
    values[i] = locals[i];
    if (status == android::OK && i < signature.ins) status = signature.types[i]->read(data, locals[i]);
  }

  if (status == android::OK) {
    const Status result = signature.invoke(service, implementation.method, values);
    status = result.writeToParcel(reply);
    if (status == android::OK && result.isOk()) {
      status = forEachOut(signature.outs(), [&](size_t i) {
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
