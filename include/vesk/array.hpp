/**
 * @file
 * An adaptor that lets functions read lists of records into a std::vector.
 */
#ifndef VESK_ARRAY_HPP
#define VESK_ARRAY_HPP

#include <cstddef>
#include <cstring>
#include <type_traits>
#include <vector>

#include <vesk/array.h>

namespace vesk {

/**
 * Fills a vector that it does not own. T has the layout of the record; elements of another size are
 * dropped.
 *
 *     struct AlarmLog { char bytes[VESK_ALARM_LOG_SIZE]; };
 *     std::vector<AlarmLog> logs;
 *     if (binder_get_alarm_logs(vesk::VectorArray(logs)) == 0) show(logs);
 *
 * If memory is exhausted, the function that fills the vector throws std::bad_alloc; the vector
 * keeps the elements before.
 */
template <class T>
class VectorArray {
  static_assert(std::is_trivially_copyable_v<T>, "records are copied byte for byte");

 public:
  /** Fills `vector`, which must outlive this object. */
  explicit VectorArray(std::vector<T>& vector) : array_{&vector, store, append} {}

  /** The handle; valid as long as this object. */
  operator const vesk_array*() const { return &array_; }

 private:
  /* A store beyond the end extends the vector, with value-initialised elements in between. */
  static void store(void* context, std::size_t index, const void* element, std::size_t size) {
    if (size != sizeof(T)) return;
    std::vector<T>& vector = *static_cast<std::vector<T>*>(context);
    if (index >= vector.size()) vector.resize(index + 1);
    std::memcpy(&vector[index], element, sizeof(T));
  }

  static void append(void* context, const void* element, std::size_t size) {
    store(context, static_cast<std::vector<T>*>(context)->size(), element, size);
  }

  vesk_array array_;
};

}  // namespace vesk

#endif
