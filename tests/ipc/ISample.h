#pragma once

#define COM_QV_INTERFACE SampleListener
#define COM_QV_METHODS "SampleListener.def"
#include <com/qv/detail/DeclareInterface.h>

#define COM_QV_INTERFACE Sample
#define COM_QV_METHODS "Sample.def"
#include <com/qv/detail/DeclareInterface.h>
