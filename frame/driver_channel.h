// Thin wrappers of the driver's control codes: one request each, no logging, 0 on any failure. They don't test whether
// the library is initialised: before InitializeWinIo the request itself fails. Any thread.
#ifndef VEXA_FRAME_DRIVER_CHANNEL_H_
#define VEXA_FRAME_DRIVER_CHANNEL_H_

#include <cstdint>
#include <optional>

#include "frame/driver_protocol.h"

namespace vexa {

// One request on the driver's handle. An answer may be shorter than `out`; the rest keeps what the caller put there.
[[nodiscard]] bool RequestDriver(ControlCode code, void* in, uint32_t in_size, void* out, uint32_t out_size);

uint32_t ReadDriverVersion();
uint32_t ReadDriverReferenceCount();
uint32_t ReadCpuPowerLimit1(uint32_t firmware_revision);
uint32_t ReadCpuPowerLimit2(uint32_t firmware_revision);
uint32_t ReadCpuPackagePower();  // the low 32 bits
uint32_t ReadCpuVoltage();

enum class CpuVendor : uint32_t { kIntel = 1, kOther = 2, kArm64 = 3 };

// By CPUID leaf 0. kOther also when the library is not initialised or the request fails.
[[nodiscard]] CpuVendor ReadCpuVendor();

int64_t ReadCpuFrequency(CpuVendor vendor);
int64_t ReadCpuMaxFrequency(CpuVendor vendor);

// Tests the initialised flag first: no request before InitializeWinIo.
[[nodiscard]] std::optional<CpuIdAnswer> ReadCpuId(uint32_t leaf);

}  // namespace vexa

#endif  // VEXA_FRAME_DRIVER_CHANNEL_H_
