#pragma once

#include <mutex>
#include <type_traits>

namespace com::qv {

/** A small value that any thread replaces as a whole or reads by copy. It has no destructor: events
 * may still read it while the process exits. */
template <class T>
class Synchronized {
  static_assert(std::is_trivially_destructible_v<T> && std::is_trivially_destructible_v<std::mutex>);

 public:
  constexpr explicit Synchronized(const T& value = {}) : value_(value) {}

  void set(const T& value) {
    const std::lock_guard lock(mutex_);
    value_ = value;
  }

  /** One member of the current value. */
  template <class Member, class Owner>
  Member get(Member Owner::*member) const {
    const std::lock_guard lock(mutex_);
    return value_.*member;
  }

 private:
  mutable std::mutex mutex_;
  T value_;
};

}  // namespace com::qv
