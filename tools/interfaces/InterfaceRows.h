/*
 * Defines kMethods from the rows of COM_QV_INTERFACE, in a namespace with the interface's name.
 * InterfaceTable.cpp includes this file once for each interface.
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
