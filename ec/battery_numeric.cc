// The numeric battery exports: one row each.
#include <cstdint>
#include <optional>

#include "ec/healthy_table.h"
#include "frame/export_wall.h"
#include "frame/line.h"
#include "frame/log.h"
#include "vexa/battery.h"

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

struct NumericMember {
  const char* name;
  uint8_t group;
  uint8_t offset;
  Shape shape;
  uint8_t bit;        // of a flag
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

uint32_t Answer(const NumericMember& member) noexcept {
  return Guarded(member.name, uint32_t{VEXA_NO_ANSWER}, [&]() -> uint32_t {
    if (OnFirmwareRoute(member.name)) return VEXA_NO_ANSWER;
    const uint32_t version = ReadTableVersion();
    if (HasTable(version)) return ReadMember(member).value_or(static_cast<uint32_t>(member.on_failure));
    LogBuilt(TraceLevel::kVerbose, [&] { return Line(member.no_table_line, version); });
    return member.no_table;
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

VEXA_NUMERIC_MEMBER(BatteryHealthyTable_ManufactureDate, kBatteryGroup, 0x54, Shape::kWord, kNoBit, VEXA_NOT_AVAILABLE,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_ManufactureDate] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_SerialNumber, kBatteryGroup, 0x28, Shape::kWord, kNoBit, 0,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_SerialNumber] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_DesignVoltage, kBatteryGroup, 0x2C, Shape::kWord, kNoBit, 0,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_DesignVoltage] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_CycleCount, kBatteryGroup, 0x2E, Shape::kWord, kNoBit, VEXA_NOT_AVAILABLE,
                    OnFailure::kNoAnswer, "[EC_BH][BatteryHealthyTable_CycleCount] BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_Rsoc, kBatteryGroup, 0x30, Shape::kWord, kNoBit, 0, OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_Rsoc] BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_Temperature, kBatteryGroup, 0x34, Shape::kWord, kNoBit, VEXA_NOT_AVAILABLE,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_Temperature] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_PackageVoltage, kBatteryGroup, 0x36, Shape::kWord, kNoBit, VEXA_NOT_AVAILABLE,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_PackageVoltage] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_Current, kBatteryGroup, 0x38, Shape::kSignedWord, kNoBit, VEXA_NOT_AVAILABLE,
                    OnFailure::kNoAnswer, "[EC_BH][BatteryHealthyTable_Current] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_ChargingCurrent, kBatteryGroup, 0x3C, Shape::kSignedWord, kNoBit,
                    VEXA_NOT_AVAILABLE, OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_ChargingCurrent] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_ChargingVoltage, kBatteryGroup, 0x3E, Shape::kWord, kNoBit, VEXA_NOT_AVAILABLE,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_ChargingVoltage] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_RemainingCapacity, kBatteryGroup, 0x40, Shape::kWord, kNoBit, 0,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_RemainingCapacity] BatteryHealthyTable version: ")
// Kept: the line says "BatteryHealthy_", without "Table".
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_FullChargeCapacity, kBatteryGroup, 0x42, Shape::kWord, kNoBit, 0,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthy_FullChargeCapacity] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_CellVoltage1, kBatteryGroup, 0x48, Shape::kWord, kNoBit, 0,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_CellVoltage1] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_CellVoltage2, kBatteryGroup, 0x4A, Shape::kWord, kNoBit, 0,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_CellVoltage2] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_CellVoltage3, kBatteryGroup, 0x4C, Shape::kWord, kNoBit, 0,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_CellVoltage3] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_CellVoltage4, kBatteryGroup, 0x4E, Shape::kWord, kNoBit, 0,
                    OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_CellVoltage4] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_GaugeIC, kBatteryGroup, 0x13, Shape::kByte, kNoBit, 0, OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_GaugeIC] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_BatteryError, kBatteryGroup, 0x01, Shape::kFlag, 7, 0, OnFailure::kClear,
                    "[EC_BH][BatteryHealthyTable_BatteryError] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_FullCharged, kBatteryGroup, 0x01, Shape::kFlag, 4, 0, OnFailure::kClear,
                    "[EC_BH][BatteryHealthyTable_FullCharged] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_TimeoutStatus, kBatteryGroup, 0x03, Shape::kByte, kNoBit, 0, OnFailure::kClear,
                    "[EC_BH][BatteryHealthyTable_TimeoutStatus] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_ACStatus, kBatteryGroup, 0x00, Shape::kFlag, 0, 0, OnFailure::kClear,
                    "[EC_BH][BatteryHealthyTable_ACStatus] Fail. BatteryHealthyTable version: ")
VEXA_NUMERIC_MEMBER(BatteryHealthyTable_LidStatus, kGpioGroup, 0x01, Shape::kByte, kNoBit, 0, OnFailure::kNoAnswer,
                    "[EC_BH][BatteryHealthyTable_LidStatus] BatteryHealthyTable version: ")
