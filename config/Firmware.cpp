#include <vesk/config/firmware.h>

#include "config/ConfigService.h"

using namespace com::qv;
