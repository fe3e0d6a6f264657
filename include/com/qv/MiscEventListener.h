#pragma once

#include <com/qv/IMiscEventListener.h>

namespace com::qv {

/** Passes each misc event to the callback that connect_misc_service() was given for it, which must
 * not be null. */
class COM_QV_EXPORT MiscEventListener : public BnMiscEventListener {
 public:
#define METHOD(code, name, ...) android::binder::Status name(COM_QV_PARAMS(__VA_ARGS__)) override;
#include <com/qv/MiscEventListener.def>
#undef METHOD
};

}  // namespace com::qv
