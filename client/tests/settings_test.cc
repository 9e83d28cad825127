// Settings: what "settings" tells, what "settings set" calls in which order, and what is claimed afterwards.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "client/exit_codes.h"
#include "client/settings_calls.h"
#include "client/settings_report.h"
#include "client/tests/fake_library.h"

namespace vexahealth {
namespace {

using Json = nlohmann::ordered_json;
using Calls = std::vector<std::string>;

// A firmware with its settings and the places that remember them.
struct Machine {
  bool firmware_answers = true;
  bool offers_limit = true;
  std::optional<uint32_t> fan = 0;  // nothing: the firmware has none
  bool refuses = false;
  bool fan_is_stuck = false;          // accepts and does not switch
  std::optional<uint32_t> key_limit;  // of the hotkey utility; nothing: its device is not there
  bool folder_stored = false;
  bool folder_exists = false;
  bool files_are_read_only = false;
  std::optional<uint32_t> limit_file;
  std::optional<uint32_t> fan_file;
};

constexpr ChangeRequest kLimit80 = {.setting = Setting::kChargeLimit, .value = 80};
constexpr ChangeRequest kFanOn = {.setting = Setting::kQuietFan, .value = 1};
constexpr Machine kWithFolder = {.folder_stored = true, .folder_exists = true};

class SettingsTest : public testing::Test {
 protected:
  void SetUp() override { Be({}); }

  void Be(const Machine& machine) {
    machine_ = machine;
    TheScript() = {};
    TheScript().SetText("WMIGetAppPath", machine.folder_stored ? "C:\\App" : "ERROR_READREG");
    TheScript().before_call = [this](std::string_view call) { Answer(call); };
  }

  void Show() {
    const vexa::Library library = FakeLibrary();
    settings_ = DecideSettings(AskSettings(ContextFor(library)));
  }

  Change Set(const ChangeRequest& request) {
    TheScript().calls.clear();
    const vexa::Library library = FakeLibrary();
    facts_ = CarryOut(request, ContextFor(library));
    change_ = DecideChange(request, facts_);
    settings_ = DecideSettings(NewestAnswers(facts_));
    EXPECT_EQ(change_.error.empty(), change_.outcome == Outcome::kAccepted || change_.outcome == Outcome::kPlanned);
    return change_;
  }

  SettingsReport Report(bool with_change) {
    SettingsReport report{.library = {.path = "C:\\x\\VexaWinIO64.dll", .loaded = true, .needs_driver = false},
                          .change = {},
                          .settings = settings_,
                          .error = {}};
    if (with_change) report.change = change_;
    if (with_change) report.error = change_.error;
    return report;
  }
  const Reading& At(SettingRow row) { return settings_[row]; }
  bool Tells(SettingRow row, std::string_view words) { return At(row).note.find(words) != std::string::npos; }
  static bool HasText(const Calls& texts, std::string_view words) {
    return std::ranges::any_of(texts, [=](const auto& text) { return text.find(words) != std::string::npos; });
  }
  bool Verified(std::string_view words) { return HasText(change_.verified, words); }
  bool NotVerified(std::string_view words) { return HasText(change_.not_verified, words); }

  Machine machine_;
  std::vector<Reading> settings_;
  ChangeFacts facts_;
  Change change_;

