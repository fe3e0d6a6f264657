#pragma once

#include <com/qv/ICallEventListener.h>

namespace com::qv {

/** Logs each call event and passes it to the callback that connect_call_service() was given for it,
 * unless that is null. */
class COM_QV_EXPORT CallEventListener : public BnCallEventListener {
 public:
#define METHOD(code, name, ...) android::binder::Status name(COM_QV_PARAMS(__VA_ARGS__)) override;
#include <com/qv/CallEventListener.def>
#undef METHOD
};

}  // namespace com::qv
