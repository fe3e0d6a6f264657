/*
 * Declares the rows of one interface, as Service (ipc/Service.h) wants them named, in a struct that is called
 * as the interface without its leading I: CallService::makeCall. Included as
 * <com/qv/detail/DeclareInterface.h>, with the same two macros.
 */

#include <com/qv/detail/Methods.h>

#include "ipc/Method.h"

#define COM_QV_I COM_QV_CAT(I, COM_QV_INTERFACE)

namespace com::qv {

template <>
Implementation implementationOf<COM_QV_I>(uint32_t code);

struct COM_QV_INTERFACE {
#define METHOD(code, name, ...) \
  static constexpr Row<COM_QV_I __VA_OPT__(, ) COM_QV_TYPES(__VA_ARGS__)> name{code};
#include COM_QV_METHODS
#undef METHOD
};

}  // namespace com::qv

#undef COM_QV_I
#undef COM_QV_INTERFACE
#undef COM_QV_METHODS
