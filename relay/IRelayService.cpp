#include <com/qv/IRelayService.h>

#define COM_QV_INTERFACE RelayService
#include "ipc/DefineInterface.h"
