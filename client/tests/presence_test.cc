#include "client/presence.h"

#include <gtest/gtest.h>

#include <map>

namespace vexahealth {
namespace {

// Readings that are all ok and 0 (false, "x"), except for the given numbers.
std::vector<Reading> ReadingsWith(const std::map<std::string_view, int64_t>& numbers) {
  std::vector<Reading> readings = NothingCollected("");
  for (Reading& reading : readings) {
    const auto number = numbers.find(reading.row->key);
    const int64_t value = number == numbers.end() ? 0 : number->second;
    const Kind kind = reading.row->kind;
    reading.status = Status::kOk;
    reading.value = kind == Kind::kFlag ? Value(value != 0) : IsText(kind) ? Value("x") : Value(value);
  }
  return readings;
}

Reading& At(std::vector<Reading>& readings, std::string_view key) { return readings[RowIndex(key)]; }

TEST(BatteryAbsent, AllOfTheEvidenceIsNeeded) {
  EXPECT_TRUE(BatteryAbsent(ReadingsWith({{"battery.design_voltage", 11400}, {"power.ac_present", 1}})));
  for (const char* key : {"battery.voltage", "battery.rsoc", "battery.full_charge_capacity", "battery.current",
                          "battery.remaining_capacity", "battery.cell_voltage_1", "battery.cell_voltage_4"}) {
    EXPECT_FALSE(BatteryAbsent(ReadingsWith({{key, 1}}))) << key;
  }
  for (const char* key : {"battery.voltage", "battery.rsoc", "battery.full_charge_capacity"}) {
    std::vector<Reading> readings = ReadingsWith({});
    At(readings, key).status = Status::kNoAnswer;
    EXPECT_FALSE(BatteryAbsent(readings)) << key;
  }
}

TEST(MarkBatteryAbsent, TakesTheBatteryAndLeavesTheRest) {
  std::vector<Reading> readings = ReadingsWith({{"power.ac_present", 1}, {"battery.error", 1}});
  At(readings, "battery.manufacture_information").status = Status::kUnsupported;
  At(readings, "battery.device_name").status = Status::kNoAnswer;
  MarkBatteryAbsent(readings);
  for (const Reading& reading : readings) {
    const Status expected = reading.row->key == "battery.manufacture_information" ? Status::kUnsupported
                            : reading.row->key == "battery.error"                 ? Status::kOk  // the EC reports it
                            : TellsBattery(*reading.row)                          ? Status::kNotPresent
                                                                                  : Status::kOk;
    EXPECT_EQ(reading.status, expected) << reading.row->key;
  }
}

TEST(MarkAbsentCells, OnlyTrailingCellsThatThePackVoltageDoesNotNeed) {
  const struct {
    int64_t pack, cells[4];
    const char* statuses;
  } cases[] = {
      {7600, {3800, 3800, 0, 0}, "oo--"},
      {11400, {3800, 3800, 3800, 0}, "ooo-"},
      {15200, {3800, 3800, 3800, 3800}, "oooo"},
      {7600, {3800, 0, 3800, 0}, "ooo-"},   // a dead cell between others is no missing one
      {11400, {3800, 3800, 0, 0}, "oooo"},  // a third cell is there: its 0 is a reading
      {9499, {3800, 3800, 0, 0}, "oo--"},
      {9500, {3800, 3800, 0, 0}, "oooo"},  // half a cell and more is unexplained
      {7600, {0, 0, 0, 0}, "oooo"},
  };
  for (const auto& [pack, cells, expected] : cases) {
    std::vector<Reading> readings = ReadingsWith({{"battery.voltage", pack}});
    std::string statuses;
    for (size_t i = 0; i < 4; ++i) readings[RowIndex("battery.cell_voltage_1") + i].value = cells[i];
    MarkAbsentCells(readings);
    for (size_t i = 0; i < 4; ++i) {
      statuses += readings[RowIndex("battery.cell_voltage_1") + i].status == Status::kNotPresent ? '-' : 'o';
    }
    EXPECT_EQ(statuses, expected) << pack;
  }
  // One that did not answer leaves all as they are.
  std::vector<Reading> readings = ReadingsWith({{"battery.voltage", 7600}, {"battery.cell_voltage_1", 7600}});
  At(readings, "battery.cell_voltage_2").status = Status::kNoAnswer;
  MarkAbsentCells(readings);
  EXPECT_EQ(At(readings, "battery.cell_voltage_4").status, Status::kOk);
}

}  // namespace
}  // namespace vexahealth
