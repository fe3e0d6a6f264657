#include <vesk/config/dnd.h>

#include "config/ConfigService.h"

using namespace com::qv;
