#pragma once

#define COM_QV_INTERFACE RelayService
#define COM_QV_METHODS <com/qv/RelayService.def>
#include <com/qv/detail/DeclareInterface.h>
