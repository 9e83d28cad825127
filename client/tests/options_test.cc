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

TEST(ParseOptions, EveryCommandOfReadings) {
  for (const Command& command : Commands()) {
    const Options options = ParseOptions({std::string(command.name)});
    EXPECT_EQ(options.action, Action::kReadings) << command.name;
    EXPECT_EQ(options.command, &command);
  }
  EXPECT_EQ(ParseOptions({"keys"}).action, Action::kKeys);
}

TEST(ParseOptions, OneReadingByItsKey) {
  const Options options = ParseOptions({"get", "adapter.pdo.5.max_voltage", "--json"});
  EXPECT_EQ(options.action, Action::kGet);
  EXPECT_EQ(options.key, "adapter.pdo.5.max_voltage");
  for (const char* key : {"", "battery", "battery.rsoc.x", "Battery.Rsoc"}) {
    EXPECT_EQ(ParseOptions({"get", key}).action, Action::kUsageError) << key;
  }
  EXPECT_EQ(ParseOptions({"get"}).action, Action::kUsageError);
}

TEST(ParseOptions, Formats) {
  EXPECT_EQ(ParseOptions({"battery", "--format", "csv"}).format, Format::kCsv);
  EXPECT_EQ(ParseOptions({"--format=prometheus", "all"}).format, Format::kPrometheus);
  EXPECT_TRUE(ParseOptions({"--json", "--format", "json"}).json());
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--format", "xml"},
                                                    {"--json", "--format", "csv"},
                                                    {"keys", "--format", "csv"},
                                                    {"settings", "set", "quiet-fan", "on", "--format", "ndjson"},
                                                    {"--format"}}) {
    EXPECT_EQ(ParseOptions(arguments).action, Action::kUsageError) << arguments.back();
  }
  // A wrong command line answers in the format that it asks for.
  EXPECT_EQ(ParseOptions({"--format", "ndjson", "--bogus"}).format, Format::kNdjson);
}

TEST(ParseOptions, WatchTakesItsIntervalOrNone) {
  for (const auto& [arguments, interval_ms] : {std::pair{std::vector<std::string>{"battery", "--watch"}, 2000u},
                                               {{"battery", "--watch", "5"}, 5000u},
                                               {{"--watch", "0.2", "battery"}, 200u},
                                               {{"--watch", "1.25"}, 1250u},
                                               {{"battery", "--watch=86400"}, 86400000u},
                                               {{"--watch", "battery"}, 2000u}}) {
    const Options options = ParseOptions(arguments);
    EXPECT_EQ(options.action, Action::kReadings) << options.text;
    ASSERT_TRUE(options.watch) << arguments.back();
    EXPECT_EQ(options.watch->interval_ms, interval_ms) << arguments.back();
    EXPECT_FALSE(options.watch->count);
  }
  EXPECT_EQ(ParseOptions({"--watch", "--count", "3"}).watch->count, 3u);
  EXPECT_FALSE(ParseOptions({"battery"}).watch);
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--watch", "0.1"},
                                                    {"--watch", "86400.001"},
                                                    {"--watch=1e3"},
                                                    {"--watch", "1.2345"},
                                                    {"--watch", "."},
                                                    {"--watch", "99999999999"},
                                                    {"--count", "3"},
                                                    {"--watch", "--count", "0"},
                                                    {"--watch", "--count", "x"},
                                                    {"keys", "--watch"},
                                                    {"--watch", "--format", "prometheus"},
                                                    {"settings", "set", "quiet-fan", "on", "--watch"}}) {
    EXPECT_EQ(ParseOptions(arguments).action, Action::kUsageError) << arguments.back();
  }
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
