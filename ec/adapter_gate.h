// What the exports Adapter_* and Power_* ask first: the healthy table's version.
#ifndef VEXA_EC_ADAPTER_GATE_H_
#define VEXA_EC_ADAPTER_GATE_H_

#include <cstdint>

#include "vexa/base.h"

namespace vexa {

// Least versions that many exports share.
inline constexpr uint32_t kAdapterVersion = 14;
inline constexpr uint32_t kEmarkVersion = 23;

// The version, logged as "[EC_BH][log_name] BatteryHealthyTable version: 28". VEXA_NO_ANSWER when it can't be read, and
// on the firmware route, which has no version and sends nothing.
[[nodiscard]] uint32_t ReadAndLogVersion(const char* log_name);

// A version that could not be read is no version.
constexpr bool IsAtLeast(uint32_t version, uint32_t least) { return version >= least && version != VEXA_NO_ANSWER; }

}  // namespace vexa

#endif  // VEXA_EC_ADAPTER_GATE_H_
