// "settings set": what is called, in which order, and what is claimed afterwards.
#include "client/change.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "client/exit_codes.h"
#include "client/settings_calls.h"
#include "client/tests/scripted_settings.h"

namespace vexahealth {
namespace {

using Calls = std::vector<std::string>;

constexpr ChangeRequest kLimit80 = {.setting = Setting::kChargeLimit, .value = 80};
constexpr ChangeRequest kFanOn = {.setting = Setting::kQuietFan, .value = 1};

class ChangeTest : public testing::Test {
 protected:
  void SetUp() override { TheMachine() = SettingsMachine{}; }

  Change Run(const ChangeRequest& request) {
    facts_ = CarryOut(request, exports_);
    change_ = DecideChange(request, facts_);
    EXPECT_EQ(change_.error.empty(), change_.outcome == Outcome::kAccepted || change_.outcome == Outcome::kPlanned);
    return change_;
  }
  static bool HasText(const Calls& texts, std::string_view words) {
    return std::ranges::any_of(texts, [=](const auto& text) { return text.find(words) != std::string::npos; });
  }
  bool Verified(std::string_view words) { return HasText(change_.verified, words); }
  bool NotVerified(std::string_view words) { return HasText(change_.not_verified, words); }
  static bool SomethingWasSet() { return HasText(TheMachine().calls, "WMISet"); }
  static void GiveFolder() {
    TheMachine().folder = L"C:\\App";
    TheMachine().folder_exists = true;
  }

