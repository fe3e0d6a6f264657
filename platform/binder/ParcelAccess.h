#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include <binder/IBinder.h>
#include <binder/Parcel.h>

namespace android::transport {

/**
 * What stands in a parcel's contents for a binder. It only holds the place: which object it is, the parcel's
 * own table tells, and on its way to another process the frame's. A null binder has no entry there and
 * `present` 0.
 */
struct FlatBinder {
  uint32_t type = kType;
  uint32_t present = 0;
  uint64_t reserved[2] = {0, 0};

  static constexpr uint32_t kType = B_PACK_CHARS('s', 'b', '*', '\x85');
};
static_assert(sizeof(FlatBinder) == 24);

/** The transport's way into a parcel. */
class ParcelAccess {
 public:
  using Object = Parcel::Object;

  static std::span<const Object> objects(const Parcel& parcel) { return parcel.objects_; }

  /** Empties the parcel and makes room for `size` bytes, which the caller fills; null if there is no memory
   * for them. */
  static uint8_t* prepare(Parcel* parcel, size_t size);

  /** Whether a FlatBinder of an object stands at `offset`. */
  static bool hasFlatBinder(const Parcel& parcel, size_t offset);

  /** Gives the parcel its objects, in order of offset. */
  static void setObjects(Parcel* parcel, std::vector<Object>&& objects) {
    parcel->objects_ = std::move(objects);
  }
};

}  // namespace android::transport
