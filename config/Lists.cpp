#include <vesk/config/lists.h>

#include "config/ConfigService.h"

using namespace com::qv;
