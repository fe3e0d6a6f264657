#pragma once

#include <com/qv/IAteEventListener.h>
#include <com/qv/IMiscEventListener.h>

#define COM_QV_INTERFACE MiscService
#define COM_QV_METHODS <com/qv/MiscService.def>
#include <com/qv/detail/DeclareInterface.h>
