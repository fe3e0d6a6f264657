#include "ISample.h"

#define COM_QV_INTERFACE Sample
#define COM_QV_METHODS "Sample.def"
#include "ipc/DefineInterface.h"
