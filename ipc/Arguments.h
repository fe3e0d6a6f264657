#pragma once

#include <cstddef>
#include <new>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include <com/qv/CommonParcelable.h>

#include "ipc/Method.h"

/* How a C function's arguments become those of a method. */
namespace com::qv {

/** A C record as an in-argument. */
struct RecordBytes {
  const void* bytes;
  size_t size;
  CommonParcelable toParameter() const { return {bytes, size}; }
};

/** A C record of `kSize` bytes as an in-argument. */
template <size_t kSize>
struct Record {
  const void* bytes;
};

/** A C array as an in-argument; empty for a count of 0 or less. */
struct IntArray {
  const int* values;
  int count;
  std::vector<int32_t> toParameter() const {
    return count > 0 ? std::vector<int32_t>(values, values + count) : std::vector<int32_t>();
  }
};

/** An argument without what would have code compiled for it alone. */
template <class Argument>
Argument plain(Argument argument) {
  return argument;
}
template <size_t kSize>
RecordBytes plain(Record<kSize> record) {
  return {record.bytes, kSize};
}

/** Makes a method's parameter of a C argument. */
using Conversion = void (*)(void* parameter, const void* argument);

template <class Parameter, class Argument>
void convert(void* parameter, const void* argument) {
  const Argument& from = *static_cast<const Argument*>(argument);
  if constexpr (requires { from.toParameter(); }) {
    new (parameter) Parameter(from.toParameter());
  } else if constexpr (std::is_same_v<Parameter, bool>) {
    new (parameter) bool(from != 0);
  } else {
    new (parameter) Parameter(from);  // A null text raises the standard library's logic error.
  }
}

/** Not where an argument is what the parameter is, nor for an out-argument. */
template <class Parameter, class Argument>
constexpr bool kIsConverted = !kIsOut<Parameter> && !std::is_same_v<Value<Parameter>, Argument>;

/** Null where there is none. */
template <class Parameter, class Argument>
constexpr Conversion conversion() {
  if constexpr (kIsConverted<Parameter, Argument>) {
    return convert<Value<Parameter>, Argument>;
  } else {
    return nullptr;
  }
}

template <class Parameters, class Arguments>
struct ConversionsOf;
template <class... Parameters, class... Arguments>
struct ConversionsOf<std::tuple<Parameters...>, std::tuple<Arguments...>> {
  static constexpr Conversion kEach[] = {conversion<Parameters, Arguments>()..., nullptr};
  /** Null where no argument needs one. */
  static constexpr const Conversion* kConversions =
      (kIsConverted<Parameters, Arguments> || ...) ? kEach : nullptr;
};

/** callWithArguments where there is something to convert. */
void callConverting(android::IInterface* service, AnyMethod method, const Signature& signature,
                    const Conversion* conversions, void** values);

/** Calls a method.
 *
 * @param values      the C arguments, and where the results go; converted in place
 * @param conversions one for each of them; null if there is none to convert
 */
inline void callWithArguments(android::IInterface* service, AnyMethod method, const Signature& signature,
                              const Conversion* conversions, void** values) {
  if (conversions != nullptr) return callConverting(service, method, signature, conversions, values);
  signature.invoke(service, method, values);
}

}  // namespace com::qv
