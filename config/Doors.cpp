#include <vesk/config/doors.h>

#include "config/ConfigService.h"

using namespace com::qv;
