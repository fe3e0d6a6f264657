#pragma once

#include <com/qv/ICallEventListener.h>

#define COM_QV_INTERFACE CallService
#define COM_QV_METHODS <com/qv/CallService.def>
#include <com/qv/detail/DeclareInterface.h>
