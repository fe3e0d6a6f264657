#include <vesk/config/dss.h>

#include "config/ConfigService.h"

using namespace com::qv;
