#pragma once

#define COM_QV_INTERFACE DatabaseService
#define COM_QV_METHODS <com/qv/DatabaseService.def>
#include <com/qv/detail/DeclareInterface.h>
