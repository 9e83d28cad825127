// The rules of the verdicts at their limits, and with readings missing.
#include "client/verdicts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "client/families.h"
#include "client/rules.h"

namespace vexahealth {
namespace {

// A report of the command "all" in which nothing was asked, but for these values.
Report ReportWith(const std::map<std::string_view, Value>& values) {
  Report report{.library = {.loaded = true, .ready = true, .route = Route::kDriver},
                .readings = NothingOf(*FindCommand("all"), "not asked in this test"),
                .error = {},
                .time = "2026-02-03T08:05:00.000Z"};
  for (const auto& [key, value] : values) {
    const auto found = std::ranges::find_if(report.readings, [&](const Reading& r) { return r.row->key == key; });
    EXPECT_NE(found, report.readings.end()) << key;
    *found = Ok(*found->row, value);
  }
  return report;
}

Report WithStatus(Report report, std::string_view key, Status status) {
  const auto found = std::ranges::find_if(report.readings, [&](const Reading& r) { return r.row->key == key; });
  *found = Missing(*found->row, status, "why");
  return report;
}

Value N(int64_t number) { return number; }

Verdict VerdictOf(const Report& report, std::string_view id) {
  const std::vector<Verdict> verdicts = Judge(report);
  const auto found = std::ranges::find(verdicts, id, &Verdict::id);
  EXPECT_NE(found, verdicts.end()) << id;
  return *found;
}

Level LevelOf(std::string_view id, const std::map<std::string_view, Value>& values) {
  return VerdictOf(ReportWith(values), id).level;
}

TEST(Verdicts, TheyTurnAtTheirLimits) {
  struct Case {
    const char* id;
    std::map<std::string_view, Value> values;
    Level level;
  };
  const Case cases[] = {
      {"battery_wear", {{"battery.cycle_count", N(499)}}, Level::kGood},
      {"battery_wear", {{"battery.cycle_count", N(500)}}, Level::kWatch},
      {"battery_wear", {{"battery.cycle_count", N(999)}}, Level::kWatch},
      {"battery_wear", {{"battery.cycle_count", N(1000)}}, Level::kAct},
      {"battery_wear", {{"battery.cycle_count", N(65535)}}, Level::kUnknown},
      {"battery_age", {{"battery.manufacture_date", "2021-02-04"}}, Level::kGood},
      {"battery_age", {{"battery.manufacture_date", "2021-02-01"}}, Level::kWatch},
      {"battery_age", {{"battery.manufacture_date", "2026-02-04"}}, Level::kUnknown},
      {"battery_age", {{"battery.manufacture_date", N(0)}}, Level::kUnknown},
      {"cell_balance", {{"battery.cell_voltage_1", N(3849)}, {"battery.cell_voltage_2", N(3800)}}, Level::kGood},
      {"cell_balance", {{"battery.cell_voltage_1", N(3850)}, {"battery.cell_voltage_2", N(3800)}}, Level::kWatch},
      {"cell_balance", {{"battery.cell_voltage_1", N(3800)}, {"battery.cell_voltage_4", N(3950)}}, Level::kAct},
      {"cell_balance", {{"battery.cell_voltage_1", N(2799)}, {"battery.cell_voltage_2", N(2800)}}, Level::kAct},
      {"cell_balance", {{"battery.cell_voltage_1", N(2800)}, {"battery.cell_voltage_2", N(2800)}}, Level::kGood},
      {"cell_balance", {{"battery.cell_voltage_3", N(3800)}}, Level::kUnknown},
      {"battery_protection", {{"battery.error", false}}, Level::kGood},
      {"battery_protection", {{"battery.error", true}}, Level::kAct},
      {"battery_protection", {{"battery.safety_status", N(1)}}, Level::kWatch},
      {"battery_protection",
       {{"battery.permanent_failure_status", N(0x80000000)}, {"battery.safety_status", N(1)}},
       Level::kAct},
      {"battery_protection", {{"battery.permanent_failure_status", N(0xFFFFFFFF)}}, Level::kUnknown},
      {"battery_temperature", {{"battery.temperature", N(65535)}}, Level::kUnknown},
      {"battery_temperature", {{"battery.temperature", N(3181)}}, Level::kGood},  // 44.95 degrees
      {"battery_temperature", {{"battery.temperature", N(3182)}}, Level::kWatch},
      {"battery_temperature", {{"battery.temperature", N(2731)}}, Level::kWatch},  // -0.05 degrees
      {"battery_temperature", {{"battery.temperature", N(2732)}}, Level::kGood},
      {"battery_temperature", {{"battery.temperature", N(3332)}}, Level::kAct},
      {"processor_temperature", {{"temperature.cpu", N(89)}}, Level::kGood},
      {"processor_temperature", {{"temperature.cpu", N(90)}}, Level::kWatch},
      {"processor_temperature", {{"temperature.cpu", N(100)}}, Level::kAct},
      {"wifi_signal", {{"wifi.connected", true}, {"wifi.rssi", N(-67)}}, Level::kGood},
      {"wifi_signal", {{"wifi.connected", true}, {"wifi.rssi", N(-68)}}, Level::kWatch},
      {"wifi_signal", {{"wifi.connected", false}}, Level::kNotThere},
      {"wifi_signal", {{"wifi.connected", true}}, Level::kUnknown},
      {"controller", {{"ec.table_version", N(28)}}, Level::kGood},
      {"controller", {{"ec.table_version", N(0)}}, Level::kWatch},
      {"controller", {}, Level::kAct},
      {"fans", {{"fan.count", N(0)}}, Level::kNotThere},
      {"fans", {{"fan.count", N(1)}, {"fan.1.speed", N(0)}, {"temperature.cpu", N(69)}}, Level::kGood},
      {"fans", {{"fan.count", N(1)}, {"fan.1.speed", N(0)}, {"temperature.cpu", N(70)}}, Level::kAct},
      {"fans", {{"fan.count", N(1)}, {"fan.1.speed", N(0)}}, Level::kUnknown},
      {"fans", {{"fan.count", N(2)}, {"fan.1.speed", N(900)}, {"fan.test_mode", N(2)}}, Level::kWatch},
      {"fans", {{"fan.count", N(2)}}, Level::kUnknown},
  };
  for (const Case& test : cases) {
    const Verdict verdict = VerdictOf(ReportWith(test.values), test.id);
    EXPECT_EQ(LevelName(verdict.level), LevelName(test.level)) << test.id << ": " << verdict.finding;
  }
}

TEST(Verdicts, TheAdapterIsMeasuredByWhatIsEnough) {
  std::map<std::string_view, Value> values = {
      {"power.ac_present", true}, {"adapter.contract.max_power", N(64999)}, {"adapter.sufficient_power", N(65)}};
  EXPECT_EQ(LevelOf("adapter_power", values), Level::kWatch);
  values["adapter.contract.max_power"] = N(65000);
  EXPECT_EQ(LevelOf("adapter_power", values), Level::kGood);
  for (const int64_t no_figure : {0, 65534, 65535}) {
    values["adapter.sufficient_power"] = N(no_figure);
    EXPECT_EQ(LevelOf("adapter_power", values), Level::kUnknown) << no_figure;
  }
  values["power.ac_present"] = false;
  values["adapter.online"] = true;  // the system's word counts only where the EC has none
  EXPECT_EQ(LevelOf("adapter_power", values), Level::kNotThere);
}

TEST(Verdicts, WithoutABatteryThereIsNothingToJudge) {
  const Report report =
      WithStatus(ReportWith({{"battery.cycle_count", N(900)}}), "battery.voltage", Status::kNotPresent);
  for (const Verdict& verdict : Judge(report)) {
    if (verdict.id.starts_with("battery_") || verdict.id == "cell_balance") {
      EXPECT_EQ(verdict.level, Level::kNotThere) << verdict.id;
    }
  }
}

TEST(Verdicts, WhatDidNotAnswerIsNotGood) {
  const Report fans = ReportWith({{"fan.count", N(2)}, {"fan.1.speed", N(3000)}});
  EXPECT_EQ(VerdictOf(WithStatus(fans, "fan.2.speed", Status::kNoAnswer), "fans").level, Level::kUnknown);
  const Report good = ReportWith({{"ec.table_version", N(28)}});
  EXPECT_EQ(VerdictOf(good, "readings").level, Level::kGood);
  for (const auto& [status, level] : {std::pair{Status::kError, Level::kWatch},
                                      {Status::kNoAnswer, Level::kWatch},
                                      {Status::kUnsupported, Level::kGood}}) {
    EXPECT_EQ(VerdictOf(WithStatus(good, "battery.rsoc", status), "readings").level, level);
  }
}

TEST(Verdicts, TheControllerIsJudgedByItsRouteAndTheLibrary) {
  Report report = ReportWith({{"inventory.product", "Vexa"}, {"adapter.online", true}});
  report.library.route = Route::kFirmware;
  EXPECT_EQ(VerdictOf(report, "controller").level, Level::kAct);
  report = ReportWith({{"temperature.cpu", N(40)}});
  report.library.route = Route::kFirmware;
  EXPECT_EQ(VerdictOf(report, "controller").level, Level::kGood);
  report = ReportWith({{"ec.table_version", N(28)}});
  report.error = "the library is not ready";
  EXPECT_EQ(VerdictOf(report, "controller").level, Level::kAct);
  EXPECT_EQ(VerdictOf(report, "controller").finding, "The library is not ready.");
}

// Whatever is missing, each verdict says something, in sentences, and names its rule whole.
TEST(Verdicts, EachHasASentenceAndARule) {
  for (const Status status : {Status::kOk, Status::kNoAnswer, Status::kUnsupported, Status::kNotPresent,
                              Status::kNotCollected, Status::kError}) {
    Report report = ReportWith({});
    for (Reading& reading : report.readings) {
      if (status != Status::kOk) reading = Missing(*reading.row, status, "");
    }
    EXPECT_EQ(Judge(report).size(), 11u);
    for (const Verdict& verdict : Judge(report)) {
      EXPECT_TRUE(verdict.finding.ends_with('.')) << verdict.id << ": " << verdict.finding;
      EXPECT_TRUE(verdict.rule.ends_with('.')) << verdict.id << ": " << verdict.rule;
    }
  }
}

}  // namespace
}  // namespace vexahealth
