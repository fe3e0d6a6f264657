#include <com/qv/IDatabaseService.h>

#define COM_QV_INTERFACE DatabaseService
#include "ipc/DefineInterface.h"
