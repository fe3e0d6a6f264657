#pragma once

#include "Live.h"
#include "phone/Phone.h"

namespace sim {

using LivePhone = Live<Phone>;

}  // namespace sim
