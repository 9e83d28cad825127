// Paired measuring: a block of the library's calls and a block of the bare equivalent, one right after the other and in
// alternating order. What is told is the median over the pairs and, as its spread, the quartiles.
#ifndef VEXA_BENCH_PAIRED_H_
#define VEXA_BENCH_PAIRED_H_

namespace vexa {

inline constexpr double kNoLimit = 0;

struct Comparison {
  const char* name;
  void (*library)();
  void (*bare)();
  double limit = kNoLimit;  // of the ratio, or of the difference in nanoseconds
  int pairs;
  int calls_per_block;
  bool may_allocate;
};

// Each prints the line of one comparison. Returns whether it keeps its limit and, where it may not allocate, the
// library allocated nothing.
bool Compare(const Comparison& comparison);
// For calls that take so little that their ratio to an empty call says nothing.
bool CompareDifference(const Comparison& comparison);

}  // namespace vexa

#endif  // VEXA_BENCH_PAIRED_H_
