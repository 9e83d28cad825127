// Tests of the shipped library on the simulated notebook; run.sh prepares what they need.
#include <gtest/gtest.h>

#include <string_view>

#include "tests/e2e/peer.h"

int main(int argc, char** argv) {
  constexpr std::string_view kRole = "--role=";
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument.starts_with(kRole)) return vexa::test::PlayRole(std::string(argument.substr(kRole.size())));
  }
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
