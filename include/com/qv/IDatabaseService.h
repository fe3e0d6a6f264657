#pragma once

#define COM_QV_INTERFACE DatabaseService
#include <com/qv/detail/DeclareInterface.h>
