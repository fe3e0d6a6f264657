/*
 * Defines kMethods from the rows of one interface, in a namespace of the interface's name. Included once per
 * interface by InterfaceTable.cpp, with the macros of <com/qv/detail/DeclareInterface.h>, which are undefined
 * again at the end.
 */

namespace COM_QV_INTERFACE {

#define METHOD(code, name, ...) constexpr auto name = listOf(__VA_OPT__(COM_QV_EACH(PARAMETER, __VA_ARGS__)));
#include COM_QV_METHODS
#undef METHOD

constexpr Method kMethods[] = {
#define METHOD(code, name, ...) {code, #name, name},
#include COM_QV_METHODS
#undef METHOD
};

}  // namespace COM_QV_INTERFACE

#undef COM_QV_INTERFACE
