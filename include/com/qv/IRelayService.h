#pragma once

#define COM_QV_INTERFACE RelayService
#include <com/qv/detail/DeclareInterface.h>
