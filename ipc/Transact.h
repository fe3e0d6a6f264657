#pragma once

#include "ipc/Method.h"

namespace com::qv {

/** Takes the out-values of a reply that has more than one: none is written before all have been read. */
status_t takeOuts(const Parcel& reply, const Type* const* types, size_t count, void* const* values);

/** Whether a reply begins as that to a call that went well mostly does; only another one needs a whole
 * Status. */
inline bool beginsAsOk(const Parcel& reply) {
  int32_t exception = 0;
  return reply.readInt32(&exception) == android::OK && exception == android::binder::Status::EX_NONE;
}

/** The body of callMethod. The C functions' way has it inlined: handing everything on to another function
 * would be a quarter of what they add to a transaction. */
[[gnu::always_inline]] inline android::binder::Status transact(android::IBinder* remote,
                                                               const android::String16& token, uint32_t code,
                                                               const Arguments& arguments,
                                                               void* const* values) {
  Parcel data;
  Parcel reply;
  android::binder::Status result;

  status_t status = data.writeInterfaceToken(token);
  const size_t ins = arguments.inCount;
  // All of them, even if one fails: a null text raises its error wherever it stands.
  for (size_t i = 0; i < ins; ++i) {
    const status_t written = arguments.ins[i].write(&data, values[i]);
    if (status == android::OK) status = written;
  }

  if (status == android::OK) status = remote->transact(code, data, &reply, 0);
  if (status == android::OK && !beginsAsOk(reply)) {
    reply.setDataPosition(0);
    status = result.readFromParcel(reply);
  }
  if (status == android::OK && result.isOk()) {
    if (arguments.outCount == 1) {
      status = arguments.outs[0]->read(reply, values[ins]);
    } else if (arguments.outCount > 1) {
      status = takeOuts(reply, arguments.outs, arguments.outCount, values + ins);
    }
  }
  if (status != android::OK) result.setFromStatusT(status);
  return result;
}

}  // namespace com::qv
