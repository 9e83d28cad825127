// What is held after very many calls of every export.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>

#include "tests/sweep/chosen.h"
#include "tests/sweep/subject.h"

namespace vexa::test {
namespace {

using Held = std::map<std::string, int>;

int Calls() {
  const char* const text = std::getenv("VEXA_SWEEP_CALLS");
  return text == nullptr ? 1000 : std::atoi(text);
}

Held Growth(const Held& before, const Held& after) {
  Held growth = after;
  for (const auto& [kind, count] : before) growth[kind] -= count;
  std::erase_if(growth, [](const auto& one) { return one.second == 0; });
  return growth;
}

// Exports that answer from a snapshot: a later call collects nothing.
bool HasSnapshot(const Export& one) { return one.family == "wifi" || one.family == "peripherals"; }

TEST(Leaks, NothingGrowsOverManyCallsOfAnyExport) {
  long total = 0;
  for (const Export& one : Exports()) {
    if (!IsChosen(one)) continue;
    for (const int machine : {0, 1}) {
      Subject subject(one, machine, false);
      for (int i = 0; i < 2; ++i) (void)subject.CallAgain();
      const Held before = subject.Held();
      for (int i = 0; i < Calls(); ++i) {
        (void)subject.CallAgain();
        if (i % 64 == 0) (void)subject.Held();
      }
      EXPECT_EQ(Growth(before, subject.Held()), Held()) << one.name << " on " << kMachines[machine];
      total += Calls();
      subject.Reset();
    }
  }
  std::printf("%ld calls\n", total);
}

// The named list: a collection of the Wi-Fi snapshot leaves the one client open that it opened, and it is collected
// again only after a failure.
TEST(Leaks, EveryCollectionLeavesOneWlanClientAndNothingElse) {
  int clients = 0, collections = 0;
  for (const Export& one : Exports()) {
    if (!IsChosen(one) || !HasSnapshot(one)) continue;
    Subject subject(one, 0, false);
    for (int i = 0; i < Calls() / 20; ++i) {
      const Outcome outcome = subject.Run({});
      EXPECT_TRUE(outcome.faults.empty()) << one.name << ": " << outcome.faults[0];
      clients += outcome.wlan_clients;
      collections += one.family == "wifi" ? 1 : 0;
    }
  }
  EXPECT_EQ(clients, collections);
}

}  // namespace
}  // namespace vexa::test
