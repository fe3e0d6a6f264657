#include "SharedSlots.h"

#include <fcntl.h>
#include <linux/futex.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <utility>

namespace android::transport {

namespace {

constexpr size_t kSize = 2 * sizeof(SharedSlot);
/** Neither side can take away memory that the other uses. */
constexpr int kSeals = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL;

/** The time of this system call, which is not always that of the C library. */
struct FutexTime {
  long seconds;
  long nanoseconds;
};

FutexTime futexTimeOf(std::chrono::steady_clock::time_point time) {
  const auto sinceStart = time.time_since_epoch();
  const auto seconds = std::chrono::floor<std::chrono::seconds>(sinceStart);
  const std::chrono::nanoseconds rest = sinceStart - seconds;
  return {static_cast<long>(seconds.count()), static_cast<long>(rest.count())};
}

}  // namespace

bool SharedSlot::sleep(uint32_t awake, uint32_t asleep, const Deadline& deadline) {
  const FutexTime until = deadline ? futexTimeOf(*deadline) : FutexTime{};
  const long slept = ::syscall(SYS_futex, &state_, FUTEX_WAIT_BITSET, asleep, deadline ? &until : nullptr,
                               nullptr, FUTEX_BITSET_MATCH_ANY);
  if (slept == 0 || errno != ETIMEDOUT) return true;
  state_.compare_exchange_strong(asleep, awake);
  return false;
}

void SharedSlot::rouse(uint32_t asleep, uint32_t awake) {
  state_.compare_exchange_strong(asleep, awake);
  wake();
}

void SharedSlot::wake() { ::syscall(SYS_futex, &state_, FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0); }

SharedSlots::SharedSlots(SharedSlots&& other) noexcept { *this = std::move(other); }

SharedSlots& SharedSlots::operator=(SharedSlots&& other) noexcept {
  std::swap(memory_, other.memory_);
  std::swap(in_, other.in_);
  std::swap(out_, other.out_);
  return *this;
}

SharedSlots::~SharedSlots() {
  if (memory_ != nullptr) ::munmap(memory_, kSize);
}

SharedSlots SharedSlots::map(int fd) {
  SharedSlots result;
  void* const memory = ::mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
  if (memory == MAP_FAILED) return result;
  // New memory is zero, which is an idle shared slot.
  result.memory_ = static_cast<SharedSlot*>(memory);
  result.in_ = result.memory_;
  result.out_ = result.memory_ + 1;
  return result;
}

SharedSlots SharedSlots::make(UniqueFd* shared) {
  // Above the limit on the size of files, the kernel would end the process by SIGXFSZ.
  rlimit limit;
  if (::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur < kSize) {
    errno = EFBIG;
    return {};
  }
  UniqueFd fd(::memfd_create("binder-slots", MFD_CLOEXEC | MFD_ALLOW_SEALING));
  // Reserves the memory: a page that can't be had later would end the process by SIGBUS.
  if (!fd.valid() || ::fallocate(fd.get(), 0, 0, kSize) < 0 || ::fcntl(fd.get(), F_ADD_SEALS, kSeals) < 0)
    return {};
  *shared = std::move(fd);
  return map(shared->get());
}

SharedSlots SharedSlots::accept(const UniqueFd& shared) {
  struct stat info;
  const int seals = shared.valid() ? ::fcntl(shared.get(), F_GET_SEALS) : -1;
  if (seals < 0 || (seals & kSeals) != kSeals || ::fstat(shared.get(), &info) < 0 ||
      info.st_size != off_t{kSize}) {
    return {};
  }
  SharedSlots result = map(shared.get());
  std::swap(result.in_, result.out_);
  return result;
}

}  // namespace android::transport
