#pragma once

#include <com/qv/ICallEventListener.h>

#define COM_QV_INTERFACE CallService
#include <com/qv/detail/DeclareInterface.h>
