#include <vesk/config/passwords.h>

#include "config/ConfigService.h"

using namespace com::qv;
