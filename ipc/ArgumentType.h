#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "ipc/Marshal.h"

namespace com::qv {

/** The operations of one argument type behind function pointers. Marshalling goes through these, so
 * that it is compiled once and not for each parameter list. */
struct ArgumentType {
  status_t (*write)(Parcel* parcel, const void* value);
  status_t (*read)(const Parcel& parcel, void* value);
  void (*construct)(void* storage);
  void (*moveTo)(void* value, void* target);
  void (*destroy)(void* value);
};

/** Memory for a value of any argument type. */
struct ArgumentStorage {
  alignas(std::max(alignof(std::string), alignof(CommonParcelable))) std::byte
      bytes[std::max({sizeof(std::string), sizeof(std::vector<int32_t>), sizeof(CommonParcelable)})];
};

template <class T>
struct ArgumentTypeOf {
  static_assert(sizeof(T) <= sizeof(ArgumentStorage) && alignof(T) <= alignof(ArgumentStorage));

  static status_t writeValue(Parcel* parcel, const void* value) {
    return write(parcel, *static_cast<const T*>(value));
  }
  static status_t readValue(const Parcel& parcel, void* value) {
    return read(parcel, static_cast<T*>(value));
  }
  static void construct(void* storage) { new (storage) T(); }
  static void moveTo(void* value, void* target) {
    *static_cast<T*>(target) = std::move(*static_cast<T*>(value));
  }
  static void destroy(void* value) { std::destroy_at(static_cast<T*>(value)); }

  static constexpr ArgumentType kType{writeValue, readValue, construct, moveTo, destroy};
};

}  // namespace com::qv
