#pragma once

#include <binder/Status.h>

#include <string>

#include "Json.h"

namespace veskctl {

/** "ok", "EX_SERVICE_SPECIFIC 17: busy", "EX_TRANSACTION_FAILED: DEAD_OBJECT" */
std::string toText(const android::binder::Status& status);
Json toJson(const android::binder::Status& status);

}  // namespace veskctl
