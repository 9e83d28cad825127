// What is read of the thermal group: fan count, test mode and speed, temperatures.
#include <cstdint>
#include <optional>

#include "ec/healthy_table.h"
#include "frame/export_wall.h"
#include "vexa/firmware_ec.h"
#include "vexa/thermal.h"

namespace vexa {
namespace {

constexpr uint8_t kBoardSensorCountOffset = 0x10;
constexpr uint8_t kBoardSensorIndexOffset = 0x11;
constexpr uint8_t kBoardSensorTemperatureOffset = 0x12;
constexpr uint8_t kFanSpeedOffset = 0x33;  // low byte

constexpr uint8_t kFirmwareFans = 1;  // tables of the firmware
constexpr uint8_t kFirmwareTemperatures = 3;
constexpr uint8_t kFirmwareSpeedLow = 8;
constexpr uint8_t kFirmwareSpeedHigh = 9;
constexpr uint8_t kFirmwareBoardSensor = 2;

struct FirmwareRegister {
  uint8_t offset;
  uint8_t table;
  int bit = kWhole;

  static constexpr int kWhole = -1;
};

// A register of one byte.
struct ByteMember {
  const char* name;
  const char* route_prefix;  // of the line that tells of the firmware route
  const char* route_name;
  uint8_t offset;
  FirmwareRegister firmware;
  const char* no_table_line;  // completed by the table's version
};

// Nothing when the firmware does not answer.
std::optional<uint32_t> ReadFirmware(const FirmwareRegister& source) noexcept {
  const auto value = static_cast<uint32_t>(WOA_EC_read(source.offset, source.table));
  if (value == VEXA_NO_ANSWER) return std::nullopt;
  return source.bit == FirmwareRegister::kWhole ? value : value >> source.bit & 1u;
}

std::optional<uint32_t> ReadTable(uint8_t offset) noexcept { return ReadTableByte(kThermalGroup, offset); }

uint32_t Answer(const ByteMember& member) noexcept {
  return Guarded(member.name, uint32_t{VEXA_NO_ANSWER}, [&]() -> uint32_t {
    std::optional<uint32_t> value;
    if (OnFirmwareRoute(member.route_name, member.route_prefix)) {
      value = ReadFirmware(member.firmware);
    } else if (PassesTableGate(member.no_table_line)) {
      value = ReadTable(member.offset);
    }
    return value.value_or(VEXA_NO_ANSWER);
  });
}

uint32_t FirmwareFanSpeed() noexcept {
  const std::optional<uint32_t> high = ReadFirmware({kFirmwareSpeedHigh, kFirmwareFans});
  if (!high) return VEXA_NO_ANSWER;
  const std::optional<uint32_t> low = ReadFirmware({kFirmwareSpeedLow, kFirmwareFans});
  if (!low) return VEXA_NO_ANSWER;
  return (*high & 0xFF) << 8 | (*low & 0xFF);
}

uint32_t TableBoardTemperature() noexcept {
  const std::optional<uint32_t> count = ReadTable(kBoardSensorCountOffset);
  if (!count) return VEXA_NO_ANSWER;
  if (*count == 0) return 0;
  if (!WriteTableByte(kThermalGroup, kBoardSensorIndexOffset, 0)) return VEXA_NO_ANSWER;
  return ReadTable(kBoardSensorTemperatureOffset).value_or(VEXA_NO_ANSWER);
}

}  // namespace
}  // namespace vexa

uint32_t HealthyTable_FanCounts() noexcept {
  static constexpr vexa::ByteMember kMember{
      "HealthyTable_FanCounts",  "",
      "HealthyTable_FanCounts",  0x30,
      {11, vexa::kFirmwareFans}, "[EC_BH][HealthyTable_FanCounts] Fail. BatteryHealthyTable version: "};
  return vexa::Answer(kMember);
}

uint32_t HealthyTable_GetFanTestMode() noexcept {
  static constexpr vexa::ByteMember kMember{
      "HealthyTable_GetFanTestMode", "[EC_BH]",
      "HealthyTable_GetFanTestMode", 0x31,
      {2, vexa::kFirmwareFans, 1},   "[EC_BH][HealthyTable_GetFanTestMode] Fail. BatteryHealthyTable version: "};
  return vexa::Answer(kMember);
}

uint32_t HealthyTable_Read_Cpu_Temperature() noexcept {
  static constexpr vexa::ByteMember kMember{
      "HealthyTable_Read_Cpu_Temperature", "",
      "HealthyTable_Read_Cpu_Temperature", 0x00,
      {1, vexa::kFirmwareTemperatures},    "[EC_BH][HealthyTable_Read_Cpu_Temperature] BatteryHealthyTable version: "};
  return vexa::Answer(kMember);
}

uint32_t Quillo_Read_Cpu_Temperature() noexcept {
  // Kept: on the firmware route it goes by the other export's name.
  static constexpr vexa::ByteMember kMember{
      "Quillo_Read_Cpu_Temperature",       "",
      "HealthyTable_Read_Cpu_Temperature", 0x00,
      {1, vexa::kFirmwareTemperatures},    "[EC_BH][Quillo_Read_Cpu_Temperature] BatteryHealthyTable version: "};
  return vexa::Answer(kMember);
}

uint32_t HealthyTable_FanRPM() noexcept {
  using namespace vexa;
  return Guarded("HealthyTable_FanRPM", uint32_t{VEXA_NO_ANSWER}, []() -> uint32_t {
    if (OnFirmwareRoute("HealthyTable_FanRPM")) return FirmwareFanSpeed();
    if (!PassesTableGate("[EC_BH][HealthyTable_FanRPM] Fail. BatteryHealthyTable version: ")) return VEXA_NOT_AVAILABLE;
    const std::optional<uint16_t> rpm = ReadTableWord(kThermalGroup, kFanSpeedOffset);
    return rpm ? *rpm : VEXA_NO_ANSWER;
  });
}

uint32_t HealthyTable_Read_BoardTS0L_Temperature() noexcept {
  using namespace vexa;
  return Guarded("HealthyTable_Read_BoardTS0L_Temperature", uint32_t{VEXA_NO_ANSWER}, []() -> uint32_t {
    if (OnFirmwareRoute("HealthyTable_Read_BoardTS0L_Temperature")) {
      return ReadFirmware({kFirmwareBoardSensor, kFirmwareTemperatures}).value_or(VEXA_NO_ANSWER);
    }
    if (!PassesTableGate("[EC_BH][HealthyTable_Read_BoardTS0L_Temperature] BatteryHealthyTable version: ")) {
      return VEXA_NO_ANSWER;
    }
    return TableBoardTemperature();
  });
}
