#include <com/qv/IConfigService.h>

#define COM_QV_INTERFACE ConfigService
#define COM_QV_METHODS <com/qv/ConfigService.def>
#include "ipc/DefineInterface.h"
