#include "Thread.h"

#include <pthread.h>

#include <system_error>
#include <thread>
#include <utility>

namespace android::transport {

bool startThread(const char* name, const sigset_t& mask, std::function<void()> work) {
  sigset_t before;
  pthread_sigmask(SIG_SETMASK, &mask, &before);
  bool started = true;
  try {
    std::thread thread(std::move(work));
    pthread_setname_np(thread.native_handle(), name);
    thread.detach();
  } catch (const std::system_error&) {
    started = false;
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return started;
}

}  // namespace android::transport