  SettingExports exports_ = ScriptedSettings();
  ChangeFacts facts_;
  Change change_;
};

TEST_F(ChangeTest, AnAcceptedLimitIsWrittenToItsFileAndReadBack) {
  GiveFolder();
  Run(kLimit80);
  EXPECT_EQ(TheMachine().calls,
            (Calls{"WMICheckBatteryHealthSupport", "WMIGetBatteryHealth", "WMICheckAppExist", "WMISetBatteryHealth 80",
                   "WMISetBatteryHealthToUser 80", "WMIGetBatteryHealth"}));
  EXPECT_TRUE(std::ranges::all_of(TheMachine().com_flags, [](uint32_t flag) { return flag == 1; }));
  EXPECT_EQ(ExitCodeFor(change_.outcome), kExitOk);
  EXPECT_EQ(change_.before, Value(int64_t{100}));
  EXPECT_EQ(change_.accepted, true);
  EXPECT_EQ(change_.file_written, true);
  EXPECT_EQ(change_.reads_back, true);
  EXPECT_TRUE(Verified("accepted charge-limit 80 %"));
  EXPECT_TRUE(Verified("reads as 80 %, from the setting file"));
  EXPECT_TRUE(NotVerified("inside the firmware"));
  EXPECT_EQ(DecideSettings(NewestAnswers(facts_))[kLimitRemembered].value, Value(int64_t{80}));
}

TEST_F(ChangeTest, WithoutAFolderNothingIsWritten) {
  Run(kLimit80);
  EXPECT_FALSE(HasText(TheMachine().calls, "WMISetBatteryHealthToUser"));
  EXPECT_EQ(change_.outcome, Outcome::kAccepted);
  EXPECT_EQ(change_.file_written, std::nullopt);
  EXPECT_EQ(change_.reads_back, false);
  EXPECT_FALSE(Verified("remembered"));
  EXPECT_TRUE(NotVerified("no application folder is known to remember it"));
}

TEST_F(ChangeTest, AKeyThatSaysOtherwiseIsTold) {
  GiveFolder();
  TheMachine().key_limit = 60;
  Run(kLimit80);
  EXPECT_EQ(change_.outcome, Outcome::kAccepted);
  EXPECT_EQ(change_.reads_back, false);
  EXPECT_TRUE(NotVerified("reads as 60 %: it comes from the hotkey utility's key"));
}

TEST_F(ChangeTest, AValueThatWasThereBeforeProvesNoWriting) {
  GiveFolder();
  TheMachine().key_limit = 80;
  Run(kLimit80);
  EXPECT_TRUE(Verified("reads as 80 %, as before; from the hotkey utility's key or the setting file"));
  EXPECT_FALSE(Verified("80 %, from the setting file"));
}

TEST_F(ChangeTest, AValueThatStandsForUnknownProvesNothingUnlessItChanged) {
  GiveFolder();
  Run({.setting = Setting::kChargeLimit, .value = 100});
  EXPECT_EQ(change_.reads_back, true);
  EXPECT_FALSE(Verified("remembered"));
  EXPECT_TRUE(NotVerified("reads as 100 %, as before; from the hotkey utility's key or the setting file, or unknown"));
  Run({.setting = Setting::kQuietFan, .value = 0});
  EXPECT_FALSE(Verified("remembered"));
  TheMachine().limit_file = 60;
  TheMachine().fan_file = 1;
  Run({.setting = Setting::kChargeLimit, .value = 100});
  EXPECT_TRUE(Verified("reads as 100 %, from the setting file"));
  Run({.setting = Setting::kQuietFan, .value = 0});
  EXPECT_TRUE(Verified("mode reads as 0, from the setting file"));
}

TEST_F(ChangeTest, AFileThatCantBeWrittenIsNotConfirmed) {
  GiveFolder();
  TheMachine().files_are_read_only = true;
  Run(kLimit80);
  EXPECT_EQ(ExitCodeFor(change_.outcome), kExitNotConfirmed);
  EXPECT_EQ(change_.accepted, true);
  EXPECT_EQ(change_.file_written, false);
  EXPECT_TRUE(NotVerified("the setting file was not written"));
}

TEST_F(ChangeTest, ARefusedLimitIsNotRemembered) {
  GiveFolder();
  TheMachine().refuses = true;
  Run(kLimit80);
  EXPECT_EQ(ExitCodeFor(change_.outcome), kExitRefused);
  EXPECT_EQ(change_.accepted, false);
  EXPECT_EQ(TheMachine().limit_file, std::nullopt);
  EXPECT_FALSE(HasText(TheMachine().calls, "WMISetBatteryHealthToUser"));
  EXPECT_TRUE(change_.verified.empty());
}

TEST_F(ChangeTest, WhatTheFirmwareDoesNotOfferIsNotSent) {
  TheMachine().offers_limit = false;
  Run(kLimit80);
  EXPECT_EQ(ExitCodeFor(change_.outcome), kExitNotSupported);
  EXPECT_FALSE(SomethingWasSet());
  EXPECT_NE(change_.error.find("the firmware works"), std::string::npos);

  TheMachine() = SettingsMachine{.firmware_answers = false};
  Run(kLimit80);
  EXPECT_EQ(change_.outcome, Outcome::kNotSupported);
  EXPECT_NE(change_.error.find("no answer"), std::string::npos);

  TheMachine() = SettingsMachine{.fan = std::nullopt};
  Run(kFanOn);
  EXPECT_EQ(change_.outcome, Outcome::kNotSupported);
  EXPECT_FALSE(SomethingWasSet());
}

TEST_F(ChangeTest, ADryRunSetsNothing) {
  GiveFolder();
  for (ChangeRequest request : {kLimit80, kFanOn}) {
    request.dry_run = true;
    Run(request);
    EXPECT_EQ(ExitCodeFor(change_.outcome), kExitOk);
    EXPECT_TRUE(HasText(change_.plan, "setting file"));
    EXPECT_EQ(change_.accepted, std::nullopt);
  }
  EXPECT_FALSE(SomethingWasSet());
  TheMachine().folder_exists = false;
  Run({.setting = Setting::kChargeLimit, .value = 60, .dry_run = true});
  EXPECT_TRUE(HasText(change_.plan, "remember nothing"));
  TheMachine().offers_limit = false;
  Run({.setting = Setting::kChargeLimit, .value = 60, .dry_run = true});
  EXPECT_EQ(ExitCodeFor(change_.outcome), kExitNotSupported);
}

TEST_F(ChangeTest, TheQuietFanIsReadBack) {
  GiveFolder();
  Run(kFanOn);
  EXPECT_EQ(TheMachine().calls, (Calls{"WMICheckQuietFanSupport", "WMIGetQuietFan", "WMICheckAppExist",
                                       "WMISetQuietFan 1", "WMICheckQuietFanSupport", "WMIGetQuietFan"}));
  EXPECT_EQ(change_.outcome, Outcome::kAccepted);
  EXPECT_EQ(change_.before, Value(false));
  EXPECT_EQ(change_.reads_back, true);
  EXPECT_TRUE(Verified("reports its quiet fan as on"));
  EXPECT_TRUE(Verified("mode reads as 1"));
  Run({.setting = Setting::kQuietFan, .value = 0});
  EXPECT_EQ(TheMachine().fan, 0u);
  EXPECT_EQ(change_.before, Value(true));
  EXPECT_TRUE(Verified("reports its quiet fan as off"));
}

TEST_F(ChangeTest, AFanThatReadsBackOtherwiseIsNotConfirmed) {
  TheMachine().fan_is_stuck = true;
  Run(kFanOn);
  EXPECT_EQ(ExitCodeFor(change_.outcome), kExitNotConfirmed);
  EXPECT_EQ(change_.accepted, true);
  EXPECT_EQ(change_.reads_back, false);
  EXPECT_TRUE(NotVerified("as off"));
  EXPECT_TRUE(NotVerified("no application folder"));
}

TEST_F(ChangeTest, ARefusedFanKeepsItsState) {
  TheMachine().refuses = true;
  Run(kFanOn);
  EXPECT_EQ(ExitCodeFor(change_.outcome), kExitRefused);
  EXPECT_TRUE(NotVerified("reports its quiet fan as off"));
  EXPECT_FALSE(Verified("accepted"));
}

TEST_F(ChangeTest, ALibraryWithoutTheExportIsNotAskedAtAll) {
  exports_.set_limit = nullptr;
  exports_.remember_limit = nullptr;
  Run(kLimit80);
  EXPECT_EQ(change_.outcome, Outcome::kNotSupported);
  EXPECT_NE(change_.error.find("WMISetBatteryHealth"), std::string::npos);
  exports_ = ScriptedSettings();
  exports_.remember_limit = nullptr;
  GiveFolder();
  Run(kLimit80);
  EXPECT_EQ(change_.outcome, Outcome::kNotConfirmed);
}

TEST(ParseChange, TakesTheAllowedWordsOnly) {
  for (const char* value : {"60", "80", "100"}) {
    const ParsedChange parsed = ParseChange("charge-limit", value);
    EXPECT_EQ(parsed.error, "");
    EXPECT_EQ(std::to_string(parsed.request.value), value);
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
