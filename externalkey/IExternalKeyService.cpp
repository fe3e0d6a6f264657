#include <com/qv/IExternalKeyService.h>

#define COM_QV_INTERFACE ExternalKeyService
#define COM_QV_METHODS <com/qv/ExternalKeyService.def>
#include "ipc/DefineInterface.h"
