#pragma once

/*
 * Expands the rows of an interface. Each row of a .def file describes a method by its code, its
 * name and its parameters as (type, name) pairs. A pointer is an out-argument:
 *
 *   METHOD(14, makeCall, (int32_t, line), (const std::string&, number), (int32_t*, result))
 *
 * The including file defines METHOD(code, name, ...) and undefines it afterwards. The macros below
 * expand the parameters of a row to
 *
 *   COM_QV_PARAMS(__VA_ARGS__)   int32_t line, const std::string& number, int32_t* result
 *   COM_QV_TYPES(__VA_ARGS__)    int32_t, const std::string&, int32_t*
 *   COM_QV_NAMES(__VA_ARGS__)    line, number, result
 *
 * For a method without parameters they expand to nothing. A method has at most eight parameters.
 */

#define COM_QV_PARAMS(...) COM_QV_EACH(COM_QV_PARAM, __VA_ARGS__)
#define COM_QV_TYPES(...) COM_QV_EACH(COM_QV_TYPE, __VA_ARGS__)
#define COM_QV_NAMES(...) COM_QV_EACH(COM_QV_NAME, __VA_ARGS__)

#define COM_QV_PARAM(type, name) type name
#define COM_QV_TYPE(type, name) type
#define COM_QV_NAME(type, name) name

#define COM_QV_EACH(f, ...) __VA_OPT__(COM_QV_EACH8(f, __VA_ARGS__))
#define COM_QV_EACH8(f, p, ...) f p __VA_OPT__(, COM_QV_EACH7(f, __VA_ARGS__))
#define COM_QV_EACH7(f, p, ...) f p __VA_OPT__(, COM_QV_EACH6(f, __VA_ARGS__))
#define COM_QV_EACH6(f, p, ...) f p __VA_OPT__(, COM_QV_EACH5(f, __VA_ARGS__))
#define COM_QV_EACH5(f, p, ...) f p __VA_OPT__(, COM_QV_EACH4(f, __VA_ARGS__))
#define COM_QV_EACH4(f, p, ...) f p __VA_OPT__(, COM_QV_EACH3(f, __VA_ARGS__))
#define COM_QV_EACH3(f, p, ...) f p __VA_OPT__(, COM_QV_EACH2(f, __VA_ARGS__))
#define COM_QV_EACH2(f, p, ...) f p __VA_OPT__(, COM_QV_EACH1(f, __VA_ARGS__))
#define COM_QV_EACH1(f, p) f p

/* The .def file of COM_QV_INTERFACE. */
#define COM_QV_METHODS COM_QV_METHODS_(COM_QV_INTERFACE)
#define COM_QV_METHODS_(interface) <com/qv/interface.def>

#define COM_QV_CAT(a, b) COM_QV_CAT_(a, b)
#define COM_QV_CAT_(a, b) a##b
#define COM_QV_STRING(a) COM_QV_STRING_(a)
#define COM_QV_STRING_(a) #a
