#pragma once

#include <new>
#include <utility>

namespace com::qv {

/**
 * Makes an object that is never destroyed. Binder threads still run while a process exits: what they may look
 * at has to outlive the static destructors.
 */
template <class T, class... Args>
T& immortal(Args&&... args) {
  return *new T(std::forward<Args>(args)...);
}

}  // namespace com::qv
