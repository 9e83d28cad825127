#include "ec/ec_information.h"

#include <algorithm>
#include <cstdint>

#include "ec/healthy_table.h"
#include "ec/text_buffer.h"
#include "frame/export_wall.h"
#include "frame/log.h"
#include "vexa/battery.h"

namespace vexa {
namespace {

constexpr uint8_t kChipIdRegister = 0x10;
constexpr uint8_t kChipNameLengthRegister = 0x11;
constexpr uint8_t kChipNameRegister = 0x12;
constexpr uint8_t kMaxChipName = 14;
constexpr uint8_t kRevisionRegister = 0x20;
constexpr uint8_t kMaxRevision = kVersionRegister - kRevisionRegister;  // the registers before the next known one

static_assert(kMaxChipName + 1 == VEXA_EC_CHIP_NAME_CAPACITY);

// One character per register; ends at the first zero. Nothing after the first exchange that failed.
std::optional<std::string> ReadRegisterText(uint8_t first, uint8_t count) {
  std::string text;
  for (uint8_t i = 0; i < count; ++i) {
    const std::optional<uint8_t> character = ReadInfoRegister(static_cast<uint8_t>(first + i));
    if (!character) return std::nullopt;
    if (*character == 0) break;
    text += static_cast<char>(*character);
  }
  return text;
}

std::optional<std::string> ReadChipName() {
  const std::optional<uint8_t> length = ReadInfoRegister(kChipNameLengthRegister);
  if (!length) return std::nullopt;
  return ReadRegisterText(kChipNameRegister, std::min(*length, kMaxChipName));
}

}  // namespace

std::optional<std::string> ReadFirmwareRevisionWithProjectName() {
  std::optional<std::string> text = ReadRegisterText(kRevisionRegister, kMaxRevision);
  if (!text) LogInfo("[EC_BH][BatteryHealthyTable_FWRevisionWithProjectName] Fail.");
  return text;
}

}  // namespace vexa

uint32_t BatteryHealthyTable_ReadVersion() noexcept {
  using namespace vexa;
  return Guarded("BatteryHealthyTable_ReadVersion", uint32_t{VEXA_NO_ANSWER}, []() -> uint32_t {
    return OnFirmwareRoute("BatteryHealthyTable_ReadVersion") ? VEXA_NO_ANSWER : ReadTableVersion();
  });
}

uint32_t BatteryHealthyTable_ReadVendorType() noexcept {
  using namespace vexa;
  return Guarded("BatteryHealthyTable_ReadVendorType", uint32_t{VEXA_NO_ANSWER}, []() -> uint32_t {
    if (const std::optional<uint8_t> project = ReadInfoRegister(kProjectRegister)) return *project >> 7;
    LogInfo("[EC_BH][BatteryHealthyTable_ReadVendorType] Fail.");
    return VEXA_NO_ANSWER;
  });
}

uint32_t BatteryHealthyTable_ECChipID() noexcept {
  using namespace vexa;
  return Guarded("BatteryHealthyTable_ECChipID", uint32_t{VEXA_NO_ANSWER}, []() -> uint32_t {
    if (OnFirmwareRoute("BatteryHealthyTable_ECChipID")) return VEXA_NO_ANSWER;
    if (const std::optional<uint8_t> id = ReadInfoRegister(kChipIdRegister)) return *id;
    LogInfo("[EC_BH][BatteryHealthyTable_ECChipID] Fail.");
    return VEXA_NO_ANSWER;
  });
}

uint32_t BatteryHealthyTable_ECChipName(char* text) noexcept {
  using namespace vexa;
  return FillText("BatteryHealthyTable_ECChipName", text, []() -> std::optional<std::string> {
    if (OnFirmwareRoute("BatteryHealthyTable_ECChipName")) return std::nullopt;
    std::optional<std::string> name = ReadChipName();
    if (!name) LogInfo("[EC_BH][BatteryHealthyTable_ECChipName] Fail.");
    return name;
  });
}
