#include <com/qv/IMiscEventListener.h>

#define COM_QV_INTERFACE MiscEventListener
#define COM_QV_METHODS <com/qv/MiscEventListener.def>
#include "ipc/DefineInterface.h"
