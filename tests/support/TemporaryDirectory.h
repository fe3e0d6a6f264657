#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace vesk::test {

/** A new directory; the destructor removes it. */
class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    if (mkdtemp(path_.data()) == nullptr) std::abort();
  }
  ~TemporaryDirectory() { std::filesystem::remove_all(path_); }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_ = (std::filesystem::temp_directory_path() / "vesk-test-XXXXXX").string();
};

}  // namespace vesk::test
