#pragma once

#include <com/qv/CommonParcelable.h>

#include "phone/Phone.h"

namespace sim {

/* The records of the call service; docs/simulated-device.md shows their layout. */

com::qv::CommonParcelable toRecord(const CallInfo& info);
com::qv::CommonParcelable toRecord(const AutoRedialInfo& info);
com::qv::CommonParcelable toRecord(const CompletionInfo& info);
com::qv::CommonParcelable toRecord(const Snapshot& snapshot);

}  // namespace sim
