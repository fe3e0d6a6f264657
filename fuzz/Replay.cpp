/* The main() of the fuzzers without libFuzzer: runs the given input files, and those in the given
 * directories. */
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "Fuzz.h"

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  std::vector<fs::path> files;
  for (const char* name : std::span<char*>(argv, static_cast<size_t>(argc)).subspan(1)) {
    if (fs::is_directory(name)) {
      files.insert(files.end(), fs::directory_iterator(name), fs::directory_iterator());
    } else {
      files.emplace_back(name);
    }
  }
  for (const fs::path& file : files) {
    std::ifstream stream(file, std::ios::binary);
    FUZZ_CHECK(stream.is_open());
    // A vector of exact size, so that the address sanitizer reports a read past the end.
    const std::string contents{std::istreambuf_iterator<char>(stream), {}};
    const std::vector<uint8_t> input(contents.begin(), contents.end());
    FUZZ_CHECK(LLVMFuzzerTestOneInput(input.data(), input.size()) == 0);
  }
  std::printf("%zu inputs\n", files.size());
  return files.empty() ? 1 : 0;
}
