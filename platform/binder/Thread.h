#pragma once

#include <signal.h>

#include <functional>

namespace android::transport {

/** Runs `work` on a detached thread with that signal mask. False if there can be no more
 * threads. */
bool startThread(const char* name, const sigset_t& mask, std::function<void()> work);

}  // namespace android::transport
