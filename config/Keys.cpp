#include <vesk/config/keys.h>

#include "config/ConfigService.h"

using namespace com::qv;
