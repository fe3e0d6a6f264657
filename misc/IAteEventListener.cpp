#include <com/qv/IAteEventListener.h>

#define COM_QV_INTERFACE AteEventListener
#include "ipc/DefineInterface.h"
