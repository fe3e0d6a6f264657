#include <com/qv/IAteEventListener.h>

#define COM_QV_INTERFACE AteEventListener
#define COM_QV_METHODS <com/qv/AteEventListener.def>
#include "ipc/DefineInterface.h"
