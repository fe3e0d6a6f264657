#pragma once

#define COM_QV_INTERFACE ExternalKeyService
#include <com/qv/detail/DeclareInterface.h>
