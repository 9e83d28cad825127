// The scenario of a recording, and the places that it puts answers to.
#include "client/recording.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

#include "client/record_places.h"
#include "ec/catalogue.h"

namespace vexahealth {
namespace {

using Json = nlohmann::ordered_json;

Answer Number(uint32_t number) { return {.form = Answer::Form::kNumber, .number = number, .text = {}}; }
Answer Text(const char* text) { return {.form = Answer::Form::kText, .number = 1, .text = text}; }

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

TEST(RecordPlaces, TheCatalogueHasThemThere) {
  const vexa::EcCommandTable tables[] = {vexa::kEcInfoCommands, vexa::kBatteryPowerCommands, vexa::kThermalCommands};
  size_t compared = 0;
  for (const DriverPlace& place : DriverPlaces()) {
    if (place.catalogue_name.empty()) continue;
    for (const vexa::EcCommandTable table : tables) {
      const auto row = std::ranges::find(table, place.catalogue_name, &vexa::EcCommandEntry::name);
      if (row == table.end()) continue;
      ++compared;
      EXPECT_EQ(row->offset(), place.offset) << place.key;
      EXPECT_EQ(row->length(), place.length) << place.key;
      EXPECT_EQ(row->command() == vexa::kEcInfoRead ? kInformationGroup : row->group(), place.group) << place.key;
    }
  }
  EXPECT_EQ(compared, 17u);
}

TEST(RecordPlaces, EachIsAReadingAndNoneOverlaps) {
  std::set<std::pair<int, int>> taken;
  for (const DriverPlace& place : DriverPlaces()) {
    EXPECT_NE(FindRow(place.key), nullptr) << place.key;
    for (int i = 0; i < place.length; ++i)
      EXPECT_TRUE(taken.insert({place.group, place.offset + i}).second) << place.key;
  }
  for (const DriverBit& bit : DriverBits()) {
    EXPECT_NE(FindRow(bit.key), nullptr) << bit.key;
    EXPECT_FALSE(taken.contains({bit.group, bit.offset})) << bit.key;
  }
  for (const GaugePlace& place : GaugePlaces()) EXPECT_NE(FindRow(place.key), nullptr) << place.key;
  for (const FirmwareGaugePlace& place : FirmwareGaugePlaces()) EXPECT_NE(FindRow(place.key), nullptr) << place.key;
  for (const FirmwarePlace& place : FirmwarePlaces()) EXPECT_NE(FindRow(place.key), nullptr) << place.key;
}

TEST(RecordScenario, NumbersStandAtTheirRegisters) {
  const Json scenario = ScenarioOf(DriverRecording());
  EXPECT_EQ(Register(scenario, 1, "0x30")["word"], 84);
  EXPECT_EQ(Register(scenario, 1, "0x38")["word"], 0xFA74);
  EXPECT_EQ(Register(scenario, 1, "0x28")["word"], 19754);
  EXPECT_EQ(Register(scenario, 1, "0x36"), nullptr);
  EXPECT_EQ(Register(scenario, 1, "0x37")["status"], 5);  // its high byte is asked for first
  EXPECT_EQ(Register(scenario, 1, "0x2E"), nullptr);      // was not asked
}

TEST(RecordScenario, SerialNumbersAreMasked) {
  Recording recording = DriverRecording();
  std::string bytes = "0x4d,0x2a";
  for (int i = 2; i < 32; ++i) bytes += ",0x1";
  recording.answers["battery.manufacture_information"] = Text(bytes.c_str());
  const std::string masked = ScenarioText(recording, Serials::kMask);
  EXPECT_EQ(masked.find("19754"), std::string::npos);
  EXPECT_EQ(masked.find("4D 2A"), std::string::npos);
  EXPECT_NE(ScenarioText(recording, Serials::kShow).find("4D 2A 01 01"), std::string::npos);
  recording.route = Route::kFirmware;
  EXPECT_EQ(ScenarioText(recording, Serials::kMask).find("19754"), std::string::npos);
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

TEST(RecordScenario, TheFirmwaresRegistersStandInItsPart) {
  Recording recording{.route = Route::kFirmware, .time = "", .answers = {}, .part = {}};
  recording.answers = {{"battery.voltage", Number(16155)},
                       {"battery.current", Number(0xFFFFFFFF)},
                       {"battery.manufacturer_smbus", Text("VX")},
                       {"fan.count", Number(2)},
                       {"fan.1.speed", Number(3120)},
                       {"fan.test_mode", Number(1)},
                       {"adapter.standard_power", Number(100)},
                       {"temperature.cpu", Number(VEXA_NO_ANSWER)}};
  const Json scenario = ScenarioOf(recording);
  EXPECT_FALSE(scenario.contains("ec"));
  const Json& ec = scenario["firmware"]["ec"];
  ASSERT_EQ(ec["tables"].size(), 1u);  // the temperature does not answer: table 3 has nothing
  EXPECT_EQ(ec["tables"][0]["registers"][2]["byte"], 2);
  const auto at = [&ec](const char* number) {
    return *std::ranges::find_if(ec["gauge"], [number](const Json& row) { return row["register"] == number; });
  };
  EXPECT_EQ(at("0x09")["word"], 16155);
  EXPECT_EQ(at("0x0A")["word"], 0xFFFF);
  EXPECT_EQ(at("0x20")["hex"], "56 58");
  EXPECT_EQ(at("0x21")["count"], 0);
  EXPECT_EQ(scenario["acpi"]["methods"][0]["result"], 0x10064);
}

}  // namespace
}  // namespace vexahealth
