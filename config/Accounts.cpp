#include <vesk/config/accounts.h>

#include "config/ConfigService.h"

using namespace com::qv;
