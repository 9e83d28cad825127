#include "client/options.h"

#include <gtest/gtest.h>

namespace vexahealth {
namespace {

using Action = Options::Action;

TEST(ParseOptions, NoCommandMeansStatus) {
  const Options options = ParseOptions({});
  EXPECT_EQ(options.action, Action::kStatus);
  EXPECT_FALSE(options.json);
  EXPECT_TRUE(options.may_wait);
}

TEST(ParseOptions, OptionsStandBeforeOrAfterTheCommand) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--json", "--no-wait"},
                                                    {"--json", "status", "--no-wait"},
                                                    {"--no-wait", "status", "--json"}}) {
    const Options options = ParseOptions(arguments);
    EXPECT_EQ(options.action, Action::kStatus);
    EXPECT_TRUE(options.json);
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
  EXPECT_TRUE(ParseOptions({"bogus", "--json"}).json);
  EXPECT_TRUE(ParseOptions({"--json", "status", "--bogus"}).json);
  EXPECT_FALSE(ParseOptions({"bogus"}).json);
}

TEST(ParseOptions, HelpAndVersionKeepJson) {
  EXPECT_EQ(ParseOptions({"--help"}).action, Action::kHelp);
  EXPECT_EQ(ParseOptions({"status", "-h"}).action, Action::kHelp);
  EXPECT_NE(ParseOptions({"--help"}).text.find("--no-wait"), std::string::npos);
  const Options options = ParseOptions({"--version", "--json"});
  EXPECT_EQ(options.action, Action::kVersion);
  EXPECT_TRUE(options.json);
}

}  // namespace
}  // namespace vexahealth
