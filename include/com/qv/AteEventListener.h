#pragma once

#include <com/qv/IAteEventListener.h>

namespace com::qv {

/**
 * Passes each event of the automatic test to the callback that connect_misc_service() was given for
 * it, which must not be null.
 */
class COM_QV_EXPORT AteEventListener : public BnAteEventListener {
 public:
#define METHOD(code, name, ...) android::binder::Status name(COM_QV_PARAMS(__VA_ARGS__)) override;
#include <com/qv/AteEventListener.def>
#undef METHOD
};

}  // namespace com::qv
