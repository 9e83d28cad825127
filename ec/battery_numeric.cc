// The numeric battery exports: one row each.
#include <windows.h>

#include <cstdint>
#include <optional>

#include "ec/healthy_table.h"
#include "frame/export_wall.h"
#include "frame/line.h"
#include "frame/log.h"
#include "vexa/battery.h"
#include "wmi/ec_route.h"

namespace vexa {
namespace {

enum class Shape : uint8_t {
  kWord,        // 16 bits unsigned; `offset` is the low byte's
  kSignedWord,  // 16 bits signed, sign-extended to 32
  kByte,        // one byte
  kFlag,        // one bit of a byte: 0 or 1
};

// What an export answers when the exchange for its value failed.
enum class OnFailure : uint32_t { kNoAnswer = VEXA_NO_ANSWER, kClear = 0 };

// Where the firmware route takes a member's value from.
struct FirmwareSource {
  enum class Kind : uint8_t {
    kConstant,   // the firmware has no such value: `answer`
    kGauge,      // gauge register, by the Smart Battery Data standard (SBS)
    kBlockByte,  // one byte of a gauge block
    kAcLine,     // the system's power status
  };
  Kind kind;
  uint8_t gauge_register = 0;
  uint8_t length = 0;  // of the register's value, or the byte's index in the block
  uint32_t answer = 0;
};

constexpr FirmwareSource Gauge(uint8_t gauge_register, uint8_t length = 2) {
  return {FirmwareSource::Kind::kGauge, gauge_register, length};
}
constexpr FirmwareSource BlockByte(uint8_t gauge_register, uint8_t index) {
  return {FirmwareSource::Kind::kBlockByte, gauge_register, index};
}
constexpr FirmwareSource Constant(uint32_t answer) {
  return {.kind = FirmwareSource::Kind::kConstant, .answer = answer};
}
constexpr FirmwareSource kAcLine{.kind = FirmwareSource::Kind::kAcLine};

struct NumericMember {
  const char* name;
  uint8_t group;
  uint8_t offset;
  Shape shape;
  uint8_t bit;  // of a flag
  FirmwareSource firmware;
  uint32_t no_table;  // answer when there is no healthy table
  OnFailure on_failure;
  const char* no_table_line;  // completed by the table's version
};

constexpr uint8_t kNoBit = 0;

// Nothing when an exchange failed.
std::optional<uint32_t> ReadMember(const NumericMember& member) {
  if (member.shape == Shape::kWord || member.shape == Shape::kSignedWord) {
    const std::optional<uint16_t> word = ReadTableWord(member.group, member.offset);
    if (!word) return std::nullopt;
    return member.shape == Shape::kWord ? *word : static_cast<uint32_t>(static_cast<int16_t>(*word));
  }
  const std::optional<uint8_t> byte = ReadTableByte(member.group, member.offset);
  if (!byte) return std::nullopt;
  return member.shape == Shape::kByte ? *byte : uint32_t{*byte} >> member.bit & 1u;
}

uint32_t AcLineStatus() {
  SYSTEM_POWER_STATUS status{};
  return GetSystemPowerStatus(&status) && status.ACLineStatus == AC_LINE_ONLINE ? 1 : 0;
}

// A number as the firmware gave it, in the member's shape: of a flag its bit, of a signed word its sign.
uint32_t Shaped(const NumericMember& member, uint32_t value) {
  switch (member.shape) {
    case Shape::kFlag: return value >> member.bit & 1u;
    case Shape::kSignedWord: return static_cast<uint32_t>(static_cast<int16_t>(value));
    default: return value;
  }
}

uint32_t AnswerFromFirmware(const NumericMember& member) {
  const FirmwareSource& source = member.firmware;
  uint32_t value = 0;
  switch (source.kind) {
    case FirmwareSource::Kind::kConstant: return source.answer;
    case FirmwareSource::Kind::kAcLine: return AcLineStatus();
    case FirmwareSource::Kind::kGauge: value = ATD_STS_battery_read_byte(source.gauge_register, source.length); break;
    case FirmwareSource::Kind::kBlockByte: value = ATD_STS_battery_read_by_index(source.gauge_register, source.length);
  }
  value = Shaped(member, value);
  LogBuilt(TraceLevel::kVerbose, [&] {
    const bool is_signed = member.shape == Shape::kSignedWord;
    return Line("[EC_BH][", member.name, "] ATD_STS_battery_read_byte: ",
                is_signed ? NumberText(static_cast<int32_t>(value)) : NumberText(value));
  });
  return value;
}

uint32_t Answer(const NumericMember& member) noexcept {
  return Guarded(member.name, uint32_t{VEXA_NO_ANSWER}, [&]() -> uint32_t {
    if (OnFirmwareRoute(member.name)) return AnswerFromFirmware(member);
    if (!PassesTableGate(member.no_table_line)) return member.no_table;
    return ReadMember(member).value_or(static_cast<uint32_t>(member.on_failure));
  });
}

constexpr bool IsWellFormed(const NumericMember& member) {
  const bool word = member.shape == Shape::kWord || member.shape == Shape::kSignedWord;
  const bool flag = member.shape == Shape::kFlag;
  return (!word || member.offset % 2 == 0) && (flag ? member.bit < 8 : member.bit == kNoBit) &&
         (!flag || member.on_failure == OnFailure::kClear);
}

}  // namespace
}  // namespace vexa

