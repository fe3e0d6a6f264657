#pragma once

#include <com/qv/ConfigClient.h>

#include "ipc/ClientApi.h"
#include "ipc/Text.h"

namespace com::qv {

/** The C functions of the config service are defined in one source for each topic. */
extern ClientApi<ConfigClient>& configService;

}  // namespace com::qv
