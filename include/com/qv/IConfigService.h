#pragma once

#define COM_QV_INTERFACE ConfigService
#define COM_QV_METHODS <com/qv/ConfigService.def>
#include <com/qv/detail/DeclareInterface.h>
