#include <vesk/array.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

/* malloc: C callers need an error, not std::bad_alloc. */

struct vesk_records {
  vesk_array array;
  size_t elementSize;
  unsigned char* bytes;
  size_t count;
  size_t capacity;
  bool complete;
};

namespace {

/** The smallest allocation, in elements. */
constexpr size_t kFirstCapacity = 8;

bool reserve(vesk_records& records, size_t capacity) {
  if (capacity <= records.capacity) return true;
  const size_t most = PTRDIFF_MAX / records.elementSize;
  if (capacity > most) return false;
  capacity = std::min(most, std::max({capacity, records.capacity * 2, kFirstCapacity}));
  void* bytes = std::realloc(records.bytes, capacity * records.elementSize);
  if (bytes == nullptr) return false;
  records.bytes = static_cast<unsigned char*>(bytes);
  records.capacity = capacity;
  return true;
}

void store(void* context, size_t index, const void* element, size_t size) {
  auto& records = *static_cast<vesk_records*>(context);
  if (size != records.elementSize || index == SIZE_MAX || !reserve(records, index + 1)) {
    records.complete = false;
    return;
  }
  if (index >= records.count) {
    std::memset(records.bytes + records.count * size, 0, (index - records.count) * size);
    records.count = index + 1;
  }
  std::memcpy(records.bytes + index * size, element, size);
}

void append(void* context, const void* element, size_t size) {
  store(context, static_cast<vesk_records*>(context)->count, element, size);
}

}  // namespace

vesk_records* vesk_records_create(size_t element_size) {
  if (element_size == 0) return nullptr;
  auto* records = static_cast<vesk_records*>(std::malloc(sizeof(vesk_records)));
  if (records != nullptr) *records = {{records, store, append}, element_size, nullptr, 0, 0, true};
  return records;
}

void vesk_records_free(vesk_records* records) {
  if (records == nullptr) return;
  std::free(records->bytes);
  std::free(records);
}

const vesk_array* vesk_records_array(vesk_records* records) {
  return records == nullptr ? nullptr : &records->array;
}

size_t vesk_records_count(const vesk_records* records) { return records == nullptr ? 0 : records->count; }

const void* vesk_records_element(const vesk_records* records, size_t index) {
  if (index >= vesk_records_count(records)) return nullptr;
  return records->bytes + index * records->elementSize;
}

bool vesk_records_complete(const vesk_records* records) { return records != nullptr && records->complete; }

void vesk_records_clear(vesk_records* records) {
  if (records == nullptr) return;
  records->count = 0;
  records->complete = true;
}
