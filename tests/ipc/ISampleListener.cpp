#include "ISample.h"

#define COM_QV_INTERFACE SampleListener
#define COM_QV_METHODS "SampleListener.def"
#include "ipc/DefineInterface.h"
