// Fans and temperatures.
#include <array>
#include <optional>

#include "client/families.h"
#include "client/rules.h"
#include "client/text.h"
#include "client/values.h"

namespace vexahealth {
namespace {

constexpr Section kThermal = Section::kThermal;
constexpr Gate kTable = Gate::kTable;
constexpr OnFirmware kPlain = OnFirmware::kPlain;
constexpr size_t kFirstFan = 2;
constexpr size_t kFans = VEXA_MAX_FAN_INDEX + 1;

// Speeds come from the export that holds the fan mutex: other programs' selection of a fan is left alone.
#define VEXA_FAN(number) \
  {"fan." #number ".speed", "Fan " #number, kThermal, VEXA_OWN_EXPORT(Quillo_Read_Fan), Kind::kRpm, kTable, kPlain}

constexpr std::array<Row, kFirstFan + kFans + 2> kRowsOfThermal = {{
    {"fan.count", "Fans", kThermal, VEXA_EXPORT(HealthyTable_FanCounts), Kind::kNumber8, kTable, kPlain},
    {"fan.test_mode", "Fan test mode", kThermal, VEXA_EXPORT(HealthyTable_GetFanTestMode), Kind::kHex8, kTable, kPlain},
    VEXA_FAN(1),
    VEXA_FAN(2),
    VEXA_FAN(3),
    VEXA_FAN(4),
    VEXA_FAN(5),
    {"temperature.cpu", "CPU", kThermal, VEXA_EXPORT(HealthyTable_Read_Cpu_Temperature), Kind::kCelsius, kTable,
     kPlain},
    {"temperature.board", "Board", kThermal, VEXA_EXPORT(HealthyTable_Read_BoardTS0L_Temperature), Kind::kCelsius,
     kTable, kPlain},
}};

#undef VEXA_FAN

Reading FanSpeed(Session& session, size_t fan, const Reading& count) {
  const Row& row = kRowsOfThermal[kFirstFan + fan];
  if (std::optional<Reading> decided = session.Ec().WithoutCall(row)) return std::move(*decided);
  const auto* fans = std::get_if<int64_t>(&count.value);
  if (fans == nullptr) return Missing(row, Status::kNoAnswer, "the number of fans is not known");
  if (static_cast<int64_t>(fan) >= *fans) {
    return Missing(row, Status::kNotPresent, Printf("the machine has %d fans", static_cast<int>(*fans)));
  }
  if (session.Ec().FirmwareRoute() && fan > 0) {
    return Missing(row, Status::kUnsupported, "the firmware tells one speed only");
  }
  const Answer rpm = ToldBy(session.context().library->Quillo_Read_Fan(static_cast<int32_t>(fan)), session.context());
  if (!rpm) return Missing(row, rpm.error(), "the fan did not answer, or a program keeps the fans in test mode");
  return InItsRange(row, *rpm, rpm->number == 0 ? "the fan stands still" : "");
}

}  // namespace

std::span<const Row> ThermalRows() { return kRowsOfThermal; }

std::vector<Reading> CollectThermal(Session& session) {
  std::vector<Reading> readings;
  for (size_t i = 0; i < kRowsOfThermal.size(); ++i) {
    const bool fan = i >= kFirstFan && i < kFirstFan + kFans;
    readings.push_back(fan ? FanSpeed(session, i - kFirstFan, readings[0]) : session.Ec().Ask(kRowsOfThermal[i]));
  }
  Reading& board = readings.back();
  if (board.value == Value(int64_t{0}) && !session.Ec().FirmwareRoute()) {
    board = Missing(*board.row, Status::kNotPresent, "0 stands for no board sensor");
  }
  return readings;
}

}  // namespace vexahealth
