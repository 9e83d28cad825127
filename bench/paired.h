// Paired measuring: a block of the library's calls and a block of the bare equivalent, one right after the other and in
// alternating order. The ratio is the median over the pairs, the spread its quartiles.
#ifndef VEXA_BENCH_PAIRED_H_
#define VEXA_BENCH_PAIRED_H_

#include <cstddef>

namespace vexa {

struct Comparison {
  const char* name;
  void (*library)();
  void (*bare)();
  double limit;  // of the ratio
  int pairs;
  int calls_per_block;
  bool may_allocate;
};

// Prints the line of one comparison. Returns whether the ratio keeps its limit and, where it may not allocate, the
// library allocated nothing.
bool Compare(const Comparison& comparison);

}  // namespace vexa

#endif  // VEXA_BENCH_PAIRED_H_
