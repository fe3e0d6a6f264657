#include <com/qv/IMiscEventListener.h>

#define COM_QV_INTERFACE MiscEventListener
#include "ipc/DefineInterface.h"
