#include "ipc/Text.h"

#include <cstdio>
#include <cstring>

namespace com::qv {

int Truncate::store(const std::string& text) const {
  if (size > 0) std::snprintf(buffer, static_cast<size_t>(size), "%s", text.c_str());
  return 0;
}

int AllOrNothing::store(const std::string& text) const {
  const size_t length = std::strlen(text.c_str());
  if (size <= 0 || static_cast<size_t>(size) <= length) return -1;
  std::memcpy(buffer, text.c_str(), length + 1);
  return 0;
}

int TruncateZeroFill::store(const std::string& text) const {
  if (text.empty()) return onEmpty;
  if (size > 0) {
    const size_t last = static_cast<size_t>(size) - 1;
    std::strncpy(buffer, text.c_str(), last);
    buffer[last] = '\0';
  }
  return 0;
}

int Unchecked::store(const std::string& text) const {
  std::strcpy(buffer, text.c_str());
  return 0;
}

}  // namespace com::qv
