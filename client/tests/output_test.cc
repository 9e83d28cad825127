// The two outputs, JSON and table, over the readings of a scripted library.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "client/collect.h"
#include "client/json_report.h"
#include "client/table.h"
#include "client/tests/scripted_library.h"
#include "client/text.h"

namespace vexahealth {
namespace {

using Json = nlohmann::ordered_json;

std::string AsItIs(std::string_view text) { return std::string(text); }

Report ReportOf(const Script& script) {
  TheScript() = script;
  return {
      .library = {.path = "C:\\x\\VexaWinIO64.dll",
                  .loaded = true,
                  .ready = true,
                  .version = 0x00010001,
                  .route = Route::kDriver},
      .readings = Collect(
          {.resolve = ScriptedExports(), .ready = true, .may_wait = true, .route = Route::kDriver, .decode = AsItIs}),
      .error = {}};
}

std::vector<std::string> Lines(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::string LineWith(const std::string& table, std::string_view label) {
  for (const std::string& line : Lines(table)) {
    if (line.find(label) != std::string::npos) return line;
  }
  return "";
}

TEST(JsonReport, EveryReadingHasItsMembers) {
  const Json json = Json::parse(JsonText(ReportOf(HealthyScript())));
  EXPECT_EQ(json["schema_version"], 1);
  EXPECT_EQ(json["error"], nullptr);
  EXPECT_EQ(json["library"]["version"], "1.1");
  ASSERT_EQ(json["readings"].size(), 35u);
  size_t row = 0;
  for (const auto& [key, reading] : json["readings"].items()) {
    EXPECT_EQ(key, kRows[row++].key);
    std::vector<std::string> members;
    for (const auto& member : reading.items()) members.push_back(member.key());
    EXPECT_EQ(members, (std::vector<std::string>{"value", "unit", "status", "source", "reason"})) << key;
    EXPECT_EQ(reading["value"].is_null(), reading["status"] != "ok") << key;
  }
  EXPECT_EQ(json["readings"]["battery.rsoc"],
            Json::parse(
                R"({"value": 87, "unit": "%", "status": "ok", "source": "BatteryHealthyTable_Rsoc", "reason": null})"));
  EXPECT_EQ(json["readings"]["battery.current"]["value"], -1234);
  EXPECT_EQ(json["readings"]["battery.manufacture_date"]["value"], "2023-04-20");
  EXPECT_EQ(json["readings"]["battery.error"]["value"], false);
  EXPECT_EQ(json["readings"]["battery.error"]["unit"], nullptr);
  EXPECT_TRUE(json["readings"]["battery.error"]["reason"].is_string());
}

TEST(JsonReport, HostileTextsStayInsideTheirStrings) {
  Script script = HealthyScript();
  script.texts["battery.device_name"] = "\xff\"},\x1b[2J\\ \u202e\u009b";
  const std::string text = JsonText(ReportOf(script));
  EXPECT_TRUE(std::ranges::all_of(text, [](char c) { return c == '\n' || (c >= 0x20 && c < 0x7F); })) << text;
  EXPECT_EQ(Json::parse(text)["readings"]["battery.device_name"]["value"], "\ufffd\"},\x1b[2J\\ \u202e\u009b");
}

TEST(JsonReport, AFailureKeepsTheShape) {
  const Report report{.library = {}, .readings = NothingCollected("why"), .error = "no \xff library"};
  const Json json = Json::parse(JsonText(report));
  EXPECT_EQ(json["error"], "no \ufffd library");
  EXPECT_EQ(json["library"]["loaded"], false);
  ASSERT_EQ(json["readings"].size(), 35u);
  for (const auto& reading : json["readings"]) EXPECT_EQ(reading["status"], "not_collected");
  EXPECT_EQ(json["readings"]["lid.state"]["reason"], "why");
}

TEST(JsonReport, HelpAndVersionAreOneValueToo) {
  EXPECT_EQ(Json::parse(JsonHelpText("a\nb"))["help"], "a\nb");
  EXPECT_EQ(Json::parse(JsonVersionText({}, "missing"))["error"], "missing");
}

TEST(Table, GroupsAndExplains) {
  Script script = HealthyScript();
  script.numbers["battery.cycle_count"] = VEXA_NO_ANSWER;
  const std::string table = TableText(ReportOf(script));
  EXPECT_NE(table.find("\nEmbedded controller\n"), std::string::npos);
  EXPECT_NE(LineWith(table, "Temperature").find("25.1 °C (298.2 K)"), std::string::npos);
  EXPECT_NE(LineWith(table, "Charge cycles").find("no answer: the EC did not answer"), std::string::npos);
  EXPECT_NE(LineWith(table, "Cell 4").find("not present: "), std::string::npos);
  EXPECT_LT(table.find("Manufacture information"), table.find("Charger, power and lid"));
}

TEST(Table, NotesAlignUnderWideAndMultibyteValues) {
  Script script = HealthyScript();
  script.texts["battery.manufacture_information"] = "電池電池é,0x0";
  script.numbers["battery.cell_voltage_1"] = VEXA_NO_ANSWER;
  const std::string table = TableText(ReportOf(script));
  const auto column = [&](std::string_view label, std::string_view mark) {
    const std::string line = LineWith(table, label);
    return DisplayWidth(line.substr(0, line.find(mark)));
  };
  const size_t notes = column("Battery error", "cross-checked");
  EXPECT_EQ(column("Manufacture information", "0x0 also"), notes);
  EXPECT_EQ(column("Cell 1", "no answer"), notes);
}

TEST(Table, LongValuesAreBrokenAndKeepTheColumns) {
  Script script = HealthyScript();
  std::string& bytes = script.texts["battery.manufacture_information"];
  for (int i = 0; i < 32; ++i) bytes += std::string(i == 0 ? "" : ",") + "0xab";
  for (const std::string& line : Lines(TableText(ReportOf(script)))) EXPECT_LE(DisplayWidth(line), 120u) << line;
  std::string joined;
  bool inside = false;
  for (const std::string& line : Lines(TableText(ReportOf(script)))) {
    inside = line.find("Manufacture information") != std::string::npos || (inside && line.starts_with("    "));
    if (inside) joined += line.substr(line.find("0x"));
  }
  EXPECT_EQ(joined, bytes);
}

TEST(Table, HostileTextsAreShownNotObeyed) {
  Script script = HealthyScript();
  script.texts["battery.device_name"] = "\x1b[31m\r\nExternal power  yes";
  const std::string table = TableText(ReportOf(script));
  EXPECT_EQ(table.find('\x1b'), std::string::npos);
  EXPECT_EQ(table.find('\r'), std::string::npos);
  EXPECT_NE(LineWith(table, "Device name").find("\\x1b[31m\\x0d\\x0aExternal"), std::string::npos);
}

}  // namespace
}  // namespace vexahealth
