#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "ipc/Marshal.h"

namespace com::qv {

/** Where the lists of <com/qv/detail/Methods.h> end. */
constexpr size_t kMaxParameters = 8;

template <class Parameter>
constexpr bool kIsOut = std::is_pointer_v<Parameter>;

/** What a parameter refers to or points to. */
template <class Parameter>
using Value = std::remove_pointer_t<std::remove_cvref_t<Parameter>>;

/** A type that crosses, for code that is compiled once for all of them. */
struct Type {
  status_t (*write)(Parcel* parcel, const void* value);
  status_t (*read)(const Parcel& parcel, void* value);
  void (*make)(void* storage);
  void (*move)(void* to, void* from);
  void (*destroy)(void* value);
};

/** Room for a value of any type that crosses. */
struct Storage {
  alignas(std::max(alignof(std::string), alignof(CommonParcelable))) std::byte
      bytes[std::max({sizeof(std::string), sizeof(std::vector<int32_t>), sizeof(CommonParcelable)})];
};

template <class T>
struct Typed {
  static_assert(sizeof(T) <= sizeof(Storage) && alignof(T) <= alignof(Storage));

  static status_t writeValue(Parcel* parcel, const void* value) {
    return write(parcel, *static_cast<const T*>(value));
  }
  static status_t readValue(const Parcel& parcel, void* value) {
    return read(parcel, static_cast<T*>(value));
  }
  static void makeValue(void* storage) { new (storage) T(); }
  static void moveValue(void* to, void* from) { *static_cast<T*>(to) = std::move(*static_cast<T*>(from)); }
  static void destroyValue(void* value) { std::destroy_at(static_cast<T*>(value)); }

  static constexpr Type kType{writeValue, readValue, makeValue, moveValue, destroyValue};
};

/** What is to know about a parameter list: the in-parameters stand first. */
template <class... Parameters>
struct ParameterList {
  static constexpr uint8_t kCount = sizeof...(Parameters);
  static constexpr uint8_t kIns = (uint8_t{0} + ... + (kIsOut<Parameters> ? 0 : 1));
  static_assert(kCount <= kMaxParameters);

  static constexpr bool outsStandLast() {
    bool out = false;
    for (const bool isOut : {false, kIsOut<Parameters>...}) {
      if (out && !isOut) return false;
      out = isOut;
    }
    return true;
  }
  static_assert(outsStandLast(), "the number of in-arguments tells where the out-arguments begin");

  static constexpr const Type* kTypes[kCount + 1] = {&Typed<Value<Parameters>>::kType..., nullptr};
};

}  // namespace com::qv
