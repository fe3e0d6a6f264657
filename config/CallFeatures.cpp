#include <vesk/config/call_features.h>

#include "config/ConfigService.h"

using namespace com::qv;
