/**
 * @file
 * The arrays into which functions read lists of records. vesk_array adapts an array type of the
 * application, vesk_records is a ready-made one, and <vesk/array.hpp> adapts std::vector.
 */
#ifndef VESK_ARRAY_H
#define VESK_ARRAY_H

#include <stdbool.h>
#include <stddef.h>

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * The library's view of an array of the application. A function uses one of the two operations, as
 * its comment says; the other may be null. The function calls the operation on the calling thread,
 * once for each element, in order, and does not keep the handle.
 *
 * An operation must copy the `size` bytes at `element`, which are valid only until it returns and
 * may be unaligned. It cannot report an error: an operation without room for the element drops it.
 *
 *     struct logs {
 *       char entries[100][VESK_ALARM_LOG_SIZE];
 *       size_t count;
 *     };
 *
 *     static void append_log(void* context, const void* element, size_t size) {
 *       struct logs* logs = context;
 *       if (logs->count < 100) memcpy(logs->entries[logs->count++], element, size);
 *     }
 *
 *     struct logs logs = {.count = 0};
 *     const vesk_array array = {.context = &logs, .append = append_log};
 *     if (binder_get_alarm_logs(&array) == 0) show(&logs);
 */
typedef struct vesk_array {
  /** Passed to both operations. */
  void* context;
  /** Puts an element at an index from 0. */
  void (*store)(void* context, size_t index, const void* element, size_t size);
  /** Puts an element behind the last one. */
  void (*append)(void* context, const void* element, size_t size);
} vesk_array;

/**
 * A growable array of records of one size, for the functions that take a vesk_array:
 *
 *     vesk_records* logs = vesk_records_create(VESK_ALARM_LOG_SIZE);
 *     if (binder_get_alarm_logs(vesk_records_array(logs)) == 0) {
 *       for (size_t i = 0; i < vesk_records_count(logs); ++i) show(vesk_records_element(logs, i));
 *     }
 *     vesk_records_free(logs);
 *
 * Only one thread at a time may use an array.
 */
typedef struct vesk_records vesk_records;

/**
 * Creates an empty array of elements of `element_size` bytes.
 *
 * @return the array, to be freed with vesk_records_free(); null if `element_size` is 0 or memory is
 *         exhausted
 */
VESK_API vesk_records* vesk_records_create(size_t element_size);

/** Frees an array and its elements; null does nothing. */
VESK_API void vesk_records_free(vesk_records* records);

/**
 * Returns the handle through which the library fills the array. Its operations accept only elements
 * of the array's element size. A store beyond the end extends the array to that index, with zeros
 * as the elements in between.
 *
 * @return a handle that is valid until the array is freed; null if `records` is null
 */
VESK_API const vesk_array* vesk_records_array(vesk_records* records);

/** Returns the number of elements; 0 if `records` is null. */
VESK_API size_t vesk_records_count(const vesk_records* records);

/**
 * Returns the element at an index from 0.
 *
 * @return its bytes, valid until the array is filled further, cleared or freed; null if there is no
 *         such element or `records` is null. The first element is aligned for every type, the
 *         others follow without gaps.
 */
VESK_API const void* vesk_records_element(const vesk_records* records, size_t index);

/**
 * Returns whether the array holds every element that was stored or appended.
 *
 * @return false if, since the array was created or cleared, an element was dropped because memory
 *         was exhausted or because it had another size than the array's elements; false if
 *         `records` is null
 */
VESK_API bool vesk_records_complete(const vesk_records* records);

/** Removes all elements, which functions that append do not do; null does nothing. */
VESK_API void vesk_records_clear(vesk_records* records);

#ifdef __cplusplus
}
#endif

#endif
