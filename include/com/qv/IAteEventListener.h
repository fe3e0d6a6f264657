#pragma once

#define COM_QV_INTERFACE AteEventListener
#include <com/qv/detail/DeclareInterface.h>
