#include <vesk/config/nat_share.h>

#include "config/ConfigService.h"

using namespace com::qv;
