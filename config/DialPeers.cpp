#include <vesk/config/dial_peers.h>

#include "config/ConfigService.h"

using namespace com::qv;
