#include <gtest/gtest.h>

#include "ChildProcess.h"

int main(int argc, char** argv) {
  int exitCode = 0;
  if (vesk::test::runRole(argc, argv, &exitCode)) return exitCode;

  testing::InitGoogleTest(&argc, argv);
  const vesk::test::PrivateRuntimeDir runtimeDir;
  return RUN_ALL_TESTS();
}
