#pragma once

#include <stddef.h>
#include <sys/types.h>

#include <utility>
#include <vector>

namespace android {

// The platform's dynamic array. An index out of range is undefined, as in std::vector.
template <typename T>
class Vector {
 public:
  size_t size() const { return items_.size(); }
  bool isEmpty() const { return items_.empty(); }
  bool empty() const { return items_.empty(); }

  const T& operator[](size_t index) const { return items_[index]; }
  const T& itemAt(size_t index) const { return items_[index]; }
  const T* array() const { return items_.data(); }

  // Appends the item; gives its index.
  ssize_t add(const T& item) {
    items_.push_back(item);
    return static_cast<ssize_t>(items_.size() - 1);
  }
  void push_back(const T& item) { items_.push_back(item); }
  void clear() { items_.clear(); }

  const T* begin() const { return items_.data(); }
  const T* end() const { return items_.data() + items_.size(); }

 private:
  std::vector<T> items_;
};

}  // namespace android
