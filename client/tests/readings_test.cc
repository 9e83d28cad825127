// The readings of EC and battery over both routes: what becomes of each answer.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "client/exit_codes.h"
#include "client/rules.h"
#include "client/tests/fake_library.h"

namespace vexahealth {
namespace {

using enum Status;
struct Case {
  const char* what;
  Route route;
  std::vector<std::pair<std::string_view, uint32_t>> changes;  // of a healthy notebook
  std::vector<Expected> expected;
};

// clang-format off: a case in few lines
const Case kCases[] = {
    {"healthy", kDriver, {},
     {{"library.dll_version", "1.1"}, {"battery.current", -1234}, {"battery.device_name", "PACK 3S1P"},
      {"battery.manufacture_date", "2023-04-20"}, {"battery.cell_voltage_4", kNotPresent}, {"battery.error", false},
      {"ec.vendor_type", 1}, {"battery.manufacture_information", "0x1f,0x2,0xa0"}}},
    {"no table", kDriver, {{"ec.table_version", 0}, {"battery.device_name", 0}, {"ec.chip_name", 0}},
     {{"ec.table_version", 0}, {"battery.rsoc", kUnsupported}, {"power.ac_present", kUnsupported}, {"ec.chip_id", 0x85},
      {"battery.manufacture_information", kUnsupported}, {"battery.device_name", kUnsupported},
      {"battery.manufacturer_smbus", "ACME"}, {"ec.chip_name", kNoAnswer}}},
    {"too old for one", kDriver, {{"ec.table_version", 9}},
     {{"battery.manufacture_information", kUnsupported}, {"battery.rsoc", 87}}},
    {"just new enough", kDriver, {{"ec.table_version", 10}}, {{"battery.manufacture_information", "0x1f,0x2,0xa0"}}},
    {"a version that can't be", kDriver, {{"ec.table_version", 256}},
     {{"ec.table_version", kError}, {"battery.rsoc", kNoAnswer}, {"battery.safety_status", kNoAnswer},
      {"ec.vendor_type", 1}}},
    {"the table is silent", kDriver, {{"battery.error", 0}, {"battery.voltage", kSilent}},
     {{"battery.error", kNoAnswer}, {"power.ac_present", kNoAnswer}, {"battery.rsoc", 87},
      {"battery.safety_status", 0}}},
    {"its version is unreadable for a moment", kDriver, {{"battery.cycle_count", kAllOnes},
     {"battery.fully_charged", kSilent}},
     {{"battery.cycle_count", kNoAnswer}, {"battery.fully_charged", kNoAnswer}, {"battery.rsoc", 87}}},
    {"all ones", kDriver, {{"battery.current", kAllOnes}, {"ec.chip_id", kAllOnes},
     {"battery.safety_status", 0x80000000}},
     {{"battery.current", -1}, {"ec.chip_id", kError}}},
    {"out of range", kDriver, {{"battery.rsoc", 101}, {"battery.voltage", 0x10000}, {"battery.current", 0x8000}},
     {{"battery.rsoc", kError}, {"battery.voltage", kError}, {"battery.current", kError}}},
    {"the driver has no version", kDriver, {{"driver.version", 0}}, {{"driver.version", kNoAnswer}}},
    {"names fail", kDriver, {{"battery.device_name", 0}}, {{"battery.device_name", kNoAnswer}}},

    {"healthy", kFirmware, {},
     {{"battery.current", -1234}, {"battery.error", false}, {"battery.cell_voltage_4", kNotPresent},
      {"driver.version", kUnsupported}, {"ec.table_version", kUnsupported}, {"lid.state", kUnsupported},
      {"battery.safety_status", kUnsupported}, {"battery.manufacture_information", kUnsupported}}},
    {"constants are not shown", kFirmware, {{"lid.state", 1}, {"battery.charging_current", 500}},
     {{"lid.state", kUnsupported}, {"battery.charging_current", kUnsupported}}},
    {"0 that may be", kFirmware,
     {{"battery.serial_number", 0}, {"battery.cycle_count", 0}, {"battery.current", 0}, {"battery.gauge_chip", 0}},
     {{"battery.serial_number", 0}, {"battery.cycle_count", 0}, {"battery.current", 0}, {"battery.gauge_chip", 0}}},
    {"0 that no working gauge answers", kFirmware,
     {{"battery.manufacture_date", 0}, {"battery.design_voltage", 0}, {"battery.full_charge_capacity", 0},
      {"battery.cell_voltage_1", 0}},
     {{"battery.manufacture_date", kNoAnswer}, {"battery.design_voltage", kNoAnswer},
      {"battery.full_charge_capacity", kNoAnswer}, {"battery.cell_voltage_1", kNoAnswer}}},
    {"the temperature stands in", kFirmware, {{"battery.voltage", 0}},
     {{"battery.voltage", kNoAnswer}, {"battery.error", false}, {"battery.temperature", 2982}}},
    {"a silent gauge", kFirmware,
     {{"battery.voltage", 0}, {"battery.temperature", 0}, {"power.ac_present", 1}},
     {{"battery.rsoc", kNoAnswer}, {"battery.device_name", kNoAnswer}, {"power.ac_present", true}}},
    {"a voltage that can't be proves nothing", kFirmware, {{"battery.voltage", 0x10000}, {"battery.temperature", 0}},
     {{"battery.rsoc", kNoAnswer}}},
    {"out of range", kFirmware, {{"battery.voltage", 0x10000}, {"battery.rsoc", 101},
     {"battery.serial_number", kSilent}},
     {{"battery.voltage", kError}, {"battery.rsoc", kError}, {"battery.serial_number", kNoAnswer}}},
    {"no charge in a full pack", kFirmware, {{"battery.rsoc", 0}},
     {{"battery.rsoc", kNoAnswer}, {"battery.remaining_capacity", 3500}}},
    {"nothing left at 87 %", kFirmware, {{"battery.remaining_capacity", 0}},
     {{"battery.rsoc", 87}, {"battery.remaining_capacity", kNoAnswer}}},
    {"empty", kFirmware, {{"battery.rsoc", 0}, {"battery.remaining_capacity", 0}},
     {{"battery.rsoc", 0}, {"battery.remaining_capacity", 0}}},
    {"1.96 % is 0 %", kFirmware, {{"battery.rsoc", 0}, {"battery.remaining_capacity", 79}}, {{"battery.rsoc", 0}}},
    {"a dead cell", kFirmware, {{"battery.cell_voltage_3", 0}},
     {{"battery.cell_voltage_2", 3803}, {"battery.cell_voltage_3", kNoAnswer}, {"battery.cell_voltage_4", kNoAnswer}}},
    {"a pack of two", kFirmware, {{"battery.cell_voltage_3", 0}, {"battery.voltage", 7604}},
     {{"battery.cell_voltage_3", kNotPresent}, {"battery.cell_voltage_4", kNotPresent}}},
    {"no cells at all", kFirmware,
     {{"battery.cell_voltage_1", 0}, {"battery.cell_voltage_2", 0}, {"battery.cell_voltage_3", 0}},
     {{"battery.cell_voltage_1", kNoAnswer}, {"battery.cell_voltage_2", kNoAnswer},
      {"battery.cell_voltage_4", kNoAnswer}}},
    {"a name fails", kFirmware, {{"battery.device_name", 0}},
     {{"battery.device_name", kNoAnswer}, {"battery.manufacturer_smbus", "ACME"}}},
};
// clang-format on

class Readings : public testing::Test {
 protected:
  void SetUp() override { TheScript() = HealthyScript(); }
  void Run(const Scene& setup = {}) {
    TheScript().calls.clear();
    report_ = ScriptedReport(setup);
  }
  const Reading& At(std::string_view key) { return report_.readings[RowIndex(key)]; }
  ptrdiff_t Count(Status status) { return std::ranges::count(report_.readings, status, &Reading::status); }
  ptrdiff_t Calls(std::string_view key) { return TheScript().Calls(kRows[RowIndex(key)].export_name); }

