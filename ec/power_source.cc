// Where the machine's power comes from.
#include <windows.h>

#include <cstdint>
#include <optional>

#include "ec/healthy_table.h"
#include "frame/export_wall.h"
#include "frame/log.h"
#include "vexa/adapter.h"
#include "vexa/battery.h"

namespace vexa {
namespace {

constexpr uint32_t kAdapterTypeVersion = 8;
constexpr uint32_t kJackVersion = 11;  // from which the EC tells whether an adapter is in the DC jack

constexpr uint8_t kPowerSourceOffset = 0x00;  // battery group
constexpr uint8_t kAcPresent = 0x01;
constexpr uint8_t kAdapterTypeOffset = 0x08;  // other group
constexpr uint8_t kNormalAdapter = 0x80;
constexpr uint8_t kPdAdapter = 0x60;
constexpr uint8_t kJackOffset = 0x0C;  // other group
constexpr uint8_t kAdapterInJack = 1;

const char* BooleanText(bool value) { return value ? "true" : "false"; }

bool IsPdCharging() {
  const uint32_t version = BatteryHealthyTable_ReadVersion();
  LogInfo("[Power_PD_Charging] BatteryHealthyTable version: %u", version);
  if (!HasTable(version)) return false;

  const std::optional<uint8_t> source = ReadTableByte(kBatteryGroup, kPowerSourceOffset);
  if (!source) return false;
  const bool on_ac = *source & kAcPresent;
  LogInfo("[Power_PD_Charging] bAC = %d", on_ac);
  if (!on_ac || version < kAdapterTypeVersion) return false;

  const std::optional<uint8_t> type = ReadTableByte(kOtherGroup, kAdapterTypeOffset);
  if (!type) return false;
  const bool normal = *type & kNormalAdapter;
  const bool pd = *type & kPdAdapter;
  LogInfo("[Power_PD_Charging] bNormalAdapter = %s", BooleanText(normal));
  LogInfo("[Power_PD_Charging] bPDAdapter = %s", BooleanText(pd));
  // Kept: a machine without normal adapters charges from PD, also when it is not said to support that.
  if (!normal) return true;
  if (!pd || version < kJackVersion) return false;

  const std::optional<uint8_t> jack = ReadTableByte(kOtherGroup, kJackOffset);
  return jack && *jack != kAdapterInJack;
}

}  // namespace
}  // namespace vexa

uint32_t Power_PD_Charging() noexcept {
  return vexa::Guarded("Power_PD_Charging", 0u, []() -> uint32_t { return vexa::IsPdCharging(); });
}

uint32_t Power_Read_ACDCMode() noexcept {
  SYSTEM_POWER_STATUS status{};
  return GetSystemPowerStatus(&status) ? status.ACLineStatus : VEXA_AC_LINE_UNKNOWN;
}
