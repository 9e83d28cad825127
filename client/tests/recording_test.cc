// The scenario of a recording, and the places that it puts answers to.
#include "client/recording.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

namespace vexahealth {
namespace {

using Json = nlohmann::ordered_json;

Told Number(uint32_t number) { return {.number = number, .text = {}}; }
Told Text(const char* text) { return {.number = 1, .text = text}; }

Recording DriverRecording() {
  Recording recording{.route = Route::kDriver, .time = "2026-02-03T08:05:00.000Z", .answers = {}, .part = {}};
  recording.answers = {{"ec.table_version", Number(28)},
                       {"battery.rsoc", Number(84)},
                       {"battery.current", Number(0xFFFFFA74)},
                       {"battery.serial_number", Number(19754)},
                       {"battery.voltage", Number(VEXA_NO_ANSWER)}};
  return recording;
}

Json ScenarioOf(const Recording& recording, Serials serials = Serials::kShow) {
  return Json::parse(ScenarioText(recording, serials));
}

// The register at this offset of a group, or null.
Json Register(const Json& scenario, int group, const char* offset) {
  for (const Json& entry : scenario["ec"]["groups"]) {
    if (entry["group"] != group) continue;
    for (const Json& row : entry["registers"]) {
      if (row["offset"] == offset) return row;
    }
  }
  return nullptr;
}

TEST(RecordScenario, WhatDidNotAnswerFailsAtItsFirstRegister) {
  const Json scenario = ScenarioOf(DriverRecording());
  EXPECT_EQ(Register(scenario, 1, "0x38")["word"], 0xFA74);
  EXPECT_EQ(Register(scenario, 1, "0x36"), nullptr);
  EXPECT_EQ(Register(scenario, 1, "0x37")["status"], 5);  // its high byte is asked for first
  EXPECT_EQ(Register(scenario, 1, "0x2E"), nullptr);      // was not asked
}

TEST(RecordScenario, SerialNumbersAreMaskedOnBothRoutes) {
  Recording recording = DriverRecording();
  for (const Route route : {Route::kDriver, Route::kFirmware}) {
    recording.route = route;
    EXPECT_EQ(ScenarioText(recording, Serials::kMask).find("19754"), std::string::npos);
    EXPECT_NE(ScenarioText(recording, Serials::kShow).find("19754"), std::string::npos);
  }
}

TEST(RecordScenario, TheGaugesCodeStandsInsideTheName) {
  Recording recording = DriverRecording();
  recording.answers["battery.manufacturer"] = Text("AB");
  recording.answers["battery.gauge_chip"] = Number(0x32);
  EXPECT_EQ(Register(ScenarioOf(recording), 1, "0x10")["hex"], "41 42 00 32 00 00 00 00 00 00 00 00 00 00 00 00");
  recording.answers["battery.manufacturer"].number = 0;
  EXPECT_EQ(Register(ScenarioOf(recording), 1, "0x10")["status"], 5);
  EXPECT_EQ(Register(ScenarioOf(recording), 1, "0x13")["byte"], 0x32);
}

TEST(RecordScenario, FansKeepTheirOrderAndTheirSilence) {
  Recording recording = DriverRecording();
  recording.answers["fan.1.speed"] = Number(0x1234);
  recording.answers["fan.2.speed"] = Number(VEXA_NO_ANSWER);
  recording.answers["fan.count"] = Number(2);
  const Json groups = ScenarioOf(recording)["ec"]["groups"];
  const auto thermal = std::ranges::find_if(groups, [](const Json& group) { return group["group"] == 2; });
  const Json& items = (*thermal)["lists"][0]["items"];
  ASSERT_EQ(items.size(), 2u);
  EXPECT_EQ(items[0][0]["word"], 0x1234);
  EXPECT_EQ(items[1][0]["word"], 0);
  EXPECT_FALSE(ScenarioOf(recording).contains("rules"));
  recording.answers["fan.1.speed"] = Number(VEXA_NO_ANSWER);
  EXPECT_EQ(ScenarioOf(recording)["rules"][0]["on"]["offset"], "0x34");
}

TEST(RecordScenario, AGaugeThatIsSilentStaysSilent) {
  Recording recording = DriverRecording();
  recording.answers["battery.safety_status"] = Number(VEXA_NO_ANSWER);
  recording.answers["battery.permanent_failure_status"] = Number(0x80000000);
  const Json scenario = ScenarioOf(recording);
  ASSERT_EQ(scenario["ec"]["gauge"].size(), 1u);
  EXPECT_EQ(scenario["ec"]["gauge"][0]["dword"], 0x80000000);
  EXPECT_EQ(scenario["rules"][0]["on"]["data"], Json({"0x03", "0x51"}));
}

}  // namespace
}  // namespace vexahealth