  Report report_;
};

TEST_F(Readings, WhatBecomesOfEachAnswer) {
  for (const Case& test : kCases) {
    TheScript() = test.route == kDriver ? HealthyScript() : HealthyFirmwareScript();
    for (const auto& [key, number] : test.changes) TheScript()[key] = number;
    Run({.route = test.route});
    for (const Expected& expected : test.expected) expected.Check(report_.readings, test.what);
  }
}

TEST_F(Readings, HealthyNotebooksAnswerEverythingThatTheyHave) {
  Run();
  EXPECT_EQ(Count(kOk), static_cast<ptrdiff_t>(kRowCount - 1));  // but for the fourth cell
  EXPECT_EQ(ExitCodeFor(report_), kExitOk);
  report_.library.ready = false;
  EXPECT_EQ(ExitCodeFor(report_), kExitNoReadings);
  TheScript() = HealthyFirmwareScript();
  Run({.route = kFirmware});
  EXPECT_EQ(Count(kOk), 21);
  EXPECT_EQ(ExitCodeFor(report_), kExitOk);
}

TEST_F(Readings, NoAnswerIsNeverAValue) {
  for (const Row& row : kRows) {
    if (row.section == Section::kLibrary || row.kind == Kind::kText || row.kind == Kind::kByteList) continue;
    TheScript() = HealthyScript();
    TheScript()[row.key] = kSilent;
    Run();
    EXPECT_EQ(At(row.key).status, row.kind == Kind::kTimeoutByte ? kError : kNoAnswer) << row.key;
    EXPECT_EQ(At(row.key).value, Value()) << row.key;
  }
}

TEST_F(Readings, OneFailedCallOfTheFirmwareIsNeverAValue) {
  for (const Row& row : kRows) {
    if (row.on_firmware == OnFirmware::kPlain || row.on_firmware == OnFirmware::kSystem || row.kind == Kind::kText)
      continue;
    TheScript() = HealthyFirmwareScript();
    // The firmware falls silent with this call and stays so.
    TheScript().before_call = [&row, asked = 0](std::string_view call) mutable {
      const bool probe_at_start = row.key == "battery.voltage" && call == row.export_name && ++asked == 1;
      if (call != row.export_name || probe_at_start) return;
      for (const Row& other : kRows) {
        if (other.gate != Gate::kLibrary && other.facts().on_arm64) TheScript()[other.key] = 0;
      }
    };
    Run({.route = kFirmware});
    EXPECT_EQ(At(row.key).status, kNoAnswer) << row.key;
    EXPECT_EQ(At(row.key).value, Value()) << row.key;
  }
}

TEST_F(Readings, ACallThatFailedOnceIsMadeAgain) {
  TheScript() = HealthyFirmwareScript();
  TheScript().before_call = [calls = 0](std::string_view call) mutable {
    if (call == "BatteryHealthyTable_BatteryError") TheScript()[call] = ++calls == 1 ? 0 : 1;
  };
  Run({.route = kFirmware});
  EXPECT_EQ(At("battery.error").value, Value(true));
}

TEST_F(Readings, NoExternalPowerNeedsTheSystemsWord) {
  TheScript() = HealthyFirmwareScript();
  for (const auto& [line, status] :
       {std::pair{PowerLine::kOffline, kOk}, {PowerLine::kUnknown, kNoAnswer}, {PowerLine::kOnline, kNoAnswer}}) {
    Run({.route = kFirmware, .line = line});
    EXPECT_EQ(At("power.ac_present").status, status);
  }
}

TEST_F(Readings, WhatCantAnswerIsNotAsked) {
  Run({.ready = false});
  EXPECT_EQ(TheScript().calls, std::vector<std::string>{"GetIoDllVersion"});
  EXPECT_EQ(Count(kNotCollected), static_cast<ptrdiff_t>(kRowCount - 1));
  TheScript()["ec.table_version"] = 0;
  Run();
  EXPECT_EQ(Calls("battery.rsoc"), 0);
  TheScript()["ec.table_version"] = kSilent;
  TheScript()["ec.chip_name"] = 0;
  TheScript()["ec.vendor_type"] = TheScript()["ec.chip_id"] = kSilent;
  Run();
  EXPECT_EQ(Count(kOk), 3);
  EXPECT_EQ(Calls("battery.device_name"), 0);
  EXPECT_EQ(ExitCodeFor(report_), kExitNoReadings);
  TheScript() = HealthyFirmwareScript();
  TheScript()["battery.voltage"] = TheScript()["battery.temperature"] = TheScript()["power.ac_present"] = 0;
  Run({.route = kFirmware, .line = PowerLine::kUnknown});
  EXPECT_EQ(Calls("battery.rsoc") + Calls("battery.device_name"), 0);
  EXPECT_EQ(ExitCodeFor(report_), kExitNoReadings);
}

TEST_F(Readings, TheCallThatWaitsIsSpared) {
  Run({.may_wait = false});
  EXPECT_EQ(At("battery.manufacture_information").status, kNotCollected);
  for (const Row& row : kRows) {
    if (TellsBattery(row) && row.kind != Kind::kText && row.kind != Kind::kByteList) TheScript()[row.key] = 0;
  }
  TheScript()["power.ac_present"] = 1;
  Run();  // no battery
  for (const Reading& reading : report_.readings) {
    EXPECT_EQ(reading.status, TellsBattery(*reading.row) ? kNotPresent : kOk) << reading.row->key;
  }
  EXPECT_EQ(Calls("battery.manufacture_information"), 0);
}

TEST_F(Readings, AMissingExportCostsOneReadingAndIsNamed) {
  TheScript().missing = {"BatteryHealthyTable_CycleCount"};
  Run();
  EXPECT_EQ(At("battery.cycle_count").status, kUnsupported);
  EXPECT_NE(At("battery.cycle_count").note.find("BatteryHealthyTable_CycleCount"), std::string::npos);
  EXPECT_EQ(Count(kUnsupported), 1);
}

TEST_F(Readings, NotesTellWhatToKnow) {
  Run();
  EXPECT_NE(At("battery.error").note.find("cross-checked"), std::string::npos);
  EXPECT_EQ(At("battery.rsoc").note, "");
  EXPECT_EQ(At("battery.manufacture_information").note, "");
  TheScript().SetText("battery.manufacture_information", "0x1,0x0");
  TheScript().SetText("ec.chip_name", "");
  Run();
  EXPECT_NE(At("battery.manufacture_information").note, "");
  EXPECT_EQ(At("ec.chip_name").status, kNoAnswer);
  TheScript().SetText("battery.manufacture_information", "");
  Run();
  EXPECT_EQ(At("battery.manufacture_information").status, kNoAnswer);
}

}  // namespace
}  // namespace vexahealth
