// The standard Windows battery class: one snapshot of the first battery.
#ifndef VEXA_FRAME_BATTERY_CLASS_H_
#define VEXA_FRAME_BATTERY_CLASS_H_

#include <cstdint>
#include <string>

namespace vexa {

// Fields that a battery does not report keep their initial value. Units are the class driver's: mWh, mV, mW.
struct BatterySnapshot {
  uint32_t tag = 0;  // 0: no battery, and nothing else was asked
  uint32_t designed_capacity = 0;
  uint32_t full_charged_capacity = 0;
  uint32_t cycle_count = 0;
  float health_ratio = 0;  // full-charged / designed

  // Only of a system battery.
  uint32_t voltage = 0;
  uint32_t capacity = 0;
  int32_t rate = 0;
  float rate_per_voltage = 0;

  std::wstring manufacturer;
};

// Each request that fails leaves its fields as they are; the later ones are still made. Any thread.
[[nodiscard]] BatterySnapshot ReadBatterySnapshot();

}  // namespace vexa

#endif  // VEXA_FRAME_BATTERY_CLASS_H_
