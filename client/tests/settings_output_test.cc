// The settings as JSON and as a table.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "client/settings_calls.h"
#include "client/settings_report.h"
#include "client/tests/scripted_settings.h"

namespace vexahealth {
namespace {

using Json = nlohmann::ordered_json;

std::string Narrowed(std::wstring_view text) { return std::string(text.begin(), text.end()); }

LibraryState Loaded() {
  return {.path = "C:\\x\\VexaWinIO64.dll", .loaded = true, .needs_driver = false, .version = 0x00010001};
}

SettingsReport Shown(const SettingsMachine& machine) {
  TheMachine() = machine;
  return {.library = Loaded(),
          .change = {},
          .settings = DecideSettings(AskSettings(ScriptedSettings(), Narrowed)),
          .error = {}};
}

SettingsReport Changed(const SettingsMachine& machine, const ChangeRequest& request) {
  TheMachine() = machine;
  const ChangeFacts facts = CarryOut(request, ScriptedSettings());
  SettingsReport report{.library = Loaded(),
                        .change = DecideChange(request, facts),
                        .settings = DecideSettings(NewestAnswers(facts)),
                        .error = {}};
  report.error = report.change->error;
  return report;
}

void ExpectAllSettings(const Json& json) {
  ASSERT_EQ(json["readings"].size(), kSettingRows.size());
  size_t row = 0;
  for (const auto& [key, reading] : json["readings"].items()) {
    EXPECT_EQ(key, kSettingRows[row++].key);
    EXPECT_EQ(reading.size(), 5u) << key;
    EXPECT_EQ(reading["value"].is_null(), reading["status"] != "ok") << key;
  }
}

TEST(SettingsJson, EverySettingHasItsMembers) {
  const Json json = Json::parse(SettingsJson(Shown({.key_limit = 60, .folder = L"C:\\App"})));
  ExpectAllSettings(json);
  EXPECT_FALSE(json.contains("change"));
  EXPECT_EQ(json["library"]["ready"], nullptr);
  EXPECT_EQ(json["command"], "settings");
  EXPECT_EQ(json["readings"]["charge_limit.remembered"],
            Json::parse(R"({"value": 60, "unit": "%", "status": "ok", "source": "WMIGetBatteryHealth",
                           "reason": "from the hotkey utility's key: no application folder is known"})"));
  EXPECT_EQ(json["readings"]["quiet_fan.state"]["value"], false);
  EXPECT_TRUE(json["readings"]["charge_limit.remembered"]["reason"].is_string());
}

TEST(SettingsJson, AChangeTellsItsFacts) {
  const SettingsMachine machine{.folder = L"C:\\App", .folder_exists = true};
  Json json = Json::parse(SettingsJson(Changed(machine, {.setting = Setting::kChargeLimit, .value = 60})));
  ExpectAllSettings(json);
  EXPECT_EQ(json["error"], nullptr);
  EXPECT_EQ(json["change"]["setting"], "charge-limit");
  EXPECT_EQ(json["change"]["requested"], 60);
  EXPECT_EQ(json["change"]["outcome"], "accepted");
  EXPECT_EQ(json["change"]["before"], 100);
  EXPECT_EQ(json["change"]["file_written"], true);
  EXPECT_EQ(json["readings"]["charge_limit.remembered"]["value"], 60);
  EXPECT_EQ(json["readings"]["quiet_fan.state"]["status"], "not_collected");

  json = Json::parse(
      SettingsJson(Changed({.fan = std::nullopt}, {.setting = Setting::kQuietFan, .value = 1, .dry_run = true})));
  EXPECT_NE(json["error"], nullptr);
  EXPECT_EQ(json["change"]["requested"], true);
  EXPECT_EQ(json["change"]["dry_run"], true);
  EXPECT_EQ(json["change"]["outcome"], "not_supported");
  EXPECT_EQ(json["change"]["accepted"], nullptr);
  EXPECT_EQ(json["readings"]["quiet_fan.state"]["status"], "unsupported");
}

TEST(SettingsJson, HostilePathsAndWordsStayInsideTheirStrings) {
  SettingsReport report = Shown({.folder = L"C:\\\x1b[2J\"}\n"});
  report.error = ParseChange("charge-limit", "\x1b\xff\"").error;
  const std::string text = SettingsJson(report);
  EXPECT_TRUE(std::ranges::all_of(text, [](char c) { return c == '\n' || (c >= 0x20 && c < 0x7F); })) << text;
  EXPECT_EQ(Json::parse(text)["readings"]["application.folder"]["value"], "C:\\\x1b[2J\"}\n");
  EXPECT_EQ(SettingsTable(report).find('\x1b'), std::string::npos);
}

TEST(SettingsTable, ShowsAllSettingsOrThoseOfTheChange) {
  std::string table = SettingsTable(Shown({.fan = 1, .folder = L"C:\\App"}));
  EXPECT_NE(table.find("  C:\\App\n"), std::string::npos);
  EXPECT_NE(table.find("\nCharge limit\n"), std::string::npos);
  EXPECT_NE(table.find("State in the firmware"), std::string::npos);
  EXPECT_NE(table.find("  on\n"), std::string::npos);
  table = SettingsTable(Changed({}, {.setting = Setting::kChargeLimit, .value = 80}));
  EXPECT_NE(table.find("charge-limit 80 %: accepted by the firmware\n"), std::string::npos);
  EXPECT_NE(table.find("  not verified  the limit inside the firmware"), std::string::npos);
  EXPECT_EQ(table.find("Quiet fan"), std::string::npos);
}

}  // namespace
}  // namespace vexahealth
