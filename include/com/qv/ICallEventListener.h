#pragma once

#define COM_QV_INTERFACE CallEventListener
#define COM_QV_METHODS <com/qv/CallEventListener.def>
#include <com/qv/detail/DeclareInterface.h>
