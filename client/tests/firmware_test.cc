// Readings on machines whose gauge is read through the firmware's methods: a failed call answers 0.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "client/collect.h"
#include "client/exit_codes.h"
#include "client/tests/scripted_library.h"

namespace vexahealth {
namespace {

PowerLine g_power_line = PowerLine::kOffline;

std::string AsItIs(std::string_view text) { return std::string(text); }

class FirmwareTest : public testing::Test {
 protected:
  void SetUp() override {
    TheScript() = HealthyFirmwareScript();
    g_power_line = PowerLine::kOffline;
  }

  void Run() {
    readings_ = Collect(
        {.resolve = ScriptedExports(), .ready = true, .route = Route::kFirmware, .decode = AsItIs, .power_line = [] {
           return g_power_line;
         }});
  }
  const Reading& At(std::string_view key) { return readings_[RowIndex(key)]; }
  Status StatusOf(std::string_view key) { return At(key).status; }
  ptrdiff_t Count(Status status) { return std::ranges::count(readings_, status, &Reading::status); }
  int Exit() {
    return ExitCodeFor(Report{
        .library = {.loaded = true, .ready = true, .route = Route::kFirmware}, .readings = readings_, .error = {}});
  }

  std::vector<Reading> readings_;
};

TEST_F(FirmwareTest, AHealthyNotebookAnswersWithoutATable) {
  Run();
  const std::set<std::string_view> no_source = {"driver.version",
                                                "driver.reference_count",
                                                "ec.table_version",
                                                "ec.vendor_type",
                                                "ec.chip_id",
                                                "ec.chip_name",
                                                "battery.charging_current",
                                                "battery.safety_status",
                                                "battery.permanent_failure_status",
                                                "battery.fully_charged",
                                                "charger.timeout_status",
                                                "lid.state",
                                                "battery.manufacture_information"};
  for (const Reading& reading : readings_) {
    const Status expected = no_source.contains(reading.row->key)           ? Status::kUnsupported
                            : reading.row->key == "battery.cell_voltage_4" ? Status::kNotPresent
                                                                           : Status::kOk;
    EXPECT_EQ(reading.status, expected) << reading.row->key << ": " << reading.note;
    if (expected != Status::kOk) {
      EXPECT_NE(reading.note, "") << reading.row->key;
    }
  }
  EXPECT_EQ(Count(Status::kOk), 21);
  EXPECT_EQ(At("battery.current").value, Value(int64_t{-1234}));
  EXPECT_EQ(At("battery.error").value, Value(false));
  EXPECT_EQ(Exit(), kExitOk);
}

TEST_F(FirmwareTest, MembersWithoutASourceAreNotAskedSoTheirConstantsCantShow) {
  TheScript().numbers["lid.state"] = 1;
  TheScript().numbers["battery.charging_current"] = 500;
  Run();
  EXPECT_EQ(StatusOf("lid.state"), Status::kUnsupported);
  EXPECT_EQ(StatusOf("battery.charging_current"), Status::kUnsupported);
}

TEST_F(FirmwareTest, OneFailedCallOfAnyGaugeExportIsNeverAValue) {
  for (const Row& row : kRows) {
    const bool gauge = row.on_firmware == OnFirmware::kNeverZero || row.on_firmware == OnFirmware::kMayBeZero;
    if (!gauge || row.signature != Signature::kNumber) continue;
    TheScript() = HealthyFirmwareScript();
    // The firmware falls silent with this call and stays so.
    TheScript().before_call = [&row, asked = 0](std::string_view key) mutable {
      const bool probe_at_start = key == "battery.voltage" && ++asked == 1;
      if (key != row.key || probe_at_start) return;
      for (const Row& other : kRows) {
        if (other.gate != Gate::kLibrary) TheScript().numbers[other.key] = 0;
      }
    };
    Run();
    EXPECT_EQ(StatusOf(row.key), Status::kNoAnswer) << row.key;
    EXPECT_EQ(At(row.key).value, Value()) << row.key;
  }
}

TEST_F(FirmwareTest, BelievableZerosAreOkWhenTheGaugeAnswersRightAfter) {
  for (const char* key : {"battery.serial_number", "battery.cycle_count", "battery.current", "battery.charging_voltage",
                          "battery.gauge_chip"}) {
    TheScript().numbers[key] = 0;
  }
  Run();
  for (const char* key : {"battery.serial_number", "battery.cycle_count", "battery.current", "battery.charging_voltage",
                          "battery.gauge_chip"}) {
    EXPECT_EQ(At(key).value, Value(int64_t{0})) << key;
    EXPECT_NE(At(key).note.find("0 twice"), std::string::npos) << key;
  }
}

TEST_F(FirmwareTest, ACallThatFailedOnceIsMadeAgain) {
  TheScript().before_call = [calls = 0](std::string_view key) mutable {
    if (key == "battery.error") TheScript().numbers[key] = ++calls == 1 ? 0 : 1;
  };
  Run();
  EXPECT_EQ(At("battery.error").value, Value(true));
}

TEST_F(FirmwareTest, ZerosThatNoWorkingGaugeAnswersAreNoAnswer) {
  const char* keys[] = {"battery.manufacture_date", "battery.design_voltage", "battery.full_charge_capacity",
                        "battery.cell_voltage_1"};
  for (const char* key : keys) TheScript().numbers[key] = 0;
  Run();
  for (const char* key : keys) EXPECT_EQ(StatusOf(key), Status::kNoAnswer) << key;
}

TEST_F(FirmwareTest, TheTemperatureStandsInForAVoltageThatFails) {
  TheScript().numbers["battery.voltage"] = 0;
  Run();
  EXPECT_EQ(StatusOf("battery.voltage"), Status::kNoAnswer);
  EXPECT_EQ(StatusOf("battery.error"), Status::kOk);
  EXPECT_EQ(StatusOf("battery.temperature"), Status::kOk);
}

TEST_F(FirmwareTest, ASilentFirmwareIsAskedNoFurtherAndIsNoNews) {
  for (auto& [key, number] : TheScript().numbers) {
    if (key.starts_with("battery.")) number = 0;
  }
  TheScript().numbers["power.ac_present"] = 1;
  Run();
  EXPECT_EQ(StatusOf("battery.rsoc"), Status::kNoAnswer);
  EXPECT_EQ(StatusOf("battery.device_name"), Status::kNoAnswer);
  EXPECT_EQ(StatusOf("power.ac_present"), Status::kOk);
  EXPECT_EQ(TheScript().calls, (std::vector<std::string_view>{"battery.voltage", "battery.temperature",
                                                              "library.dll_version", "power.ac_present"}));
  EXPECT_EQ(Exit(), kExitNoReadings);
}

TEST_F(FirmwareTest, ZeroChargeMustFitTheRemainingCapacity) {
  TheScript().numbers["battery.rsoc"] = 0;
  Run();
  EXPECT_EQ(StatusOf("battery.rsoc"), Status::kNoAnswer);
  EXPECT_EQ(StatusOf("battery.remaining_capacity"), Status::kOk);

  TheScript() = HealthyFirmwareScript();
  TheScript().numbers["battery.remaining_capacity"] = 0;
  Run();
  EXPECT_EQ(StatusOf("battery.rsoc"), Status::kOk);
  EXPECT_EQ(StatusOf("battery.remaining_capacity"), Status::kNoAnswer);

  TheScript().numbers["battery.rsoc"] = 0;  // an empty battery
  Run();
  EXPECT_EQ(At("battery.rsoc").value, Value(int64_t{0}));
  EXPECT_EQ(At("battery.remaining_capacity").value, Value(int64_t{0}));

  TheScript().numbers["battery.remaining_capacity"] = 79;  // 1.96 % of 4021
  Run();
  EXPECT_EQ(StatusOf("battery.rsoc"), Status::kOk);
}

TEST_F(FirmwareTest, AZeroCellIsAbsentOnlyWhereThePackVoltageDoesNotNeedIt) {
  TheScript().numbers["battery.cell_voltage_3"] = 0;  // the pack still has three cells' voltage
  Run();
  EXPECT_EQ(StatusOf("battery.cell_voltage_2"), Status::kOk);
  EXPECT_EQ(StatusOf("battery.cell_voltage_3"), Status::kNoAnswer);
  EXPECT_EQ(StatusOf("battery.cell_voltage_4"), Status::kNoAnswer);

  TheScript().numbers["battery.voltage"] = 7604;
  Run();
  EXPECT_EQ(StatusOf("battery.cell_voltage_3"), Status::kNotPresent);
  EXPECT_EQ(StatusOf("battery.cell_voltage_4"), Status::kNotPresent);
}

TEST_F(FirmwareTest, AGaugeThatTellsNoCellsHasNoneThatAreOk) {
  for (const char* key : {"battery.cell_voltage_1", "battery.cell_voltage_2", "battery.cell_voltage_3"}) {
    TheScript().numbers[key] = 0;
  }
  Run();
  for (size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(readings_[RowIndex("battery.cell_voltage_1") + i].status, Status::kNoAnswer) << i;
  }
}

TEST_F(FirmwareTest, NoExternalPowerNeedsTheSystemsWord) {
  for (const auto& [line, status] : {std::pair{PowerLine::kOffline, Status::kOk},
                                     {PowerLine::kUnknown, Status::kNoAnswer},
                                     {PowerLine::kOnline, Status::kNoAnswer}}) {
    g_power_line = line;
    Run();
    EXPECT_EQ(StatusOf("power.ac_present"), status);
  }
  TheScript().numbers["power.ac_present"] = 1;
  Run();
  EXPECT_EQ(At("power.ac_present").value, Value(true));
}

TEST_F(FirmwareTest, ANameIsOkWhenThereAreCharacters) {
  TheScript().numbers["battery.device_name"] = 0;
  TheScript().texts["battery.device_name"].clear();
  TheScript().texts["battery.manufacturer"].clear();
  Run();
  EXPECT_EQ(StatusOf("battery.device_name"), Status::kNoAnswer);
  EXPECT_EQ(StatusOf("battery.manufacturer"), Status::kNoAnswer);
  EXPECT_EQ(StatusOf("battery.manufacturer_smbus"), Status::kOk);
}

TEST_F(FirmwareTest, AnswersOutsideTheContractAreErrorsAndProveNothing) {
  TheScript().numbers["battery.rsoc"] = 101;
  TheScript().numbers["battery.serial_number"] = VEXA_NO_ANSWER;
  TheScript().numbers["battery.voltage"] = 0x10000;
  TheScript().numbers["battery.temperature"] = 0;
  Run();
  EXPECT_EQ(StatusOf("battery.rsoc"), Status::kNoAnswer);  // not asked
  TheScript().numbers["battery.temperature"] = 2982;
  Run();
  EXPECT_EQ(StatusOf("battery.rsoc"), Status::kError);
  EXPECT_EQ(StatusOf("battery.voltage"), Status::kError);
  EXPECT_EQ(StatusOf("battery.serial_number"), Status::kNoAnswer);
}

}  // namespace
}  // namespace vexahealth
