#include <vesk/config/wireless.h>

#include "config/ConfigService.h"

using namespace com::qv;
