#pragma once

#include <com/qv/IAteEventListener.h>
#include <com/qv/IMiscEventListener.h>

#define COM_QV_INTERFACE MiscService
#include <com/qv/detail/DeclareInterface.h>
