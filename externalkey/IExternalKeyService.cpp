#include <com/qv/IExternalKeyService.h>

#define COM_QV_INTERFACE ExternalKeyService
#include "ipc/DefineInterface.h"
