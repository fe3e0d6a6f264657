#include <com/qv/ICallService.h>

#define COM_QV_INTERFACE CallService
#define COM_QV_METHODS <com/qv/CallService.def>
#include "ipc/DefineInterface.h"
