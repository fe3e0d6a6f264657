/*
 * Turns the rows of one interface into kMethods, in a namespace of the interface's name. Included once per
 * interface, inside of a namespace, with the macros of <com/qv/detail/DeclareInterface.h>, which are
 * undefined again at the end.
 */

namespace COM_QV_INTERFACE {

#define METHOD(code, name, ...) \
  constexpr auto name = listOf(__VA_OPT__(COM_QV_EACH(VESKCTL_PARAMETER, __VA_ARGS__)));
#include COM_QV_METHODS
#undef METHOD

constexpr Method kMethods[] = {
#define METHOD(code, name, ...) {code, #name, name},
#include COM_QV_METHODS
#undef METHOD
};

}  // namespace COM_QV_INTERFACE

#undef COM_QV_INTERFACE
#undef COM_QV_METHODS
