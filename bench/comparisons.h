// What is measured, by groups. Each returns whether all of its limits are kept.
#ifndef VEXA_BENCH_COMPARISONS_H_
#define VEXA_BENCH_COMPARISONS_H_

namespace vexa {

// One exchange, one export, the battery table: the library must be ready, the route be the driver's.
bool CompareDriverRoute();
// The battery table on the firmware route: the simulated firmware must be registered.
bool CompareFirmwareRoute();
bool CompareTraceLines();
bool CompareWifiElements();
// In an apartment.
bool CompareWmiQuery();
// The shipped files in C:\Vexa, with their bare twins.
bool CompareLoading();
bool CompareClientStart();

}  // namespace vexa

#endif  // VEXA_BENCH_COMPARISONS_H_
