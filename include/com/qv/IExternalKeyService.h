#pragma once

#define COM_QV_INTERFACE ExternalKeyService
#define COM_QV_METHODS <com/qv/ExternalKeyService.def>
#include <com/qv/detail/DeclareInterface.h>
