#pragma once

#include <mutex>

#include "ipc/FutexMutex.h"

namespace com::qv {

/** A small value that is replaced as a whole and read by copy, from any thread. Meant to be immortal, as a
 * Slot. */
template <class T>
class Synchronized {
 public:
  explicit Synchronized(const T& value = {}) : value_(value) {}

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
  mutable FutexMutex lock_;
  T value_;
};

}  // namespace com::qv
