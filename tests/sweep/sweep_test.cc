// Every export on both routes: each call to the system failing in six ways, everything from it on, each allocation.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "tests/sweep/allowed.h"
#include "tests/sweep/chosen.h"
#include "tests/sweep/subject.h"

namespace vexa::test {
namespace {

// Of one export's calls, and of its allocations, at most so many are made to fail one by one: the first half of them in
// a row, the others spread over the rest. 0: all.
size_t Limit() {
  const char* const text = std::getenv("VEXA_SWEEP_LIMIT");
  return text == nullptr ? 40 : std::strtoul(text, nullptr, 10);
}

std::vector<size_t> Chosen(size_t count) {
  const size_t limit = Limit();
  std::vector<size_t> chosen;
  if (limit == 0 || count <= limit) {
    for (size_t i = 0; i < count; ++i) chosen.push_back(i);
    return chosen;
  }
  for (size_t i = 0; i < limit / 2; ++i) chosen.push_back(i);
  const size_t rest = limit - limit / 2;
  for (size_t i = 0; i < rest; ++i) chosen.push_back(limit / 2 + i * (count - limit / 2) / rest);
  return chosen;
}

constexpr int kShown = 8;  // faults of one export

class Sweep {
 public:
  Sweep(const Export& one, int machine, bool tracing)
      : export_(one), machine_(machine), subject_(one, machine, tracing), good_(subject_.Run({})) {
    const std::string where = std::string(one.name) + " on " + kMachines[machine];
    EXPECT_TRUE(good_.faults.empty()) << where << ": " << good_.faults[0];
    EXPECT_EQ(subject_.Run({}).answer, good_.answer) << where << " answers differently the second time";
  }

  void FailCalls() {
    for (const size_t index : Chosen(good_.call_count)) {
      for (const Failure failure : kAllFailures) Run({Plan::What::kCall, index, failure});
      Run({Plan::What::kCallsFrom, index, kAllFailures[index % std::size(kAllFailures)]});
    }
  }
  void FailAllocations() {
    for (const size_t index : Chosen(good_.allocation_count)) {
      Run({Plan::What::kAllocation, index, Failure::kNoMemory});
      Run({Plan::What::kAllocationsFrom, index, Failure::kNoMemory});
    }
  }

  const Outcome& good() const { return good_; }
  size_t injected() const { return injected_; }

 private:
  void Run(const Plan& plan) {
    const Outcome outcome = subject_.Run(plan);
    if (outcome.injected) ++injected_;
    std::vector<std::string> faults = outcome.faults;
    const std::string refused = WhyNotAllowed(export_, machine_, plan, good_.answer, outcome.answer);
    if (!refused.empty()) faults.push_back(refused);
    for (const std::string& fault : faults) {
      if (++shown_ <= kShown) ADD_FAILURE() << outcome.what << ": " << fault;
    }
  }

  const Export& export_;
  int machine_;
  Subject subject_;
  Outcome good_;
  size_t injected_ = 0;
  int shown_ = 0;
};

TEST(FailureSweep, EveryExportOnBothRoutes) {
  size_t total = 0;
  for (const Export& one : Exports()) {
    if (!IsChosen(one)) continue;
    for (const int machine : {0, 1}) {
      size_t injected = 0;
      {
        // Lines are built, and allocate, only while somebody listens.
        Sweep traced(one, machine, true);
        traced.FailAllocations();
        injected += traced.injected();
        std::printf("%-52s %-5s %6zu allocations ", one.name, kMachines[machine], traced.good().allocation_count);
      }
      Sweep sweep(one, machine, false);
      sweep.FailCalls();
      injected += sweep.injected();
      total += injected;
      std::printf("%5zu calls %6zu failures  %.60s\n", sweep.good().call_count, injected,
                  Describe(sweep.good().answer).c_str());
      std::fflush(stdout);
    }
  }
  std::printf("%zu failures injected\n", total);
}

}  // namespace
}  // namespace vexa::test
