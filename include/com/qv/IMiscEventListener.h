#pragma once

#define COM_QV_INTERFACE MiscEventListener
#include <com/qv/detail/DeclareInterface.h>
