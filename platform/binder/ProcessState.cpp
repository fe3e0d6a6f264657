#include <binder/ProcessState.h>

#include "Transport.h"

namespace android {

sp<ProcessState> ProcessState::self() {
  static const sp<ProcessState>& state = *new sp<ProcessState>(new ProcessState());
  return state;
}

void ProcessState::startThreadPool() {
  std::atomic<bool>& started = transport::Transport::self().poolStarted;
  started.store(true);
  started.notify_all();
}

}  // namespace android
