// What "settings" tells: from the exports' answers to readings.
#include <gtest/gtest.h>

#include <algorithm>

#include "client/settings_calls.h"
#include "client/tests/scripted_settings.h"

namespace vexahealth {
namespace {

std::string Narrowed(std::wstring_view text) { return std::string(text.begin(), text.end()); }

class SettingsTest : public testing::Test {
 protected:
  void SetUp() override { TheMachine() = SettingsMachine{}; }
  void Run() { settings_ = DecideSettings(AskSettings(exports_, Narrowed)); }
  const Reading& At(SettingRow row) { return settings_[row]; }
  bool Tells(SettingRow row, std::string_view words) { return At(row).note.find(words) != std::string::npos; }

  SettingExports exports_ = ScriptedSettings();
  std::vector<Reading> settings_;
};

TEST_F(SettingsTest, EachRowAsksItsOwnExportWithCom) {
  TheMachine().folder = L"C:\\App";
  TheMachine().folder_exists = true;
  TheMachine().limit_file = 60;
  TheMachine().fan_file = 2;
  TheMachine().fan = 1;
  Run();
  for (size_t i = 0; i < kSettingRowCount; ++i) EXPECT_EQ(TheMachine().calls[i], kSettingRows[i].export_name);
  EXPECT_EQ(TheMachine().com_flags, std::vector<uint32_t>(kSettingRowCount, 1));
  EXPECT_EQ(At(kLimitSupported).value, Value(true));
  EXPECT_EQ(At(kLimitRemembered).value, Value(int64_t{60}));
  EXPECT_EQ(At(kFanState).value, Value(true));
  EXPECT_EQ(At(kFanRemembered).value, Value(int64_t{2}));
  EXPECT_EQ(At(kFolder).value, Value("C:\\App"));
  EXPECT_EQ(At(kFolderExists).value, Value(true));
  EXPECT_TRUE(FirmwareAnswered(settings_));
}

TEST_F(SettingsTest, NoAnswerIsNotCalledNotSupported) {
  TheMachine().firmware_answers = false;
  Run();
  EXPECT_EQ(At(kLimitSupported).status, Status::kNoAnswer);
  EXPECT_EQ(At(kFanState).status, Status::kNoAnswer);
  EXPECT_FALSE(FirmwareAnswered(settings_));
}

TEST_F(SettingsTest, OneAnswerOfTheFirmwareExplainsTheOther) {
  TheMachine().offers_limit = false;
  Run();
  EXPECT_EQ(At(kLimitSupported).value, Value(false));
  EXPECT_EQ(At(kFanState).value, Value(false));

  TheMachine() = SettingsMachine{.fan = std::nullopt};
  Run();
  EXPECT_EQ(At(kLimitSupported).value, Value(true));
  EXPECT_EQ(At(kFanState).status, Status::kUnsupported);
}

TEST_F(SettingsTest, WhatCantBeKnownIsSaidBesideRememberedValues) {
  Run();
  EXPECT_EQ(At(kLimitRemembered).value, Value(int64_t{100}));
  EXPECT_TRUE(Tells(kLimitRemembered, "or unknown: 100 stands"));
  EXPECT_TRUE(Tells(kLimitSupported, "can't be read"));
  EXPECT_TRUE(Tells(kFanRemembered, "or unknown: 0 stands"));
}

TEST_F(SettingsTest, TheOriginIsToldAsFarAsItShows) {
  EXPECT_EQ(OriginOf(kLimitRemembered, 80, false), "from the hotkey utility's key: no application folder is known");
  EXPECT_EQ(OriginOf(kLimitRemembered, 80, true), "from the hotkey utility's key or the setting file");
  EXPECT_EQ(OriginOf(kLimitRemembered, 80, std::nullopt), OriginOf(kLimitRemembered, 80, true));
  EXPECT_EQ(OriginOf(kLimitRemembered, 73, true), "from the setting file, which holds any number");
  EXPECT_EQ(OriginOf(kFanRemembered, 3, true), "from the hotkey utility's key or the setting file");
  EXPECT_EQ(OriginOf(kFanRemembered, 4, true), "from the setting file, which holds any number");
  EXPECT_NE(OriginOf(kLimitRemembered, 100, false), OriginOf(kLimitRemembered, 100, true));
  EXPECT_NE(OriginOf(kFanRemembered, 100, true), OriginOf(kLimitRemembered, 100, true));
}

TEST_F(SettingsTest, TheErrorTextOfTheFolderIsNoPath) {
  Run();
  EXPECT_EQ(At(kFolder).status, Status::kNotPresent);
  EXPECT_EQ(At(kFolder).value, Value());
  EXPECT_EQ(At(kFolderExists).status, Status::kNotPresent);
  TheMachine().folder = L"C:\\Gone";
  Run();
  EXPECT_EQ(At(kFolderExists).value, Value(false));
  TheMachine().folder = L"";
  Run();
  EXPECT_EQ(At(kFolder).status, Status::kNotPresent);
}

TEST_F(SettingsTest, APathThatBreaksItsBufferIsAnError) {
  TheMachine().folder = std::wstring(VEXA_APP_PATH_CAPACITY - 1, L'x');
  Run();
  EXPECT_EQ(At(kFolder).status, Status::kOk);
  TheMachine().folder = std::wstring(VEXA_APP_PATH_CAPACITY, L'x');
  Run();
  EXPECT_EQ(At(kFolder).status, Status::kError);
}

TEST_F(SettingsTest, AnswersOutsideTheContractAreErrorsAndExplainNothing) {
  TheMachine().offers_limit = false;
  TheMachine().fan = 2;
  Run();
  EXPECT_EQ(At(kFanState).status, Status::kError);
  EXPECT_EQ(At(kLimitSupported).status, Status::kNoAnswer);
}

TEST_F(SettingsTest, AMissingExportCostsItsRow) {
  for (SettingRow row : {kFanState, kFolder}) exports_.rows[row] = nullptr;
  Run();
  EXPECT_EQ(At(kFanState).status, Status::kUnsupported);
  EXPECT_EQ(At(kFolder).status, Status::kUnsupported);
  EXPECT_EQ(std::ranges::count(settings_, Status::kOk, &Reading::status), 4);
}

}  // namespace
}  // namespace vexahealth
