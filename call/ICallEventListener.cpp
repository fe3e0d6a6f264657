#include <com/qv/ICallEventListener.h>

#define COM_QV_INTERFACE CallEventListener
#define COM_QV_METHODS <com/qv/CallEventListener.def>
#include "ipc/DefineInterface.h"
