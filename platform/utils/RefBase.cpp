#include "utils/RefBase.h"

namespace android {

// Decrements are acquire-release, so that the thread that deletes sees the writes of all other
// holders. No stand-alone fences: the thread sanitizer does not follow them.

// The next three run for each copy of a strong pointer; inline saves calls through the procedure
// linkage table.

// Completes a new strong reference, given the word before it was counted.
inline void RefBase::weakref_type::onStrongTaken(uint32_t before) {
  if ((before & kNeverHeld) == 0) return;
  // Two threads may both have found it set; the one that clears it was first.
  if ((strong_.fetch_and(~kNeverHeld, std::memory_order_relaxed) & kNeverHeld) != 0) base_->onFirstRef();
}

inline void RefBase::weakref_type::incStrong() {
  onStrongTaken(strong_.fetch_add(1, std::memory_order_relaxed));
}

inline void RefBase::weakref_type::decStrong(const void* id) {
  if (strong_.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
  base_->onLastStrongRef(id);
  delete base_;
}

RefBase::RefBase() : refs_(new weakref_type(this)) {}

RefBase::~RefBase() {
  // An object on the stack may leave weak references behind: promotions find it dead.
  refs_->strong_.store(0, std::memory_order_relaxed);
  refs_->decWeak(this);
}

void RefBase::incStrong(const void*) const { refs_->incStrong(); }

void RefBase::decStrong(const void* id) const { refs_->decStrong(id); }

int32_t RefBase::getStrongCount() const {
  return static_cast<int32_t>(refs_->strong_.load(std::memory_order_relaxed) & ~weakref_type::kNeverHeld);
}

RefBase::weakref_type* RefBase::createWeak(const void* id) const {
  refs_->incWeak(id);
  return refs_;
}

void RefBase::onFirstRef() {}

void RefBase::onLastStrongRef(const void*) {}

void RefBase::weakref_type::incWeak(const void*) { weak_.fetch_add(1, std::memory_order_relaxed); }

void RefBase::weakref_type::decWeak(const void*) {
  if (weak_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

bool RefBase::weakref_type::attemptIncStrong(const void*) {
  uint32_t before = strong_.load(std::memory_order_relaxed);
  do {
    if (before == 0) return false;
  } while (!strong_.compare_exchange_weak(before, before + 1, std::memory_order_acq_rel,
                                          std::memory_order_relaxed));
  onStrongTaken(before);
  return true;
}

}  // namespace android
