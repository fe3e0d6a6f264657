#include "ISample.h"

#define COM_QV_INTERFACE Sample
#include "ipc/DefineInterface.h"
