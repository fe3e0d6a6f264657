#include "utils/Errors.h"

#include <string.h>

namespace android {

std::string statusToString(status_t status) {
  switch (status) {
#define NAME(code) \
  case code:       \
    return #code
    NAME(OK);
    NAME(UNKNOWN_ERROR);
    NAME(NO_MEMORY);
    NAME(INVALID_OPERATION);
    NAME(BAD_VALUE);
    NAME(BAD_TYPE);
    NAME(NAME_NOT_FOUND);
    NAME(PERMISSION_DENIED);
    NAME(NO_INIT);
    NAME(ALREADY_EXISTS);
    NAME(DEAD_OBJECT);
    NAME(FAILED_TRANSACTION);
    NAME(BAD_INDEX);
    NAME(NOT_ENOUGH_DATA);
    NAME(WOULD_BLOCK);
    NAME(TIMED_OUT);
    NAME(UNKNOWN_TRANSACTION);
    NAME(FDS_NOT_ALLOWED);
    NAME(UNEXPECTED_NULL);
#undef NAME
    default:
      break;
  }
  // Null for a number that is no errno. The lowest int32 can't be negated.
  const char* const description = status < 0 && status > UNKNOWN_ERROR ? strerrordesc_np(-status) : nullptr;
  const std::string number = std::to_string(status);
  return description == nullptr ? "Unknown status " + number : description + (" (" + number + ")");
}

}  // namespace android
