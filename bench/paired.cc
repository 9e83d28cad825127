#include "bench/paired.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "tests/support/allocations.h"

namespace vexa {
namespace {

int64_t Time(void (*call)(), int count) {
  LARGE_INTEGER begin, end;
  QueryPerformanceCounter(&begin);
  for (int i = 0; i < count; ++i) call();
  QueryPerformanceCounter(&end);
  return end.QuadPart - begin.QuadPart;
}

double At(const std::vector<double>& sorted, double part) {
  return sorted[static_cast<size_t>(part * static_cast<double>(sorted.size() - 1))];
}

size_t AllocationsOf(void (*call)()) {
  const size_t before = test::AllocationCount();
  call();
  return test::AllocationCount() - before;
}

}  // namespace

bool Compare(const Comparison& comparison) {
  std::vector<double> ratios, library_us, bare_us;
  LARGE_INTEGER frequency;
  QueryPerformanceFrequency(&frequency);
  const double us_per_tick = 1e6 / static_cast<double>(frequency.QuadPart);
  const int calls = comparison.calls_per_block;
  Time(comparison.library, calls);
  Time(comparison.bare, calls);
  for (int pair = 0; pair < comparison.pairs; ++pair) {
    int64_t library_ticks = 0, bare_ticks = 0;
    if (pair % 2 == 0) {
      library_ticks = Time(comparison.library, calls);
      bare_ticks = Time(comparison.bare, calls);
    } else {
      bare_ticks = Time(comparison.bare, calls);
      library_ticks = Time(comparison.library, calls);
    }
    ratios.push_back(static_cast<double>(library_ticks) / static_cast<double>(bare_ticks));
    library_us.push_back(static_cast<double>(library_ticks) * us_per_tick / calls);
    bare_us.push_back(static_cast<double>(bare_ticks) * us_per_tick / calls);
  }
  const size_t allocations = AllocationsOf(comparison.library);
  std::ranges::sort(ratios);
  std::ranges::sort(library_us);
  std::ranges::sort(bare_us);
  const double ratio = At(ratios, 0.5);
  std::printf("%-38s ratio %.3f (quartiles %.3f to %.3f, limit %.2f), %.4g us, bare %.4g us, allocations %zu\n",
              comparison.name, ratio, At(ratios, 0.25), At(ratios, 0.75), comparison.limit, At(library_us, 0.5),
              At(bare_us, 0.5), allocations);
  return ratio <= comparison.limit && (comparison.may_allocate || allocations == 0);
}

}  // namespace vexa
