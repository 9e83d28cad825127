#include "client/options.h"

#include <gtest/gtest.h>

#include <sstream>

#include "client/completion.h"

namespace vexahealth {
namespace {

using Action = Options::Action;

// The arguments, divided at blanks; "''" is an empty one.
Options Parse(const std::string& line) {
  std::istringstream words(line);
  std::vector<std::string> arguments;
  for (std::string word; words >> word;) arguments.push_back(word == "''" ? "" : word);
  return ParseOptions(arguments);
}

TEST(ParseOptions, WhatIsNotKnownIsAUsageError) {
  // clang-format off: one long list
  for (const char* line :
       {"bogus", "--bogus", "status bogus", "status --bogus", "/json", "''", "--json=maybe", "--json=false", "get",
        "get ''", "get battery", "get battery.rsoc.x", "get Battery.Rsoc", "--format", "--format xml",
        "--json --format csv", "keys --format csv", "settings set quiet-fan on --format ndjson", "--watch 0.1",
        "--watch 86400.001", "--watch=1e3", "--watch 1.2345", "--watch .", "--watch 99999999999", "--count 3",
        "--watch --count 0", "--watch --count x", "keys --watch", "--watch --format prometheus",
        "settings set quiet-fan on --watch", "settings set", "settings set charge-limit",
        "settings set charge-limit 70", "settings set charge-limit -80", "settings set charge-limit 80 90",
        "settings set charge-limit 80 quiet-fan on", "settings set charge-limit 80 --dry-run=false",
        "settings set lid 1", "settings get", "settings --dry-run", "settings --no-wait", "status --dry-run",
        "status settings", "set charge-limit 80", "record", "record ''", "trace --seconds 0", "trace --level 6",
        "doctor --watch", "completion csh", "completion fish --json", "record a.json --json"}) {
    // clang-format on
    const Options options = Parse(line);
    EXPECT_EQ(options.action, Action::kUsageError) << line;
    EXPECT_NE(options.text, "") << line;
  }
  EXPECT_NE(Parse("settings set charge-limit 70").text.find("60, 80 or 100"), std::string::npos);
}

TEST(ParseOptions, AUsageErrorAnswersInTheFormatThatIsAskedFor) {
  EXPECT_TRUE(Parse("bogus --json").json());
  EXPECT_TRUE(Parse("--json status --bogus").json());
  EXPECT_TRUE(Parse("settings set charge-limit 70 --json").json());
  EXPECT_FALSE(Parse("bogus").json());
  EXPECT_EQ(Parse("--format ndjson --bogus").format, Format::kNdjson);
  EXPECT_EQ(Parse("settings --bogus").command, FindCommand("settings"));
}

TEST(ParseOptions, EachCommand) {
  const std::pair<const char*, Action> commands[] = {{"", Action::kReadings},
                                                     {"keys", Action::kKeys},
                                                     {"--help", Action::kHelp},
                                                     {"status -h", Action::kHelp},
                                                     {"settings set charge-limit 80 --help", Action::kHelp},
                                                     {"--version --json", Action::kVersion},
                                                     {"doctor --json", Action::kDoctor},
                                                     {"trace --seconds 5 --level 1", Action::kTrace},
                                                     {"record out.json --show-serials", Action::kRecord},
                                                     {"report --output out.html", Action::kReport},
                                                     {"completion fish", Action::kCompletion}};
  for (const auto& [line, action] : commands) EXPECT_EQ(Parse(line).action, action) << line;
  for (const Command& command : Commands()) {
    EXPECT_EQ(Parse(std::string(command.name)).action, Action::kReadings) << command.name;
    EXPECT_EQ(Parse(std::string(command.name)).command, &command);
  }
  EXPECT_EQ(Parse("trace --seconds 5 --level 1").seconds, 5u);
  EXPECT_EQ(Parse("trace --seconds 5 --level 1").level, 1);
  EXPECT_EQ(Parse("record out.json --show-serials").output, "out.json");
  EXPECT_TRUE(Parse("record out.json --show-serials").show_serials);
  EXPECT_FALSE(Parse("record out.json").show_serials);
  EXPECT_EQ(Parse("get adapter.pdo.5.max_voltage --json").key, "adapter.pdo.5.max_voltage");
  const std::string help = Parse("--help").text;
  for (const char* words : {"charge-limit", "quiet-fan", "--dry-run", "--no-wait", "Exit codes"}) {
    EXPECT_NE(help.find(words), std::string::npos) << words;
  }
  // Completion knows every option of it.
  for (size_t at = help.find(" --"); at != std::string::npos; at = help.find(" --", at + 1)) {
    const std::string option =
        help.substr(at + 1, help.find_first_not_of("abcdefghijklmnopqrstuvwxyz-", at + 1) - at - 1);
    EXPECT_NE(CompletionScript("bash").find(option), std::string::npos) << option;
  }
}

TEST(ParseOptions, OptionsStandBeforeOrAfterTheCommand) {
  for (const char* line : {"--json --no-wait", "--json status --no-wait", "--no-wait status --json",
                           "--format json --no-wait", "--json --format json --no-wait"}) {
    EXPECT_EQ(Parse(line).action, Action::kReadings) << line;
    EXPECT_TRUE(Parse(line).json()) << line;
    EXPECT_FALSE(Parse(line).may_wait) << line;
  }
  EXPECT_FALSE(Parse("").json());
  EXPECT_TRUE(Parse("").may_wait);
  EXPECT_EQ(Parse("battery --format csv").format, Format::kCsv);
  EXPECT_EQ(Parse("--format=prometheus all").format, Format::kPrometheus);
}

TEST(ParseOptions, WatchTakesItsIntervalOrNone) {
  const std::pair<const char*, uint32_t> lines[] = {{"battery --watch", 2000},           {"battery --watch 5", 5000},
                                                    {"--watch 0.2 battery", 200},        {"--watch 1.25", 1250},
                                                    {"battery --watch=86400", 86400000}, {"--watch battery", 2000}};
  for (const auto& [line, interval_ms] : lines) {
    const Options options = Parse(line);
    EXPECT_EQ(options.action, Action::kReadings) << options.text;
    ASSERT_TRUE(options.watch) << line;
    EXPECT_EQ(options.watch->interval_ms, interval_ms) << line;
    EXPECT_FALSE(options.watch->count);
  }
  EXPECT_EQ(Parse("--watch --count 3").watch->count, 3u);
  EXPECT_FALSE(Parse("battery").watch);
}

TEST(ParseOptions, SettingsAreChanged) {
  for (const char* line :
       {"settings set charge-limit 80 --dry-run --json", "--json settings set --dry-run charge-limit 80",
        "settings --json set charge-limit --dry-run 80"}) {
    const Options options = Parse(line);
    EXPECT_EQ(options.action, Action::kChange) << options.text;
    EXPECT_EQ(options.change.setting, Setting::kChargeLimit);
    EXPECT_EQ(options.change.value, 80);
    EXPECT_TRUE(options.change.dry_run);
    EXPECT_TRUE(options.json());
  }
  EXPECT_FALSE(Parse("settings set quiet-fan off").change.dry_run);
}

}  // namespace
}  // namespace vexahealth
