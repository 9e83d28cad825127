#ifndef VEXA_BENCH_WIFI_ELEMENTS_H_
#define VEXA_BENCH_WIFI_ELEMENTS_H_

namespace vexa {

// Returns whether the ratio keeps its limit.
bool CompareWifiElements();

}  // namespace vexa

#endif  // VEXA_BENCH_WIFI_ELEMENTS_H_