// A row of the family: the export, and what NumericMember holds behind its name.
#define VEXA_NUMERIC_MEMBER(export_name, ...)                          \
  uint32_t export_name() noexcept {                                    \
    using namespace vexa;                                              \
    static constexpr NumericMember kMember{#export_name, __VA_ARGS__}; \
    static_assert(IsWellFormed(kMember));                              \
    return Answer(kMember);                                            \
  }

VEXA_NUMERIC_MEMBER(BatteryHealthyTable_ManufactureDate, kBatteryGroup, 0x54, Shape::kWord, kNoBit, Gauge(0x1B),
                    VEXA_NOT_AVAILABLE, OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_ManufactureDate] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_SerialNumber, kBatteryGroup, 0x28, Shape::kWord, kNoBit, Gauge(0x1C), 0,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_SerialNumber] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_DesignVoltage, kBatteryGroup, 0x2C, Shape::kWord, kNoBit, Gauge(0x19), 0,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_DesignVoltage] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_CycleCount, kBatteryGroup, 0x2E, Shape::kWord, kNoBit, Gauge(0x17),
                    VEXA_NOT_AVAILABLE, OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_CycleCount] BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_Rsoc, kBatteryGroup, 0x30, Shape::kWord, kNoBit, Gauge(0x0D, 1), 0,
                    OnFailure::kNoAnswer, "[EC_BH][BatteryHealthyTable_Rsoc] BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_Temperature, kBatteryGroup, 0x34, Shape::kWord, kNoBit, Gauge(0x08),
                    VEXA_NOT_AVAILABLE, OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_Temperature] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_PackageVoltage, kBatteryGroup, 0x36, Shape::kWord, kNoBit, Gauge(0x09),
                    VEXA_NOT_AVAILABLE, OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_PackageVoltage] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_Current, kBatteryGroup, 0x38, Shape::kSignedWord, kNoBit, Gauge(0x0A),
                    VEXA_NOT_AVAILABLE, OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_Current] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_ChargingCurrent, kBatteryGroup, 0x3C, Shape::kSignedWord, kNoBit, Constant(0),
                    VEXA_NOT_AVAILABLE, OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_ChargingCurrent] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_ChargingVoltage, kBatteryGroup, 0x3E, Shape::kWord, kNoBit, Gauge(0x15),
                    VEXA_NOT_AVAILABLE, OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_ChargingVoltage] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_RemainingCapacity, kBatteryGroup, 0x40, Shape::kWord, kNoBit, Gauge(0x0F), 0,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_RemainingCapacity] BatteryHealthyTable version: ")
// Kept: the line says "BatteryHealthy_", without "Table".
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_FullChargeCapacity, kBatteryGroup, 0x42, Shape::kWord, kNoBit, Gauge(0x10), 0,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthy_FullChargeCapacity] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_CellVoltage1, kBatteryGroup, 0x48, Shape::kWord, kNoBit, Gauge(0x3F), 0,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_CellVoltage1] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_CellVoltage2, kBatteryGroup, 0x4A, Shape::kWord, kNoBit, Gauge(0x3E), 0,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_CellVoltage2] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_CellVoltage3, kBatteryGroup, 0x4C, Shape::kWord, kNoBit, Gauge(0x3D), 0,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_CellVoltage3] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_CellVoltage4, kBatteryGroup, 0x4E, Shape::kWord, kNoBit, Gauge(0x3C), 0,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_CellVoltage4] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_GaugeIC, kBatteryGroup, 0x13, Shape::kByte, kNoBit, BlockByte(0x20, 4), 0,
                    OnFailure::kNoAnswer, "[EC_BH][BatteryHealthyTable_GaugeIC] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_BatteryError, kBatteryGroup, 0x01, Shape::kFlag, 7, Gauge(0x99), 0,
                    OnFailure::kClear, "[EC_BH][BatteryHealthyTable_BatteryError] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_FullCharged, kBatteryGroup, 0x01, Shape::kFlag, 4, Constant(VEXA_NO_ANSWER), 0,
                    OnFailure::kClear, "[EC_BH][BatteryHealthyTable_FullCharged] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_TimeoutStatus, kBatteryGroup, 0x03, Shape::kByte, kNoBit, Constant(0), 0,
                    OnFailure::kClear, "[EC_BH][BatteryHealthyTable_TimeoutStatus] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_ACStatus, kBatteryGroup, 0x00, Shape::kFlag, 0, kAcLine, 0, OnFailure::kClear,
                    "[EC_BH][BatteryHealthyTable_ACStatus] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_LidStatus, kGpioGroup, 0x01, Shape::kByte, kNoBit, Constant(0), 0,
                    OnFailure::kNoAnswer, "[EC_BH][BatteryHealthyTable_LidStatus] BatteryHealthyTable version: ")
