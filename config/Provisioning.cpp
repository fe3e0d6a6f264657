#include <vesk/config/provisioning.h>

#include "config/ConfigService.h"

using namespace com::qv;
