// The battery's names.
#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "ec/gauge_passthrough.h"
#include "ec/healthy_table.h"
#include "ec/text_buffer.h"
#include "frame/line.h"
#include "frame/log.h"
#include "vexa/battery.h"
#include "wmi/ec_route.h"

namespace vexa {
namespace {

constexpr uint8_t kManufacturerOffset = 0x10;  // no length byte; 0x13 inside it is the gauge's code as well
constexpr uint8_t kMaxTableName = 16;

static_assert(kMaxTableName < VEXA_MANUFACTURE_NAME_CAPACITY);
static_assert(kMaxGaugeBlock + 1 == VEXA_MANUFACTURE_NAME_CAPACITY && kMaxGaugeBlock + 1 == VEXA_DEVICE_NAME_CAPACITY);

struct NameMember {
  const char* name;
  std::optional<std::string> (*read)();  // driver route
  GaugeRegister gauge_register;          // firmware route
  const char* failure_line;              // completed by the table's version
};

// Kept: one text for all three, which names the first.
constexpr char kSuccessLine[] = "[EC_BH][BatteryHealthyTable_ManufactureName] ManufactureName: ";

std::optional<std::string> ReadTableName() {
  std::string name;
  for (uint8_t i = 0; i < kMaxTableName; ++i) {
    const std::optional<uint8_t> character = ReadTableByte(kBatteryGroup, kManufacturerOffset + i);
    if (!character) return std::nullopt;
    if (*character == 0) break;
    name += static_cast<char>(*character);
  }
  return name;
}

template <GaugeRegister kRegister>
std::optional<std::string> ReadGaugeName() {
  return ReadGaugeBlock(kRegister).transform(BlockText);
}

// Byte 0 of the block is its length; the firmware's 0 for "failed" makes an empty name.
std::optional<std::string> ReadFirmwareName(GaugeRegister gauge_register) {
  const auto number = static_cast<uint8_t>(gauge_register);
  const auto length = std::min<uint32_t>(ATD_STS_battery_read_by_index(number, 0), kMaxGaugeBlock);
  std::string name;
  for (uint32_t i = 1; i <= length; ++i) {
    const uint32_t character = ATD_STS_battery_read_by_index(number, static_cast<uint8_t>(i));
    if (character == 0) break;
    name += static_cast<char>(character);
  }
  return name.empty() ? std::nullopt : std::optional(name);
}

uint32_t Fill(const NameMember& member, char* text) noexcept {
  return FillText(member.name, text, [&]() -> std::optional<std::string> {
    uint32_t version = VEXA_NO_ANSWER;  // on the firmware route there is no table
    std::optional<std::string> name;
    if (OnFirmwareRoute(member.name)) {
      name = ReadFirmwareName(member.gauge_register);
    } else {
      version = ReadTableVersion();
      if (HasTable(version)) name = member.read();
    }
    LogBuilt(TraceLevel::kVerbose,
             [&] { return name ? Line(kSuccessLine, *name) : Line(member.failure_line, version); });
    return name;
  });
}

}  // namespace
}  // namespace vexa

uint32_t BatteryHealthyTable_ManufactureName(char* text) noexcept {
  using namespace vexa;
  static constexpr NameMember kMember{
      "BatteryHealthyTable_ManufactureName", ReadTableName, GaugeRegister::kManufacturerName,
      "[EC_BH][BatteryHealthyTable_ManufactureName] Fail. BatteryHealthyTable version: "};
  return Fill(kMember, text);
}

uint32_t BatteryHealthyTable_ManufactureNameBySMBus(char* text) noexcept {
  using namespace vexa;
  static constexpr NameMember kMember{
      "BatteryHealthyTable_ManufactureNameBySMBus", ReadGaugeName<GaugeRegister::kManufacturerName>,
      GaugeRegister::kManufacturerName,
      "[EC_BH][BatteryHealthyTable_ManufactureNameBySMBus] Fail. BatteryHealthyTable version: "};
  return Fill(kMember, text);
}

uint32_t BatteryHealthyTable_DeviceName(char* text) noexcept {
  using namespace vexa;
  static constexpr NameMember kMember{"BatteryHealthyTable_DeviceName", ReadGaugeName<GaugeRegister::kDeviceName>,
                                      GaugeRegister::kDeviceName,
                                      "[EC_BH][BatteryHealthyTable_DeviceName] Fail. BatteryHealthyTable version: "};
  return Fill(kMember, text);
}
