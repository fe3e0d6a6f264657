#include <com/qv/IRelayService.h>

#define COM_QV_INTERFACE RelayService
#define COM_QV_METHODS <com/qv/RelayService.def>
#include "ipc/DefineInterface.h"
