#include <vesk/config/discovery.h>

#include "config/ConfigService.h"

using namespace com::qv;
