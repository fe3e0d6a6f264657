// Status codes that the platform's calls return.
#pragma once

#include <errno.h>
#include <stdint.h>

#include <string>

namespace android {

using status_t = int32_t;

// A code with a counterpart in errno is its negative; the others start at the lowest int32.
enum {
  OK = 0,
  NO_ERROR = OK,

  UNKNOWN_ERROR = INT32_MIN,

  NO_MEMORY = -ENOMEM,
  INVALID_OPERATION = -ENOSYS,
  BAD_VALUE = -EINVAL,
  BAD_TYPE = UNKNOWN_ERROR + 1,
  NAME_NOT_FOUND = -ENOENT,
  PERMISSION_DENIED = -EPERM,
  NO_INIT = -ENODEV,
  ALREADY_EXISTS = -EEXIST,
  DEAD_OBJECT = -EPIPE,
  FAILED_TRANSACTION = UNKNOWN_ERROR + 2,
  BAD_INDEX = -EOVERFLOW,
  NOT_ENOUGH_DATA = -ENODATA,
  WOULD_BLOCK = -EWOULDBLOCK,
  TIMED_OUT = -ETIMEDOUT,
  UNKNOWN_TRANSACTION = -EBADMSG,
  FDS_NOT_ALLOWED = UNKNOWN_ERROR + 7,
  UNEXPECTED_NULL = UNKNOWN_ERROR + 8,
};

// The code's name, for example "DEAD_OBJECT"; for other codes the text of errno and the number.
std::string statusToString(status_t status);

}  // namespace android
