#include <com/qv/IMiscService.h>

#define COM_QV_INTERFACE MiscService
#define COM_QV_METHODS <com/qv/MiscService.def>
#include "ipc/DefineInterface.h"
