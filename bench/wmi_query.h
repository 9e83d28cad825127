#ifndef VEXA_BENCH_WMI_QUERY_H_
#define VEXA_BENCH_WMI_QUERY_H_

namespace vexa {

// Needs COM's multithreaded apartment. Returns whether the ratio keeps its limit.
bool CompareWmiQuery();

}  // namespace vexa

#endif  // VEXA_BENCH_WMI_QUERY_H_
