#pragma once

#define COM_QV_INTERFACE SampleListener
#include <com/qv/detail/DeclareInterface.h>

#define COM_QV_INTERFACE Sample
#include <com/qv/detail/DeclareInterface.h>
