#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "ChildProcess.h"

namespace vesk::test {

/** Waits until `condition` holds. Fails the test at the timeout. */
template <class Condition>
void waitUntil(const char* what, Condition condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(kTimeoutMs);
  while (!condition()) {
    ASSERT_LT(std::chrono::steady_clock::now(), deadline) << "timed out: " << what;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

}  // namespace vesk::test