 private:
  // The state that the next call meets, and what it leaves.
  void Answer(std::string_view call) {
    Script& script = TheScript();
    const bool folder = machine_.folder_exists;
    const bool works = machine_.firmware_answers;
    const bool accepts = works && !machine_.refuses;
    const bool writes = folder && !machine_.files_are_read_only;
    if (call.starts_with("WMISetQuietFan ") && accepts) {
      if (!machine_.fan_is_stuck) machine_.fan = call.back() - '0';
      if (writes) machine_.fan_file = call.back() - '0';
    }
    if (call == "WMISetBatteryHealthToUser 80" && writes) machine_.limit_file = 80;
    if (call == "WMISetBatteryHealthToUser 100" && writes) machine_.limit_file = 100;
    script["WMICheckBatteryHealthSupport"] = works && machine_.offers_limit;
    script["WMICheckQuietFanSupport"] = works && machine_.fan ? *machine_.fan : VEXA_NOT_SUPPORTED;
    script["WMIGetBatteryHealth"] = machine_.key_limit.value_or(folder ? machine_.limit_file.value_or(100) : 100);
    script["WMIGetQuietFan"] = folder ? machine_.fan_file.value_or(0) : 0;
    script["WMIGetAppPath"] = machine_.folder_stored;
    script["WMICheckAppExist"] = folder;
    script["WMISetBatteryHealth"] = script["WMISetQuietFan"] = accepts;
    script["WMISetBatteryHealthToUser"] = writes;
  }
};

TEST_F(SettingsTest, EachRowIsTold) {
  Be({.fan = 1, .folder_stored = true, .folder_exists = true, .limit_file = 60, .fan_file = 2});
  Show();
  const Value expected[] = {true, int64_t{60}, true, int64_t{2}, "C:\\App", true};
  for (size_t i = 0; i < kSettingRowCount; ++i) EXPECT_EQ(settings_[i].value, expected[i]) << kSettingRows[i].key;
  EXPECT_TRUE(FirmwareAnswered(settings_));
}

TEST_F(SettingsTest, OneAnswerOfTheFirmwareExplainsTheOther) {
  const struct {
    Machine machine;
    Status limit, fan;
    Value limit_value;
  } cases[] = {{{}, Status::kOk, Status::kOk, true},
               {{.offers_limit = false}, Status::kOk, Status::kOk, false},
               {{.fan = std::nullopt}, Status::kOk, Status::kUnsupported, true},
               {{.firmware_answers = false}, Status::kNoAnswer, Status::kNoAnswer, {}}};
  for (const auto& test : cases) {
    Be(test.machine);
    Show();
    EXPECT_EQ(At(kLimitSupported).status, test.limit);
    EXPECT_EQ(At(kLimitSupported).value, test.limit_value);
    EXPECT_EQ(At(kFanState).status, test.fan);
    EXPECT_EQ(FirmwareAnswered(settings_), test.machine.firmware_answers);
  }
}

TEST_F(SettingsTest, WhatCantBeKnownIsSaidBesideRememberedValues) {
  Show();
  EXPECT_TRUE(Tells(kLimitRemembered, "or unknown: 100 stands"));
  EXPECT_TRUE(Tells(kLimitSupported, "can't be read"));
  EXPECT_TRUE(Tells(kFanRemembered, "or unknown: 0 stands"));
  EXPECT_EQ(OriginOf(kLimitRemembered, 80, false), "from the hotkey utility's key: no application folder is known");
  EXPECT_EQ(OriginOf(kLimitRemembered, 80, true), "from the hotkey utility's key or the setting file");
  EXPECT_EQ(OriginOf(kLimitRemembered, 80, std::nullopt), OriginOf(kLimitRemembered, 80, true));
  EXPECT_EQ(OriginOf(kLimitRemembered, 73, true), "from the setting file, which holds any number");
  EXPECT_EQ(OriginOf(kFanRemembered, 3, true), "from the hotkey utility's key or the setting file");
  EXPECT_EQ(OriginOf(kFanRemembered, 4, true), "from the setting file, which holds any number");
  EXPECT_NE(OriginOf(kLimitRemembered, 100, false), OriginOf(kLimitRemembered, 100, true));
}

TEST_F(SettingsTest, TheErrorTextOfTheFolderIsNoPath) {
  Show();
  EXPECT_EQ(At(kFolder).status, Status::kNotPresent);
  EXPECT_EQ(At(kFolder).value, Value());
  EXPECT_EQ(At(kFolderExists).status, Status::kNotPresent);
  Be({.folder_stored = true});
  Show();
  EXPECT_EQ(At(kFolderExists).value, Value(false));
  TheScript().SetText("WMIGetAppPath", "");
  Show();
  EXPECT_EQ(At(kFolder).status, Status::kNotPresent);
}

TEST_F(SettingsTest, AMissingExportCostsItsRow) {
  TheScript().missing = {"WMICheckQuietFanSupport", "WMIGetAppPath"};
  Show();
  EXPECT_EQ(At(kFanState).status, Status::kUnsupported);
  EXPECT_EQ(At(kFolder).status, Status::kUnsupported);
  EXPECT_EQ(At(kFolderExists).value, Value(false));
  EXPECT_EQ(std::ranges::count(settings_, Status::kOk, &Reading::status), 4);
}

// What each change claims, on many machines.
TEST_F(SettingsTest, ClaimsOfAChange) {
  struct Case {
    const char* what;
    Machine machine;
    ChangeRequest request;
    int exit_code;
    std::optional<bool> accepted, file_written, reads_back;
    const char* verified;      // among what is verified; "" nothing of the kind is asked
    const char* not_verified;  // among what is not
  };
  const std::optional<bool> no;
  const ChangeRequest limit_100 = {.setting = Setting::kChargeLimit, .value = 100};
  const ChangeRequest fan_off = {.setting = Setting::kQuietFan, .value = 0};
  Machine with_key_60 = kWithFolder, with_key_80 = kWithFolder, read_only = kWithFolder, refusing = kWithFolder,
          other_before = kWithFolder, fan_before = kWithFolder;
  with_key_60.key_limit = 60;
  with_key_80.key_limit = 80;
  read_only.files_are_read_only = true;
  refusing.refuses = true;
  other_before.limit_file = 60;
  fan_before.fan = fan_before.fan_file = 1;
  // clang-format off: a case in few lines
  const Case cases[] = {
      {"limit", kWithFolder, kLimit80, kExitOk, true, true, true, "reads as 80 %, from the setting file",
       "inside the firmware"},
      {"limit, no folder", {}, kLimit80, kExitOk, true, no, false, "accepted charge-limit 80 %",
       "no application folder is known to remember it"},
      {"limit, another key", with_key_60, kLimit80, kExitOk, true, true, false, "setting file was written",
       "reads as 60 %: it comes from the hotkey utility's key"},
      {"limit, as before", with_key_80, kLimit80, kExitOk, true, true, true,
       "reads as 80 %, as before; from the hotkey utility's key or the setting file", ""},
      {"limit, read-only", read_only, kLimit80, kExitNotConfirmed, true, false, false, "",
       "the setting file was not written"},
      {"limit, refused", refusing, kLimit80, kExitRefused, false, no, no, "", "inside the firmware"},
      {"limit that stands for unknown", kWithFolder, limit_100, kExitOk, true, true, true, "",
       "reads as 100 %, as before; from the hotkey utility's key or the setting file, or unknown"},
      {"the same, another before", other_before, limit_100, kExitOk, true, true, true,
       "reads as 100 %, from the setting file", ""},
      {"no limit", {.offers_limit = false}, kLimit80, kExitNotSupported, no, no, no, "", ""},
      {"silent firmware", {.firmware_answers = false}, kLimit80, kExitNotSupported, no, no, no, "", ""},
      {"fan", kWithFolder, kFanOn, kExitOk, true, no, true, "reports its quiet fan as on", ""},
      {"fan off", fan_before, fan_off, kExitOk, true, no, true, "mode reads as 0, from the setting file", ""},
      {"fan off as before", kWithFolder, fan_off, kExitOk, true, no, true, "reports its quiet fan as off",
       "mode reads as 0"},
      {"fan, stuck", {.fan_is_stuck = true}, kFanOn, kExitNotConfirmed, true, no, false, "", "as off"},
      {"fan, refused", {.refuses = true}, kFanOn, kExitRefused, false, no, false, "", "reports its quiet fan as off"},
      {"no fan", {.fan = std::nullopt}, kFanOn, kExitNotSupported, no, no, no, "", ""},
  };
  // clang-format on
  for (const Case& test : cases) {
    Be(test.machine);
    Set(test.request);
    EXPECT_EQ(ExitCodeFor(change_.outcome), test.exit_code) << test.what;
    EXPECT_EQ(change_.accepted, test.accepted) << test.what;
    EXPECT_EQ(change_.file_written, test.file_written) << test.what;
    EXPECT_EQ(change_.reads_back, test.reads_back) << test.what;
    EXPECT_TRUE(test.verified[0] == '\0' || Verified(test.verified)) << test.what;
    EXPECT_TRUE(test.not_verified[0] == '\0' || NotVerified(test.not_verified)) << test.what;
    EXPECT_EQ(Verified("accepted"), test.accepted == true) << test.what;
    EXPECT_EQ(TheScript().Called("WMISet"), test.accepted.has_value()) << test.what;
    EXPECT_EQ(TheScript().Called("WMISetBatteryHealthToUser"), test.file_written.has_value()) << test.what;
  }
}

TEST_F(SettingsTest, CallsComeInOrder) {
  Be(kWithFolder);
  Set(kLimit80);
  EXPECT_EQ(TheScript().calls,
            (Calls{"WMICheckBatteryHealthSupport", "WMIGetBatteryHealth", "WMICheckAppExist", "WMISetBatteryHealth 80",
                   "WMISetBatteryHealthToUser 80", "WMIGetBatteryHealth"}));
  EXPECT_EQ(change_.before, Value(int64_t{100}));
  EXPECT_EQ(At(kLimitRemembered).value, Value(int64_t{80}));
  Set(kFanOn);
  EXPECT_EQ(TheScript().calls, (Calls{"WMICheckQuietFanSupport", "WMIGetQuietFan", "WMICheckAppExist",
                                      "WMISetQuietFan 1", "WMICheckQuietFanSupport", "WMIGetQuietFan"}));
  EXPECT_EQ(change_.before, Value(false));
}

TEST_F(SettingsTest, ADryRunSetsNothing) {
  Be(kWithFolder);
  for (ChangeRequest request : {kLimit80, kFanOn}) {
    request.dry_run = true;
    Set(request);
    EXPECT_EQ(change_.outcome, Outcome::kPlanned);
    EXPECT_TRUE(HasText(change_.plan, "setting file"));
    EXPECT_FALSE(TheScript().Called("WMISet"));
  }
  Be({});
  Set({.setting = Setting::kChargeLimit, .value = 60, .dry_run = true});
  EXPECT_TRUE(HasText(change_.plan, "remember nothing"));
}

TEST_F(SettingsTest, ALibraryWithoutTheExportIsNotAskedAtAll) {
  TheScript().missing = {"WMISetBatteryHealth"};
  Set(kLimit80);
  EXPECT_EQ(change_.outcome, Outcome::kNotSupported);
  EXPECT_NE(change_.error.find("WMISetBatteryHealth"), std::string::npos);
  Be(kWithFolder);
  TheScript().missing = {"WMISetBatteryHealthToUser"};
  Set(kLimit80);
  EXPECT_EQ(change_.outcome, Outcome::kNotConfirmed);
}

TEST_F(SettingsTest, JsonAndTableOfAChange) {
  Be(kWithFolder);
  Set(kLimit80);
  const Json json = Json::parse(SettingsJson(Report(true)));
  EXPECT_EQ(json["change"]["setting"], "charge-limit");
  EXPECT_EQ(json["change"]["requested"], 80);
  EXPECT_EQ(json["change"]["outcome"], "accepted");
  EXPECT_EQ(json["change"]["before"], 100);
  EXPECT_EQ(json["change"]["file_written"], true);
  EXPECT_EQ(json["readings"]["quiet_fan.state"]["status"], "not_collected");
  const std::string table = SettingsTable(Report(true));
  EXPECT_NE(table.find("charge-limit 80 %: accepted by the firmware\n"), std::string::npos);
  EXPECT_NE(table.find("  not verified  the limit inside the firmware"), std::string::npos);
  EXPECT_EQ(table.find("Quiet fan"), std::string::npos);
  Show();
  EXPECT_NE(SettingsTable(Report(false)).find("  C:\\App\n"), std::string::npos);
}

TEST_F(SettingsTest, HostilePathsAndWordsStayInsideTheirStrings) {
  Be(kWithFolder);
  TheScript().SetText("WMIGetAppPath", "C:\\\x1b[2J\"}\n");
  Show();
  SettingsReport report = Report(false);
  report.error = ParseChange("charge-limit", "\x1b\xff\"").error;
  const std::string text = SettingsJson(report);
  EXPECT_TRUE(std::ranges::all_of(text, [](char c) { return c == '\n' || (c >= 0x20 && c < 0x7F); })) << text;
  EXPECT_EQ(Json::parse(text)["readings"]["application.folder"]["value"], "C:\\\x1b[2J\"}\n");
  EXPECT_EQ(SettingsTable(report).find('\x1b'), std::string::npos);
}

TEST(ParseChange, TakesTheAllowedWordsOnly) {
  for (const char* value : {"60", "80", "100"}) {
    EXPECT_EQ(ParseChange("charge-limit", value).error, "");
    EXPECT_EQ(std::to_string(ParseChange("charge-limit", value).request.value), value);
  }
  for (const char* value : {"", "70", "080", "80 ", "+80", "80%", "on", "0", "600"}) {
    EXPECT_NE(ParseChange("charge-limit", value).error.find("60, 80 or 100"), std::string::npos) << value;
  }
  EXPECT_EQ(ParseChange("quiet-fan", "off").request.setting, Setting::kQuietFan);
  EXPECT_EQ(ParseChange("quiet-fan", "off").request.value, 0);
  EXPECT_EQ(ParseChange("quiet-fan", "on").request.value, 1);
  for (const char* value : {"", "ON", "1", "80"}) EXPECT_NE(ParseChange("quiet-fan", value).error, "") << value;
  EXPECT_NE(ParseChange("lid", "on").error, "");
}

}  // namespace
}  // namespace vexahealth
