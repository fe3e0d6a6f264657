#include <com/qv/IMiscService.h>

#define COM_QV_INTERFACE MiscService
#include "ipc/DefineInterface.h"
