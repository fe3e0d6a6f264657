#include "utils/RefBase.h"

namespace android {

// Decrements are acquire-release, so that whoever deletes has seen all that the other holders did. No
// stand-alone fences: the thread sanitizer does not follow them.

// These run for each copy of a strong pointer; inline, so that it needs no calls through the linker's table.

// Completes the taking of a strong reference, given the word before it was counted.
inline void RefBase::weakref_type::onStrongTaken(uint32_t before) {
  if ((before & kCountMask) == 0) weak_.fetch_add(1, std::memory_order_relaxed);
  if ((before & kNeverHeld) == 0) return;
  // Two threads may both have found it set; the one that clears it was first.
  if ((strong_.fetch_and(~kNeverHeld, std::memory_order_relaxed) & kNeverHeld) != 0) base_->onFirstRef();
}

inline void RefBase::weakref_type::incStrong() {
  onStrongTaken(strong_.fetch_add(1, std::memory_order_relaxed));
}

inline void RefBase::weakref_type::decStrong(const void* id) {
  const uint32_t before = strong_.fetch_sub(1, std::memory_order_acq_rel);
  if ((before & kCountMask) != 1) return;
  base_->onLastStrongRef(id);
  if ((before & kLivesWeakly) == 0) delete base_;
  decWeak(id);
}

RefBase::RefBase() : refs_(new weakref_type(this)) {}

RefBase::~RefBase() {
  // An object on the stack, or deleted by its maker, may leave weak references behind: they find it dead.
  refs_->strong_.store(0, std::memory_order_relaxed);
  refs_->decWeak(this);
}

void RefBase::incStrong(const void*) const { refs_->incStrong(); }

void RefBase::decStrong(const void* id) const { refs_->decStrong(id); }

int32_t RefBase::getStrongCount() const {
  return static_cast<int32_t>(refs_->strong_.load(std::memory_order_relaxed) & weakref_type::kCountMask);
}

RefBase::weakref_type* RefBase::createWeak(const void* id) const {
  refs_->incWeak(id);
  return refs_;
}

void RefBase::extendObjectLifetime(int32_t mode) {
  if ((mode & OBJECT_LIFETIME_MASK) == OBJECT_LIFETIME_WEAK) {
    refs_->strong_.fetch_or(weakref_type::kLivesWeakly, std::memory_order_relaxed);
  }
}

void RefBase::onFirstRef() {}

void RefBase::onLastStrongRef(const void*) {}

bool RefBase::onIncStrongAttempted(uint32_t flags, const void*) { return (flags & FIRST_INC_STRONG) != 0; }

void RefBase::onLastWeakRef(const void*) {}

void RefBase::weakref_type::incWeak(const void*) { weak_.fetch_add(1, std::memory_order_relaxed); }

void RefBase::weakref_type::decWeak(const void* id) {
  // Read first: unless the object lives weakly, these counters may be gone as soon as ours is off.
  const bool livesWeakly = (strong_.load(std::memory_order_relaxed) & kLivesWeakly) != 0;
  const uint32_t left = weak_.fetch_sub(1, std::memory_order_acq_rel) - 1;
  if (left == 0) {
    delete this;
  } else if (left == 1 && livesWeakly) {
    // What is left is the object's own; the object gives it back in its destructor.
    base_->onLastWeakRef(id);
    delete base_;
  }
}

bool RefBase::weakref_type::attemptIncStrong(const void* id) {
  bool asked = false;
  uint32_t before = strong_.load(std::memory_order_relaxed);
  do {
    if ((before & kCountMask) != 0 || asked) continue;
    if ((before & kLivesWeakly) != 0) {
      if (!base_->onIncStrongAttempted(FIRST_INC_STRONG, id)) return false;
      asked = true;
    } else if ((before & kNeverHeld) == 0) {
      return false;
    }
  } while (!strong_.compare_exchange_weak(before, before + 1, std::memory_order_acq_rel,
                                          std::memory_order_relaxed));
  if (asked && (before & kCountMask) != 0) base_->onLastStrongRef(id);
  onStrongTaken(before);
  return true;
}

}  // namespace android
