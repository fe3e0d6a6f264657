#include <vesk/config/network.h>

#include "config/ConfigService.h"

using namespace com::qv;
