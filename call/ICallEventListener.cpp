#include <com/qv/ICallEventListener.h>

#define COM_QV_INTERFACE CallEventListener
#include "ipc/DefineInterface.h"
