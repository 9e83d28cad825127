#include "client/presence.h"

#include <gtest/gtest.h>

#include <map>

namespace vexahealth {
namespace {

// Readings that are all ok and 0 (false, "x"), except for the given numbers.
std::vector<Reading> ReadingsWith(const std::map<std::string_view, int64_t>& numbers) {
  std::vector<Reading> readings = NothingCollected("");
  for (Reading& reading : readings) {
    reading.status = Status::kOk;
    const auto number = numbers.find(reading.row->key);
    const int64_t value = number == numbers.end() ? 0 : number->second;
    if (reading.row->kind == Kind::kFlag) {
      reading.value = value != 0;
    } else if (reading.row->signature != Signature::kNumber) {
      reading.value = "x";
    } else {
      reading.value = value;
    }
  }
  return readings;
}

Reading& At(std::vector<Reading>& readings, std::string_view key) { return readings[RowIndex(key)]; }

std::string CellStatuses(int64_t pack, int64_t one, int64_t two, int64_t three, int64_t four) {
  std::vector<Reading> readings = ReadingsWith({{"battery.voltage", pack},
                                                {"battery.cell_voltage_1", one},
                                                {"battery.cell_voltage_2", two},
                                                {"battery.cell_voltage_3", three},
                                                {"battery.cell_voltage_4", four}});
  MarkAbsentCells(readings);
  std::string statuses;
  for (size_t i = 0; i < 4; ++i) {
    statuses += readings[RowIndex("battery.cell_voltage_1") + i].status == Status::kNotPresent ? '-' : 'o';
  }
  return statuses;
}

TEST(BatteryAbsent, AllOfTheEvidenceIsNeeded) {
  EXPECT_TRUE(BatteryAbsent(ReadingsWith({})));
  for (const char* key : {"battery.voltage", "battery.rsoc", "battery.full_charge_capacity", "battery.current",
                          "battery.remaining_capacity", "battery.cell_voltage_1", "battery.cell_voltage_4"}) {
    EXPECT_FALSE(BatteryAbsent(ReadingsWith({{key, 1}}))) << key;
  }
  EXPECT_TRUE(BatteryAbsent(ReadingsWith({{"battery.design_voltage", 11400}, {"power.ac_present", 1}})));
}

TEST(BatteryAbsent, AReadingThatFailedIsNoEvidence) {
  for (const char* key : {"battery.voltage", "battery.rsoc", "battery.full_charge_capacity"}) {
    std::vector<Reading> readings = ReadingsWith({});
    At(readings, key) = {.row = At(readings, key).row, .status = Status::kNoAnswer, .value = {}, .note = "x"};
    EXPECT_FALSE(BatteryAbsent(readings)) << key;
  }
}

TEST(MarkBatteryAbsent, TakesTheBatteryAndLeavesTheRest) {
  std::vector<Reading> readings = ReadingsWith({{"power.ac_present", 1}});
  At(readings, "battery.manufacture_information").status = Status::kUnsupported;
  At(readings, "battery.device_name").status = Status::kNoAnswer;
  MarkBatteryAbsent(readings);
  for (const char* key : {"battery.rsoc", "battery.manufacturer", "battery.device_name", "battery.gauge_chip",
                          "battery.error", "battery.fully_charged"}) {
    EXPECT_EQ(At(readings, key).status, Status::kNotPresent) << key;
    EXPECT_EQ(At(readings, key).value, Value()) << key;
  }
  EXPECT_EQ(At(readings, "battery.manufacture_information").status, Status::kUnsupported);
  for (const char* key : {"power.ac_present", "lid.state", "charger.timeout_status", "ec.chip_id", "driver.version"}) {
    EXPECT_EQ(At(readings, key).status, Status::kOk) << key;
  }
}

TEST(MarkBatteryAbsent, ABatteryErrorThatTheEcReportsStays) {
  std::vector<Reading> readings = ReadingsWith({{"battery.error", 1}});
  MarkBatteryAbsent(readings);
  EXPECT_EQ(At(readings, "battery.error").status, Status::kOk);
}

TEST(MarkAbsentCells, OnlyTrailingCellsThatThePackVoltageDoesNotNeed) {
  EXPECT_EQ(CellStatuses(7600, 3800, 3800, 0, 0), "oo--");
  EXPECT_EQ(CellStatuses(11400, 3800, 3800, 3800, 0), "ooo-");
  EXPECT_EQ(CellStatuses(15200, 3800, 3800, 3800, 3800), "oooo");
  EXPECT_EQ(CellStatuses(7600, 3800, 0, 3800, 0), "ooo-");   // a dead cell between others is no missing one
  EXPECT_EQ(CellStatuses(11400, 3800, 3800, 0, 0), "oooo");  // a third cell is there: its 0 is a reading
  EXPECT_EQ(CellStatuses(9499, 3800, 3800, 0, 0), "oo--");
  EXPECT_EQ(CellStatuses(9500, 3800, 3800, 0, 0), "oooo");  // half a cell and more is unexplained
  EXPECT_EQ(CellStatuses(7600, 0, 0, 0, 0), "oooo");
}

TEST(MarkAbsentCells, ACellThatDidNotAnswerLeavesAllAsTheyAre) {
  std::vector<Reading> readings = ReadingsWith({{"battery.voltage", 7600}, {"battery.cell_voltage_1", 7600}});
  At(readings, "battery.cell_voltage_2").status = Status::kNoAnswer;
  MarkAbsentCells(readings);
  EXPECT_EQ(At(readings, "battery.cell_voltage_4").status, Status::kOk);
}

}  // namespace
}  // namespace vexahealth
