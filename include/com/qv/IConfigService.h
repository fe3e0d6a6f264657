#pragma once

#define COM_QV_INTERFACE ConfigService
#include <com/qv/detail/DeclareInterface.h>
