#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

namespace android {

// Owning pointer to an object with a reference count of its own (see RefBase). The pointer itself
// is not thread-safe: copying an sp while another thread assigns to it is a race.
template <typename T>
class sp {
 public:
  sp() = default;
  sp(std::nullptr_t) {}
  sp(T* object) : object_(object) { acquire(); }
  sp(const sp& other) : sp(other.object_) {}
  sp(sp&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  template <typename U>
  requires std::is_convertible_v<U*, T*> sp(const sp<U>& other) : object_(other.object_) { acquire(); }
  template <typename U>
  requires std::is_convertible_v<U*, T*> sp(sp<U>&& other) : object_(std::exchange(other.object_, nullptr)) {}
  ~sp() { release(); }

  // Creates an object and takes its first reference.
  template <typename... Args>
  static sp make(Args&&... args) {
    return sp(new T(std::forward<Args>(args)...));
  }
  // A further reference to an object that has one.
  static sp fromExisting(T* object) { return sp(object); }

  sp& operator=(const sp& other) {
    sp(other).swap(*this);
    return *this;
  }
  sp& operator=(sp&& other) noexcept {
    sp(std::move(other)).swap(*this);
    return *this;
  }
  sp& operator=(T* object) {
    sp(object).swap(*this);
    return *this;
  }

  void clear() { sp().swap(*this); }
  void swap(sp& other) noexcept { std::swap(object_, other.object_); }

  T* get() const { return object_; }
  T& operator*() const { return *object_; }
  T* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  template <typename U>
  friend class sp;
  template <typename U>
  friend class wp;

  // Takes over a reference that is already counted.
  static sp adopt(T* object) {
    sp held;
    held.object_ = object;
    return held;
  }

  // The pointer's address identifies the reference; RefBase passes it to its hooks.
  void acquire() {
    if (object_ != nullptr) object_->incStrong(this);
  }
  void release() {
    if (object_ != nullptr) object_->decStrong(this);
  }

  T* object_ = nullptr;
};

template <typename T, typename U>
bool operator==(const sp<T>& a, const sp<U>& b) {
  return a.get() == b.get();
}
template <typename T, typename U>
bool operator==(const sp<T>& a, const U* b) {
  return a.get() == b;
}
template <typename T>
bool operator==(const sp<T>& a, std::nullptr_t) {
  return a.get() == nullptr;
}
// A total order, so that strong pointers can be keys of a map.
template <typename T>
std::strong_ordering operator<=>(const sp<T>& a, const sp<T>& b) {
  return std::compare_three_way()(a.get(), b.get());
}

}  // namespace android
