#include <com/qv/MiscEventListener.h>

#include "misc/MiscCallbacks.h"

namespace com::qv {

using android::binder::Status;

Status MiscEventListener::webscreenshot() { return notify(&vesk_misc_callbacks::on_web_screenshot); }

Status MiscEventListener::wkRingHdl(int32_t value) { return notify(&vesk_misc_callbacks::on_ring, value); }

Status MiscEventListener::wkScanCancelHdl() { return notify(&vesk_misc_callbacks::on_scan_cancel); }

}  // namespace com::qv
