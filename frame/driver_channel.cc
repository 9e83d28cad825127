#include "frame/driver_channel.h"

#include <windows.h>

#include "frame/architecture.h"
#include "frame/library_state.h"

namespace vexa {
namespace {

// The whole of a fixed-size answer; zero on failure, and zero in the part that a short answer leaves out.
template <typename Answer>
Answer ReadDriver(ControlCode code) {
  Answer answer{};
  return RequestDriver(code, nullptr, 0, &answer, sizeof answer) ? answer : Answer{};
}

PowerLimitRecord ReadPowerLimits(ControlCode code, uint32_t firmware_revision) {
  PowerLimitRecord record{.firmware_revision = firmware_revision};
  return RequestDriver(code, &record, sizeof record, &record, sizeof record) ? record : PowerLimitRecord{};
}

}  // namespace

bool RequestDriver(ControlCode code, void* in, uint32_t in_size, void* out, uint32_t out_size) {
  DWORD returned = 0;
  return DeviceIoControl(g_library.driver, static_cast<DWORD>(code), in, in_size, out, out_size, &returned, nullptr);
}

uint32_t ReadDriverVersion() { return ReadDriver<uint32_t>(ControlCode::kDriverVersion); }

uint32_t ReadDriverReferenceCount() { return ReadDriver<uint32_t>(ControlCode::kDriverReferenceCount); }

uint32_t ReadCpuPowerLimit1(uint32_t firmware_revision) {
  return ReadPowerLimits(ControlCode::kPowerLimit1, firmware_revision).limit1;
}

uint32_t ReadCpuPowerLimit2(uint32_t firmware_revision) {
  return ReadPowerLimits(ControlCode::kPowerLimit2, firmware_revision).limit2;
}

uint32_t ReadCpuPackagePower() { return static_cast<uint32_t>(ReadDriver<uint64_t>(ControlCode::kPackagePower)); }

uint32_t ReadCpuVoltage() { return static_cast<uint32_t>(ReadDriver<uint64_t>(ControlCode::kCpuVoltage)); }

int64_t ReadCpuFrequency(CpuVendor vendor) {
  return ReadDriver<int64_t>(vendor == CpuVendor::kIntel ? ControlCode::kIntelFrequency : ControlCode::kOtherFrequency);
}

int64_t ReadCpuMaxFrequency(CpuVendor vendor) {
  return ReadDriver<int64_t>(vendor == CpuVendor::kIntel ? ControlCode::kIntelMaxFrequency
                                                         : ControlCode::kOtherMaxFrequency);
}

std::optional<CpuIdAnswer> ReadCpuId(uint32_t leaf) {
  if (!g_library.initialised) return std::nullopt;
  CpuIdRequest request{.leaf = leaf, .length = sizeof(CpuIdRequest)};
  CpuIdAnswer answer{};
  if (!RequestDriver(ControlCode::kCpuId, &request, sizeof request, &answer, sizeof answer)) return std::nullopt;
  return answer;
}

CpuVendor ReadCpuVendor() {
  if (IsArchitectureARM64()) return CpuVendor::kArm64;
  const std::optional<CpuIdAnswer> answer = ReadCpuId(0);
  // "Genu" "ineI" "ntel"
  const bool intel = answer && answer->ebx == 0x756E6547 && answer->edx == 0x49656E69 && answer->ecx == 0x6C65746E;
  return intel ? CpuVendor::kIntel : CpuVendor::kOther;
}

}  // namespace vexa
