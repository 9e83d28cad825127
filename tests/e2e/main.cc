// Tests of the shipped library on the simulated notebook; run.sh prepares what they need.
#include <gtest/gtest.h>

#include <string_view>

#include "tests/e2e/peer.h"

int main(int argc, char** argv) {
  if (argc > 1 && std::string_view(argv[1]) == "--peer") return vexa::test::PlayPeer();
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
