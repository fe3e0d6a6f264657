#include <vesk/config/sound.h>

#include "config/ConfigService.h"

using namespace com::qv;
