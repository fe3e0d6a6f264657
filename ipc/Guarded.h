#pragma once

#include <mutex>

#include "ipc/ShortLock.h"

namespace com::qv {

/** A small value that is replaced as a whole and read by copy, from any thread. Meant to be immortal, as a
 * Slot. */
template <class T>
class Guarded {
 public:
  explicit Guarded(const T& value = {}) : value_(value) {}

  void set(const T& value) {
    const std::lock_guard guard(lock_);
    value_ = value;
  }

  T get() const {
    const std::lock_guard guard(lock_);
    return value_;
  }

  /** One member of the current value. */
  template <class Member, class Owner>
  Member get(Member Owner::*member) const {
    const std::lock_guard guard(lock_);
    return value_.*member;
  }

 private:
  mutable ShortLock lock_;
  T value_;
};

}  // namespace com::qv
