// The adapter and USB-PD values that are one number each: one row each.
#include <cstdint>

#include "ec/adapter_gate.h"
#include "ec/healthy_table.h"
#include "frame/export_wall.h"
#include "vexa/adapter.h"

namespace vexa {
namespace {

// Answers without a value. Kept: they differ from member to member, and callers rely on which they get.
struct Refusal {
  uint32_t below_version;
  uint32_t on_failure;  // an exchange behind the version's failed
};
constexpr Refusal kTold{VEXA_NOT_AVAILABLE, VEXA_NO_ANSWER};
constexpr Refusal kSilent{0, 0};

struct AdapterValue {
  const char* name;
  uint32_t least_version;
  uint8_t offset;  // of the lowest byte
  uint8_t length;
  Refusal refusal;
};

uint32_t Answer(const AdapterValue& value, uint8_t offset) noexcept {
  return Guarded(value.name, value.refusal.on_failure, [&]() -> uint32_t {
    if (!IsAtLeast(ReadAndLogVersion(value.name), value.least_version)) return value.refusal.below_version;
    return ReadTableNumber(kAdapterGroup, offset, value.length).value_or(value.refusal.on_failure);
  });
}

// What a slip in a row breaks: single bytes and the cable's data are silent, all other numbers tell.
constexpr bool IsWellFormed(const AdapterValue& value) {
  const bool told = value.refusal.below_version == VEXA_NOT_AVAILABLE && value.refusal.on_failure == VEXA_NO_ANSWER;
  return (value.length == 1 || value.length == 2 || value.length == 4) &&
         (value.least_version == kAdapterVersion || value.least_version == kEmarkVersion) &&
         told == (value.length > 1 && value.least_version == kAdapterVersion);
}

constexpr uint8_t kPdoLength = 4;
constexpr AdapterValue kPdo{"Adapter_Read_PDO", kAdapterVersion, 0x02, kPdoLength, kTold};
static_assert(IsWellFormed(kPdo));
static_assert(kPdo.offset + VEXA_PDO_COUNT * kPdoLength == 0x1E, "the contract follows the last PDO");

}  // namespace
}  // namespace vexa

uint32_t Adapter_Read_PDO(uint32_t index) noexcept {
  using namespace vexa;
  if (index >= VEXA_PDO_COUNT) return VEXA_NOT_AVAILABLE;
  return Answer(kPdo, static_cast<uint8_t>(kPdo.offset + kPdoLength * index));
}

uint32_t Adapter_Read_PDO1() noexcept { return Adapter_Read_PDO(0); }
uint32_t Adapter_Read_PDO2() noexcept { return Adapter_Read_PDO(1); }
uint32_t Adapter_Read_PDO3() noexcept { return Adapter_Read_PDO(2); }
uint32_t Adapter_Read_PDO4() noexcept { return Adapter_Read_PDO(3); }
uint32_t Adapter_Read_PDO5() noexcept { return Adapter_Read_PDO(4); }
uint32_t Adapter_Read_PDO6() noexcept { return Adapter_Read_PDO(5); }
uint32_t Adapter_Read_PDO7() noexcept { return Adapter_Read_PDO(6); }

// A row of the family: the export, and what AdapterValue holds behind its name.
#define VEXA_ADAPTER_VALUE(export_name, ...)                         \
  uint32_t export_name() noexcept {                                  \
    using namespace vexa;                                            \
    static constexpr AdapterValue kValue{#export_name, __VA_ARGS__}; \
    static_assert(IsWellFormed(kValue));                             \
    return Answer(kValue, kValue.offset);                            \
  }

VEXA_ADAPTER_VALUE(Adapter_Read_Power_Big_Data_Config, kAdapterVersion, 0x00, 1, kSilent)
VEXA_ADAPTER_VALUE(Adapter_Read_Contract_PDO, kAdapterVersion, 0x1E, 4, kTold)
VEXA_ADAPTER_VALUE(Adapter_Read_PDO_Watt, kAdapterVersion, 0x22, 4, kTold)
VEXA_ADAPTER_VALUE(Adapter_Read_PD_ADO, kAdapterVersion, 0x26, 1, kSilent)
VEXA_ADAPTER_VALUE(Adapter_Read_Charger_Interrupt, kAdapterVersion, 0x27, 1, kSilent)
VEXA_ADAPTER_VALUE(Adapter_Read_Charger_Information, kAdapterVersion, 0x28, 1, kSilent)
VEXA_ADAPTER_VALUE(Adapter_Read_PD_Get_Source_Cap_Extend_VID, kAdapterVersion, 0x29, 2, kTold)
VEXA_ADAPTER_VALUE(Adapter_Read_PD_Get_Source_Cap_Extend_PID, kAdapterVersion, 0x2B, 2, kTold)
VEXA_ADAPTER_VALUE(Adapter_Read_PD_Get_Source_Cap_Extend_XID, kAdapterVersion, 0x2D, 4, kTold)
VEXA_ADAPTER_VALUE(Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion, kAdapterVersion, 0x31, 1, kSilent)
VEXA_ADAPTER_VALUE(Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion, kAdapterVersion, 0x32, 1, kSilent)
VEXA_ADAPTER_VALUE(Adapter_Read_PD_Get_Status_Temperature, kAdapterVersion, 0x33, 1, kSilent)
VEXA_ADAPTER_VALUE(Adapter_Read_PD_Get_Status_EventFlag, kAdapterVersion, 0x34, 1, kSilent)
VEXA_ADAPTER_VALUE(Adapter_Read_PD_Get_Emark_VID, kEmarkVersion, 0x37, 4, kSilent)
VEXA_ADAPTER_VALUE(Adapter_Read_PD_Get_Emark_XID, kEmarkVersion, 0x3B, 4, kSilent)
VEXA_ADAPTER_VALUE(Adapter_Read_PD_Get_Emark_PID, kEmarkVersion, 0x41, 2, kSilent)
VEXA_ADAPTER_VALUE(Adapter_Read_PD_Get_Emark_Other, kEmarkVersion, 0x47, 4, kSilent)
