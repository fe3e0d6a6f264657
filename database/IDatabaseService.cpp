#include <com/qv/IDatabaseService.h>

#define COM_QV_INTERFACE DatabaseService
#define COM_QV_METHODS <com/qv/DatabaseService.def>
#include "ipc/DefineInterface.h"
