#ifndef VEXA_BENCH_DRIVER_ROUTE_H_
#define VEXA_BENCH_DRIVER_ROUTE_H_

namespace vexa {

// The library must be ready. Returns whether every ratio keeps its limit.
bool CompareDriverRoute();

}  // namespace vexa

#endif  // VEXA_BENCH_DRIVER_ROUTE_H_
