#pragma once

#include <utils/RefBase.h>

namespace android {

/** The process's side of the binder transport. */
class ProcessState : public virtual RefBase {
 public:
  static sp<ProcessState> self();

  /**
   * Starts the binder threads. Until this or IPCThreadState::joinThreadPool has been called,
   * incoming transactions wait. Further calls do nothing.
   */
  void startThreadPool();

 private:
  friend class IPCThreadState;
  ProcessState() = default;
  ~ProcessState() override = default;
};

}  // namespace android
