#include "bench/paired.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "tests/support/allocations.h"

namespace vexa {
namespace {

// Nanoseconds of one call.
double Time(void (*call)(), int count) {
  LARGE_INTEGER frequency, begin, end;
  QueryPerformanceFrequency(&frequency);
  QueryPerformanceCounter(&begin);
  for (int i = 0; i < count; ++i) call();
  QueryPerformanceCounter(&end);
  return static_cast<double>(end.QuadPart - begin.QuadPart) * 1e9 / static_cast<double>(frequency.QuadPart) / count;
}

class Sample {
 public:
  explicit Sample(std::vector<double> values) : sorted_(std::move(values)) { std::ranges::sort(sorted_); }
  double At(double part) const { return sorted_[static_cast<size_t>(part * static_cast<double>(sorted_.size() - 1))]; }
  double median() const { return At(0.5); }

 private:
  std::vector<double> sorted_;
};

struct Measured {
  Sample library_ns, bare_ns;
  Sample compared;  // of each pair
};

Measured Measure(const Comparison& comparison, double (*compare)(double library, double bare)) {
  const int calls = comparison.calls_per_block;
  Time(comparison.library, calls);
  Time(comparison.bare, calls);
  std::vector<double> library, bare, compared;
  for (int pair = 0; pair < comparison.pairs; ++pair) {
    const bool library_first = pair % 2 == 0;
    if (library_first) library.push_back(Time(comparison.library, calls));
    bare.push_back(Time(comparison.bare, calls));
    if (!library_first) library.push_back(Time(comparison.library, calls));
    compared.push_back(compare(library.back(), bare.back()));
  }
  return {Sample(std::move(library)), Sample(std::move(bare)), Sample(std::move(compared))};
}

size_t AllocationsOf(void (*call)()) {
  const size_t before = test::AllocationCount();
  call();
  return test::AllocationCount() - before;
}

bool Tell(const Comparison& comparison, const char* word, const char* unit, const Measured& measured) {
  const size_t allocations = AllocationsOf(comparison.library);
  const double value = measured.compared.median();
  std::printf("%-40s %s %.3f%s (quartiles %.3f to %.3f, ", comparison.name, word, value, unit,
              measured.compared.At(0.25), measured.compared.At(0.75));
  if (comparison.limit == kNoLimit) {
    std::printf("no limit");
  } else {
    std::printf("limit %.2f", comparison.limit);
  }
  const bool kept = (comparison.limit == kNoLimit || value <= comparison.limit) &&
                    (comparison.may_allocate || allocations == 0);
  std::printf("), %.4g us, bare %.4g us, allocations %zu%s\n", measured.library_ns.median() / 1000,
              measured.bare_ns.median() / 1000, allocations, kept ? "" : "  MISSED");
  std::fflush(stdout);
  return kept;
}

}  // namespace

bool Compare(const Comparison& comparison) {
  return Tell(comparison, "ratio", "",
              Measure(comparison, [](double library, double bare) { return library / bare; }));
}

bool CompareDifference(const Comparison& comparison) {
  return Tell(comparison, "difference", " ns",
              Measure(comparison, [](double library, double bare) { return library - bare; }));
}

}  // namespace vexa
