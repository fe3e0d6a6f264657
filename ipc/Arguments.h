#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include <com/qv/CommonParcelable.h>

#include "ipc/Type.h"

/* What a method is called with: its parameters, or arguments of a C function that stand for them. */
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

/** The parameter for an argument that isn't one. */
template <class Parameter, class Argument>
Parameter toParameter(const Argument& argument) {
  if constexpr (requires { argument.toParameter(); }) {
    return argument.toParameter();
  } else if constexpr (std::is_same_v<Parameter, bool>) {
    return argument != 0;
  } else {
    return Parameter(argument);  // A null text raises the standard library's logic error.
  }
}

/** An argument's way into a parcel. */
using Write = status_t (*)(Parcel* parcel, const void* argument);

template <class Parameter, class Argument>
constexpr Write writeOf() {
  if constexpr (std::is_same_v<Parameter, Argument>) {
    return Typed<Parameter>::writeValue;
  } else {
    return [](Parcel* parcel, const void* argument) {
      return write(parcel, toParameter<Parameter>(*static_cast<const Argument*>(argument)));
    };
  }
}

/** Makes a parameter of an argument. */
using Conversion = void (*)(void* parameter, const void* argument);

/** Null where the argument is the parameter. */
template <class Parameter, class Argument>
constexpr Conversion conversionOf() {
  if constexpr (std::is_same_v<Parameter, Argument>) {
    return nullptr;
  } else {
    return [](void* parameter, const void* argument) {
      new (parameter) Parameter(toParameter<Parameter>(*static_cast<const Argument*>(argument)));
    };
  }
}

/** What is to know about the arguments that are given for a parameter list. */
struct Arguments {
  struct In {
    Write write;
    Conversion conversion;
  };
  const In* ins;
  const Type* const* outs;
  uint8_t inCount;
  uint8_t outCount;
};

template <class Parameters, class Given>
struct ArgumentsOf;
template <class... Parameters, class... Given>
struct ArgumentsOf<std::tuple<Parameters...>, std::tuple<Given...>> {
  using List = ParameterList<Parameters...>;

  template <class Parameter, class Argument>
  static constexpr Arguments::In in() {
    if constexpr (kIsOut<Parameter>) {
      return {};
    } else {
      return {writeOf<Value<Parameter>, Argument>(), conversionOf<Value<Parameter>, Argument>()};
    }
  }
  static constexpr auto kIns = [] {
    std::array<Arguments::In, List::kIns> ins{};
    const Arguments::In all[] = {in<Parameters, Given>()..., {}};
    std::copy_n(all, ins.size(), ins.begin());
    return ins;
  }();
  static constexpr Arguments kArguments{kIns.data(), List::kTypes + List::kIns, List::kIns,
                                        List::kCount - List::kIns};
};

/** The address of an argument, or the one to which an out-argument points. */
template <class Parameter, class Argument>
void* addressOf(const Argument& argument) {
  if constexpr (kIsOut<Parameter>) {
    static_assert(std::is_same_v<Parameter, Argument>, "what is written there is a Value<Parameter>");
    return argument;
  } else {
    return const_cast<void*>(static_cast<const void*>(std::addressof(argument)));
  }
}

}  // namespace com::qv
