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
// The object dies with its last strong reference; after extendObjectLifetime(OBJECT_LIFETIME_WEAK) with its
// last reference of either kind. An object that never had a strong reference is its maker's to delete. All
// functions may be called from any thread; the hooks run on the thread whose reference came or went.
class RefBase {
 public:
  void incStrong(const void* id) const;
  void decStrong(const void* id) const;
  int32_t getStrongCount() const;

  // The counters. They outlive the object as long as there are weak references.
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

    // Low bits: the number of strong references. High bits: kNeverHeld, kLivesWeakly.
    std::atomic<uint32_t> strong_{kNeverHeld};
    // The number of weak references, and one for the object itself, and one for all strong references
    // together.
    std::atomic<uint32_t> weak_{1};
    RefBase* const base_;

    // Set until the first strong reference is taken. It shares the counter's word, so that a promotion can
    // tell an object that is not yet held from one that just died.
    static constexpr uint32_t kNeverHeld = 1u << 31;
    static constexpr uint32_t kLivesWeakly = 1u << 30;
    static constexpr uint32_t kCountMask = kLivesWeakly - 1;
  };

  // The counters, with a weak reference added that the caller must give back with decWeak.
  weakref_type* createWeak(const void* id) const;
  // The counters, without a reference.
  weakref_type* getWeakRefs() const { return refs_; }

  RefBase(const RefBase&) = delete;
  RefBase& operator=(const RefBase&) = delete;

 protected:
  RefBase();
  virtual ~RefBase();

  enum { OBJECT_LIFETIME_STRONG = 0, OBJECT_LIFETIME_WEAK = 1, OBJECT_LIFETIME_MASK = 1 };
  enum { FIRST_INC_STRONG = 1 };

  // OBJECT_LIFETIME_WEAK lets the object live as long as there is any reference. There is no way back.
  void extendObjectLifetime(int32_t mode);

  // Runs once, when the first strong reference was taken, and thus never in a constructor.
  virtual void onFirstRef();
  // The last strong reference went. The object is deleted next unless it lives weakly.
  virtual void onLastStrongRef(const void* id);
  // Asked when an object that lives weakly and has no strong reference is to be promoted. Every yes is
  // followed by an onLastStrongRef: as soon as it turns out that another thread was faster, else with the
  // last strong reference.
  virtual bool onIncStrongAttempted(uint32_t flags, const void* id);
  // The last weak reference of an object that lives weakly went. It is deleted next.
  virtual void onLastWeakRef(const void* id);

 private:
  weakref_type* const refs_;
};

// Pointer that does not keep its object alive. promote() gives a strong pointer, or null once the object is
// dead.
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
  // Converting to a virtual base reads the object, so it must be alive for that; hence by way of a strong
  // reference.
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

// Two weak pointers are equal if they were made from the same object. The counters stand for it: unlike its
// address, theirs is not used again while one of the pointers exists.
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
