#pragma once

#define COM_QV_INTERFACE AteEventListener
#define COM_QV_METHODS <com/qv/AteEventListener.def>
#include <com/qv/detail/DeclareInterface.h>
