#include "ISample.h"

#define COM_QV_INTERFACE SampleListener
#include "ipc/DefineInterface.h"
