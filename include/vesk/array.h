/**
 * @file
 * How the functions that read lists of records hand these to the application: through two operations over an
 * array of the application's own. For applications without a suitable array type there is a ready-made one,
 * vesk_records; C++ programs find an adaptor over std::vector in <vesk/array.hpp>.
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
 * An array of the application's, as the library sees it. A function uses one of the two operations, as its
 * comment says; the other may be null. It calls it on the calling thread, once for each element, in order,
 * and doesn't keep the handle.
 *
 * Both operations have to copy the `size` bytes at `element`, which are gone when the function returns.
 * `element` has no particular alignment. What an operation does without room for the element is its own
 * affair: the library isn't told.
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
  /** Passed to both operations; nothing to the library. */
  void* context;
  /** Puts an element at an index, which counts from 0. */
  void (*store)(void* context, size_t index, const void* element, size_t size);
  /** Puts an element behind the last one. */
  void (*append)(void* context, const void* element, size_t size);
} vesk_array;

/**
 * A growable array of records of one size, for use with the functions that take a vesk_array:
 *
 *     vesk_records* logs = vesk_records_create(VESK_ALARM_LOG_SIZE);
 *     if (binder_get_alarm_logs(vesk_records_array(logs)) == 0) {
 *       for (size_t i = 0; i < vesk_records_count(logs); ++i) show(vesk_records_element(logs, i));
 *     }
 *     vesk_records_free(logs);
 *
 * One thread at a time may use a given array.
 */
typedef struct vesk_records vesk_records;

/**
 * Makes an empty array.
 *
 * @param element_size the size of its elements in bytes
 * @return the array, to be freed with vesk_records_free(); null if element_size is 0 or there is no memory
 */
VESK_API vesk_records* vesk_records_create(size_t element_size);

/**
 * Frees an array and all that it gave out.
 *
 * @param records the array; null does nothing
 */
VESK_API void vesk_records_free(vesk_records* records);

/**
 * The handle with which the library fills the array. Its operations accept elements of exactly the array's
 * element size. Storing beyond the end lets the array grow up to that index; elements in between, which
 * nobody has stored, are zero.
 *
 * @param records the array
 * @return a handle that is valid until the array is freed; null if `records` is null, which the functions
 *         that read lists refuse
 */
VESK_API const vesk_array* vesk_records_array(vesk_records* records);

/**
 * @param records the array
 * @return how many elements it has; 0 if it is null
 */
VESK_API size_t vesk_records_count(const vesk_records* records);

/**
 * Gives one element.
 *
 * @param records the array
 * @param index   from 0
 * @return its bytes, valid until the array is filled further, cleared or freed; null if there is no such
 *         element or no array. The first element is aligned for every type, the others follow without gaps.
 */
VESK_API const void* vesk_records_element(const vesk_records* records, size_t index);

/**
 * Tells whether everything got in.
 *
 * @param records the array
 * @return false if, since the array was made or cleared, an element was dropped because memory ran out or the
 *         element was not of the array's size; the elements before are there. False, too, if there is no
 *         array
 */
VESK_API bool vesk_records_complete(const vesk_records* records);

/**
 * Removes all elements. Functions that append don't do this by themselves.
 *
 * @param records the array; null does nothing
 */
VESK_API void vesk_records_clear(vesk_records* records);

#ifdef __cplusplus
}
#endif

#endif
