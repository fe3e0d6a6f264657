#include <gtest/gtest.h>

#include <cstddef>

#include "bench/Overhead.h"
#include "bench/Support.h"

/* How often a call asks for memory. All of the program's requests come by here, operator new's
 * among them. */

extern "C" {

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);

static thread_local size_t requests;

void* malloc(size_t size) noexcept {
  ++requests;
  return __libc_malloc(size);
}
void* calloc(size_t count, size_t size) noexcept {
  ++requests;
  return __libc_calloc(count, size);
}
void* realloc(void* memory, size_t size) noexcept {
  ++requests;
  return __libc_realloc(memory, size);
}
}

namespace {

size_t requestsOf(void (*call)()) {
  call();
  const size_t before = requests;
  call();
  return requests - before;
}

TEST(AllocationTest, CallsAllocateForTheirContentsOnly) {
  const vesk::bench::PrivateRuntimeDir runtimeDir;
  vesk::bench::connectToLocalServices();
  for (const auto& one : vesk::bench::overheadCases()) {
    EXPECT_EQ(requestsOf(one.library), one.allocations) << one.name;
  }
}

}  // namespace
