#pragma once

#include <vesk/array.h>

#include <cstddef>

namespace com::qv {

/*
 * What Service::list does with an element when the application's array gets it. `isUsable` is false for an
 * array that can't take one: that is a mistake of the caller's, and no reason to ask the service.
 */

/** At its index. */
template <size_t kSize>
struct StoreTo {
  static constexpr size_t kElementSize = kSize;
  const vesk_array* array;
  bool isUsable() const { return array != nullptr && array->store != nullptr; }
  bool operator()(int index, const char* element) const {
    array->store(array->context, static_cast<size_t>(index), element, kSize);
    return true;
  }
};

/** Behind the last one. */
template <size_t kSize>
struct AppendTo {
  static constexpr size_t kElementSize = kSize;
  const vesk_array* array;
  bool isUsable() const { return array != nullptr && array->append != nullptr; }
  bool operator()(int, const char* element) const {
    array->append(array->context, element, kSize);
    return true;
  }
};

}  // namespace com::qv
