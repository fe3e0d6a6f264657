#pragma once

#include <com/qv/ConfigClient.h>

#include "ipc/Service.h"
#include "ipc/Text.h"

namespace com::qv {

/** The process's config service, to which the C functions of every topic state their facts. */
extern Service<ConfigClient>& configService;

}  // namespace com::qv
