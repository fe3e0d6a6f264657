#pragma once

#include <stdint.h>

#include <atomic>
#include <compare>
#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

#include "utils/StrongPointer.h"

namespace android {

// Base of every object that is held through sp and wp. Derive with plain or virtual inheritance.
//
// Releasing the last strong reference deletes the object. An object that never had one is deleted by its
// creator. All functions may be called from any thread; a hook runs on the thread that takes or
// drops the reference.
class RefBase {
 public:
  void incStrong(const void* id) const;
  void decStrong(const void* id) const;
  int32_t getStrongCount() const;

  // The counters. They exist as long as the object or a weak reference does.
  class weakref_type {
   public:
    // The object's address, which may be that of a dead object.
    RefBase* refBase() const { return base_; }

    void incWeak(const void* id);
    void decWeak(const void* id);

    // Takes a strong reference for the holder of a weak one; false if the object is dead.
    bool attemptIncStrong(const void* id);

   private:
    friend class RefBase;

    explicit weakref_type(RefBase* base) : base_(base) {}
    ~weakref_type() = default;

    void incStrong();
    void decStrong(const void* id);
    void onStrongTaken(uint32_t before);

    // Set in strong_ until the first strong reference is taken. In the counter's own word, so that
    // a promotion distinguishes an object without a reference yet from one that just died.
    static constexpr uint32_t kNeverHeld = 1u << 31;

    // The number of strong references.
    std::atomic<uint32_t> strong_{kNeverHeld};
    // The number of weak references, plus one for the object itself.
    std::atomic<uint32_t> weak_{1};
    RefBase* const base_;
  };

  // Adds a weak reference, which the caller drops with decWeak, and returns the counters.
  weakref_type* createWeak(const void* id) const;
  // The counters, without a reference.
  weakref_type* getWeakRefs() const { return refs_; }

  RefBase(const RefBase&) = delete;
  RefBase& operator=(const RefBase&) = delete;

 protected:
  RefBase();
  virtual ~RefBase();

  // Runs once, after the first strong reference is taken. Don't take one in a constructor.
  virtual void onFirstRef();
  // Runs after the last strong reference was dropped. The object is deleted next.
  virtual void onLastStrongRef(const void* id);

 private:
  weakref_type* const refs_;
};

// Pointer that does not keep its object alive. promote() returns a strong pointer, or null once the
// object is dead.
template <typename T>
class wp {
 public:
  wp() = default;
  wp(std::nullptr_t) {}
  wp(T* object) : object_(object), refs_(object != nullptr ? object->createWeak(this) : nullptr) {}
  wp(const sp<T>& other) : wp(other.get()) {}
  wp(const wp& other) : object_(other.object_), refs_(other.refs_) { acquire(); }
  wp(wp&& other) noexcept
      : object_(std::exchange(other.object_, nullptr)), refs_(std::exchange(other.refs_, nullptr)) {}
  template <typename U>
  requires std::is_convertible_v<U*, T*> wp(const sp<U>& other) : wp(static_cast<T*>(other.get())) {}
  // The conversion to a virtual base reads the object, so it holds a strong reference meanwhile.
  template <typename U>
  wp(const wp<U>& other) : wp(sp<T>(other.promote())) {}
  ~wp() {
    if (refs_ != nullptr) refs_->decWeak(this);
  }

  wp& operator=(const wp& other) {
    wp(other).swap(*this);
    return *this;
  }
  wp& operator=(wp&& other) noexcept {
    wp(std::move(other)).swap(*this);
    return *this;
  }

  sp<T> promote() const {
    if (refs_ == nullptr || !refs_->attemptIncStrong(this)) return nullptr;
    return sp<T>::adopt(object_);
  }

  void clear() { wp().swap(*this); }
  void swap(wp& other) noexcept {
    std::swap(object_, other.object_);
    std::swap(refs_, other.refs_);
  }

  // The address, for comparisons only: the object may be dead.
  T* unsafe_get() const { return object_; }
  RefBase::weakref_type* get_refs() const { return refs_; }

 private:
  void acquire() {
    if (refs_ != nullptr) refs_->incWeak(this);
  }

  T* object_ = nullptr;
  RefBase::weakref_type* refs_ = nullptr;
};

// Two weak pointers are equal if they were made from the same object. This compares the counters:
// their address, unlike the object's, is not reused while one of the pointers exists.
template <typename T, typename U>
bool operator==(const wp<T>& a, const wp<U>& b) {
  return a.get_refs() == b.get_refs();
}
template <typename T, typename U>
bool operator==(const wp<T>& a, const sp<U>& b) {
  return a.get_refs() == (b == nullptr ? nullptr : b->getWeakRefs());
}
template <typename T>
bool operator==(const wp<T>& a, std::nullptr_t) {
  return a.get_refs() == nullptr;
}
template <typename T>
std::strong_ordering operator<=>(const wp<T>& a, const wp<T>& b) {
  return std::compare_three_way()(a.get_refs(), b.get_refs());
}

}  // namespace android
