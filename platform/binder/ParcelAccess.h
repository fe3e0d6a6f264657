#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include <binder/IBinder.h>
#include <binder/Parcel.h>

namespace android::transport {

/**
 * A binder in a parcel's contents. It is a placeholder: the parcel's table of objects has the
 * object, and in a frame the table of the frame. A null binder has no entry there and `present` 0.
 */
struct FlatBinder {
  uint32_t type = kType;
  uint32_t present = 0;
  uint64_t reserved[2] = {0, 0};

  static constexpr uint32_t kType = B_PACK_CHARS('s', 'b', '*', '\x85');
};
static_assert(sizeof(FlatBinder) == 24);

/** The transport's access to a parcel. */
class ParcelAccess {
 public:
  using Object = Parcel::Object;

  static std::span<const Object> objects(const Parcel& parcel) { return parcel.objects_; }

  /** Replaces the contents with `size` bytes, which the caller fills; null if there is no memory
   * for them. */
  static uint8_t* prepare(Parcel* parcel, size_t size);

  /** True if there is a non-null FlatBinder at `offset`. */
  static bool hasFlatBinder(const Parcel& parcel, size_t offset);

  /** Sets the objects, in order of offset. */
  static void setObjects(Parcel* parcel, std::vector<Object>&& objects) {
    parcel->objects_ = std::move(objects);
  }
};

}  // namespace android::transport
