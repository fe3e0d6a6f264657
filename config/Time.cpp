#include <vesk/config/time.h>

#include "config/ConfigService.h"

using namespace com::qv;
