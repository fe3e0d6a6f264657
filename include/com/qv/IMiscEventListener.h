#pragma once

#define COM_QV_INTERFACE MiscEventListener
#define COM_QV_METHODS <com/qv/MiscEventListener.def>
#include <com/qv/detail/DeclareInterface.h>
