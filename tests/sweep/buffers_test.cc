// Callers' buffers, arrays and records on both machines: nothing is touched outside of them, whatever the sources tell.
#include <gtest/gtest.h>

#include <cstdio>

#include "tests/sweep/chosen.h"
#include "tests/sweep/subject.h"

namespace vexa::test {
namespace {

// Units beyond the documented capacity, which is the least one.
constexpr size_t kExtra[] = {0, 1, 2, 7, 64, 4096};

int CallWithEveryLayout(const Export& one, int machine, bool long_texts) {
  Subject subject(one, machine, false);
  if (long_texts) subject.UseLongTexts();
  int calls = 0;
  for (const GuardedBuffer::At at : {GuardedBuffer::At::kEnd, GuardedBuffer::At::kBegin}) {
    for (const size_t extra : kExtra) {
      subject.Reset();
      const Answer answer = subject.CallAgain({.extra = extra, .at = at});
      ++calls;
      EXPECT_TRUE(answer.faults.empty()) << one.name << " on " << kMachines[machine] << ", " << extra
                                         << " more than asked for: " << Describe(answer);
    }
  }
  subject.Reset();
  (void)subject.CallAgain({.null = true});
  subject.Reset();
  return calls + 1;
}

// Kept: an inventory text is never cut; it may be as long as its capacity says, and longer ones are asked for first.
bool IsNeverCut(const Export& one) { return one.family == "inventory" && one.kind == "text"; }

TEST(CallersBuffers, NothingIsTouchedOutsideOfThem) {
  int calls = 0;
  for (const Export& one : Exports()) {
    if (!IsChosen(one)) continue;
    for (const int machine : {0, 1}) {
      calls += CallWithEveryLayout(one, machine, false);
      if (!IsNeverCut(one)) calls += CallWithEveryLayout(one, machine, true);
    }
  }
  std::printf("%d calls\n", calls);
}

}  // namespace
}  // namespace vexa::test
