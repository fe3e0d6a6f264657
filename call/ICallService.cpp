#include <com/qv/ICallService.h>

#define COM_QV_INTERFACE CallService
#include "ipc/DefineInterface.h"
