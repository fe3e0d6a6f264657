#pragma once

#define COM_QV_INTERFACE CallEventListener
#include <com/qv/detail/DeclareInterface.h>
