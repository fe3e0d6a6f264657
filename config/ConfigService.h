#pragma once

#include <com/qv/ConfigClient.h>

#include "ipc/Service.h"
#include "ipc/Text.h"

#define COM_QV_INTERFACE ConfigService
#define COM_QV_METHODS <com/qv/ConfigService.def>
#include "ipc/DeclareRows.h"

namespace com::qv {

/** The process's config service, to which the C functions of every topic state their facts. */
extern Service<ConfigClient>& configService;

}  // namespace com::qv
