#pragma once

#include <vesk/array.h>

#include <cstddef>

#include "ipc/ClientApi.h"

namespace com::qv {

/* The destinations of a list in the application's array. `isUsable` is false for an array without
 * the function that is needed: a mistake of the caller, and no reason for a call. */

/** Stores each element at its index. */
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

/** Appends each element. */
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

/** Calls a method with a list as out-argument. 0, also for a failed call, which is an empty list;
 * -1 without a client, when nothing of the array is read, or with an unusable array. */
template <class Client, class Destination, class Method>
int fill(const ClientApi<Client>& service, Destination destination, Method method) {
  if (service.proxy() == nullptr || !destination.isUsable()) return -1;
  return service.template list<Destination::kElementSize>(destination, method) < 0 ? -1 : 0;
}

}  // namespace com::qv
