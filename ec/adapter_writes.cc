// The adapter exports that write, and the data flags, which are cleared by reading them.
#include "ec/adapter_writes.h"

#include <cstdint>
#include <optional>

#include "ec/adapter_gate.h"
#include "ec/healthy_table.h"
#include "frame/export_wall.h"
#include "vexa/adapter.h"

namespace vexa {
namespace {

constexpr uint8_t kDataFlagsOffset = 0x01;
// Kept: clearing needs version 23, while reading clears only above it.
constexpr uint32_t kLastVersionThatKeepsFlags = 23;

struct AdapterWrite {
  const char* log_name;
  uint32_t least_version;
  uint8_t group;
  uint8_t offset;
  uint8_t count;  // registers that get the value, from `offset` on
  uint32_t below_version;
};

constexpr AdapterWrite kClearFlags{
    "Adapter_Clear_Power_Data_Flag", kAdapterVersion, kAdapterGroup, kDataFlagsOffset, 1, 0};
constexpr AdapterWrite kClearFlagsBitwise{
    "Adapter_Clear_Power_Data_Flag_Bitwise", kEmarkVersion, kAdapterGroup, 0x35, 1, 0};
constexpr AdapterWrite kSetNotifyControl{"Adapter_Set_Notify_Control", kEmarkVersion, kAdapterGroup, 0x36, 1, 0};
// Interrupt and information.
constexpr AdapterWrite kClearChargerData{
    "Adapter_Clear_Charger_Data", kAdapterVersion, kAdapterGroup, 0x27, 2, VEXA_NOT_AVAILABLE};
// Kept: the line does not name the export.
constexpr AdapterWrite kMonitorPowerDropped{"Power_Dropped", 19, kPowerEventGroup, 0x09, 1, 0};

// 1 when the EC accepted every write; nothing is written after the first that it refused.
uint32_t Write(const AdapterWrite& write, uint8_t value) noexcept {
  return Guarded(write.log_name, 0u, [&]() -> uint32_t {
    if (!IsAtLeast(ReadAndLogVersion(write.log_name), write.least_version)) return write.below_version;
    for (uint8_t i = 0; i < write.count; ++i) {
      if (!WriteTableByte(write.group, static_cast<uint8_t>(write.offset + i), value)) return 0;
    }
    return 1;
  });
}

}  // namespace

uint32_t Adapter_Clear_Power_Data_Flag_Bitwise(uint8_t mask) noexcept { return Write(kClearFlagsBitwise, mask); }

}  // namespace vexa

uint32_t Adapter_Clear_Power_Data_Flag() noexcept { return vexa::Write(vexa::kClearFlags, 0); }

uint32_t Adapter_Clear_Charger_Data() noexcept { return vexa::Write(vexa::kClearChargerData, 0); }

uint32_t Adapter_Set_Notify_Control(uint8_t value) noexcept { return vexa::Write(vexa::kSetNotifyControl, value); }

uint32_t Power_Set_Monitor_PowerDropped(uint32_t enable) noexcept {
  return vexa::Write(vexa::kMonitorPowerDropped, static_cast<uint8_t>(enable * 128 | 5));
}

uint32_t Adapter_Read_Power_Data_Flag() noexcept {
  using namespace vexa;
  static constexpr char kName[] = "Adapter_Read_Power_Data_Flag";
  return Guarded(kName, 0u, []() -> uint32_t {
    const uint32_t version = ReadAndLogVersion(kName);
    if (!IsAtLeast(version, kAdapterVersion)) return 0;
    const std::optional<uint8_t> flags = ReadTableByte(kAdapterGroup, kDataFlagsOffset);
    if (!flags) return 0;
    // Flags that stay set are told once more by the next call.
    if (version > kLastVersionThatKeepsFlags) Adapter_Clear_Power_Data_Flag_Bitwise(*flags);
    return *flags;
  });
}
