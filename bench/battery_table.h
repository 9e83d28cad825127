// The numeric battery exports beside what each needs on its route, written out.
#ifndef VEXA_BENCH_BATTERY_TABLE_H_
#define VEXA_BENCH_BATTERY_TABLE_H_

namespace vexa {

bool CompareBatteryTableOnDriver();
bool CompareBatteryTableOnFirmware();

}  // namespace vexa

#endif  // VEXA_BENCH_BATTERY_TABLE_H_
