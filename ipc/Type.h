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

}  // namespace com::qv
