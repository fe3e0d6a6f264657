#include <vesk/config/device.h>

#include "config/ConfigService.h"

using namespace com::qv;
