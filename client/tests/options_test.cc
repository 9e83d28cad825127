#include "client/options.h"

#include <gtest/gtest.h>

namespace vexahealth {
namespace {

using Action = Options::Action;

TEST(ParseOptions, NoCommandMeansStatus) {
  const Options options = ParseOptions({});
  EXPECT_EQ(options.action, Action::kReadings);
  EXPECT_FALSE(options.json());
  EXPECT_TRUE(options.may_wait);
}

TEST(ParseOptions, OptionsStandBeforeOrAfterTheCommand) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--json", "--no-wait"},
                                                    {"--json", "status", "--no-wait"},
                                                    {"--no-wait", "status", "--json"}}) {
    const Options options = ParseOptions(arguments);
    EXPECT_EQ(options.action, Action::kReadings);
    EXPECT_TRUE(options.json());
    EXPECT_FALSE(options.may_wait);
  }
}

TEST(ParseOptions, WhatIsNotKnownIsAUsageError) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"bogus"},
                                                    {"--bogus"},
                                                    {"status", "bogus"},
                                                    {"status", "--bogus"},
                                                    {"/json"},
                                                    {""},
                                                    {"--json=maybe"},
                                                    {"--json=false"}}) {
    const Options options = ParseOptions(arguments);
    EXPECT_EQ(options.action, Action::kUsageError) << arguments.front();
    EXPECT_NE(options.text, "");
  }
}

TEST(ParseOptions, AUsageErrorStillKnowsThatJsonIsWanted) {
  EXPECT_TRUE(ParseOptions({"bogus", "--json"}).json());
  EXPECT_TRUE(ParseOptions({"--json", "status", "--bogus"}).json());
  EXPECT_FALSE(ParseOptions({"bogus"}).json());
}

TEST(ParseOptions, HelpAndVersionKeepJson) {
  EXPECT_EQ(ParseOptions({"--help"}).action, Action::kHelp);
  EXPECT_EQ(ParseOptions({"status", "-h"}).action, Action::kHelp);
  EXPECT_NE(ParseOptions({"--help"}).text.find("--no-wait"), std::string::npos);
  const Options options = ParseOptions({"--version", "--json"});
  EXPECT_EQ(options.action, Action::kVersion);
  EXPECT_TRUE(options.json());
}

TEST(ParseOptions, SettingsAreShown) {
  const Options options = ParseOptions({"settings", "--json"});
  EXPECT_EQ(options.action, Action::kReadings);
  EXPECT_TRUE(options.json());
  EXPECT_EQ(options.command, FindCommand("settings"));
}

TEST(ParseOptions, SettingsAreChanged) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"settings", "set", "charge-limit", "80", "--dry-run", "--json"},
        {"--json", "settings", "set", "--dry-run", "charge-limit", "80"},
        {"settings", "--json", "set", "charge-limit", "--dry-run", "80"}}) {
    const Options options = ParseOptions(arguments);
    EXPECT_EQ(options.action, Action::kChange) << options.text;
    EXPECT_EQ(options.change.setting, Setting::kChargeLimit);
    EXPECT_EQ(options.change.value, 80);
    EXPECT_TRUE(options.change.dry_run);
    EXPECT_TRUE(options.json());
  }
  const Options options = ParseOptions({"settings", "set", "quiet-fan", "off"});
  EXPECT_EQ(options.change.setting, Setting::kQuietFan);
  EXPECT_EQ(options.change.value, 0);
  EXPECT_FALSE(options.change.dry_run);
}

TEST(ParseOptions, AWrongSettingIsAUsageErrorAndNotAnotherCommand) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"settings", "set"},
                                                    {"settings", "set", "charge-limit"},
                                                    {"settings", "set", "charge-limit", "70"},
                                                    {"settings", "set", "charge-limit", "-80"},
                                                    {"settings", "set", "charge-limit", "80", "90"},
                                                    {"settings", "set", "charge-limit", "80", "quiet-fan", "on"},
                                                    {"settings", "set", "charge-limit", "80", "--dry-run=false"},
                                                    {"settings", "set", "lid", "1"},
                                                    {"settings", "get"},
                                                    {"settings", "--dry-run"},
                                                    {"settings", "--no-wait"},
                                                    {"status", "--dry-run"},
                                                    {"status", "settings"},
                                                    {"set", "charge-limit", "80"}}) {
    const Options options = ParseOptions(arguments);
    EXPECT_EQ(options.action, Action::kUsageError) << arguments.back();
    EXPECT_NE(options.text, "");
  }
  EXPECT_NE(ParseOptions({"settings", "set", "charge-limit", "70"}).text.find("60, 80 or 100"), std::string::npos);
  EXPECT_TRUE(ParseOptions({"settings", "set", "charge-limit", "70", "--json"}).json());
  EXPECT_TRUE(ParseOptions({"settings", "--bogus"}).command == FindCommand("settings"));
}

TEST(ParseOptions, HelpNeverChangesAnything) {
  EXPECT_EQ(ParseOptions({"settings", "set", "charge-limit", "80", "--help"}).action, Action::kHelp);
  EXPECT_EQ(ParseOptions({"settings", "-h"}).action, Action::kHelp);
  const std::string help = ParseOptions({"--help"}).text;
  for (const char* words : {"charge-limit", "quiet-fan", "--dry-run", "Exit codes"}) {
    EXPECT_NE(help.find(words), std::string::npos) << words;
  }
}

}  // namespace
}  // namespace vexahealth
