#include <vesk/config/screen.h>

#include "config/ConfigService.h"

using namespace com::qv;
