#pragma once

#include "RealTime.h"
#include "phone/Phone.h"

namespace sim {

using RealTimePhone = RealTime<Phone>;

}  // namespace sim
