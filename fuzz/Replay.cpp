/* The main() of the fuzzers where there is no libFuzzer: runs the inputs that are named, and those in the
 * directories that are. */
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "Fuzz.h"

namespace {

void replay(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  FUZZ_CHECK(stream.is_open());
  const std::string contents{std::istreambuf_iterator<char>(stream), {}};
  // In memory of its own, so that the address sanitizer sees a read past the end.
  const std::vector<uint8_t> input(contents.begin(), contents.end());
  if (LLVMFuzzerTestOneInput(input.data(), input.size()) != 0) std::abort();
}

}  // namespace

int main(int argc, char** argv) {
  int count = 0;
  for (const char* name : std::span<char*>(argv, static_cast<size_t>(argc)).subspan(1)) {
    if (!std::filesystem::is_directory(name)) {
      replay(name);
      ++count;
      continue;
    }
    for (const auto& entry : std::filesystem::directory_iterator(name)) {
      replay(entry.path());
      ++count;
    }
  }
  std::printf("%d inputs\n", count);
  return count > 0 ? 0 : 1;
}
