#include <com/qv/IConfigService.h>

#define COM_QV_INTERFACE ConfigService
#include "ipc/DefineInterface.h"
