// On which steps a rule acts.
#include "rules.h"

#include <gtest/gtest.h>

#include "test_model.h"

namespace firmware {
namespace {

std::vector<Rule> RulesOf(const std::string& rules) { return ModelOf("{\"rules\":[" + rules + "]}").rules; }

TEST(FirmwareRules, NthAndFrom) {
  const std::vector<Rule> rules = RulesOf(R"({ "on": { "step": "Next" }, "nth": 2, "then": { "fail": "0x80041001" } },
                                             { "on": { "step": "Next" }, "from": 4, "then": { "fail": 1 } })");
  std::vector<uint64_t> counts;
  std::vector<std::optional<uint32_t>> results;
  for (int i = 0; i < 5; ++i) results.push_back(ApplyRules(rules, {.step = Step::kNext}, counts).fail);
  EXPECT_EQ(results, (std::vector<std::optional<uint32_t>>{{}, 0x80041001, {}, 1, 1}));
  EXPECT_EQ(ApplyRules(rules, {.step = Step::kGet}, counts), Effects{});
  EXPECT_EQ(counts, (std::vector<uint64_t>{5, 5}));
}

TEST(FirmwareRules, EverythingNamedMustAgree) {
  const std::vector<Rule> rules =
      RulesOf(R"({ "on": { "step": "ExecMethod", "namespace": "\\\\.\\root/wmi", "class": "atd_sts", "method": "M",
                   "inputs": { "A": 1, "b": "0x02" } }, "then": { "value": -1 } })");
  const Arguments inputs{{"a", 1}, {"B", 2}, {"c", 3}}, others{{"a", 1}, {"B", 3}};
  const Exchange exchange{.step = Step::kExecMethod,
                          .namespace_name = "ROOT\\WMI",
                          .class_name = "ATD_STS",
                          .method = "m",
                          .inputs = &inputs};
  std::vector<uint64_t> counts;
  EXPECT_EQ(ApplyRules(rules, exchange, counts).value, 0xFFFFFFFFu);
  const auto matches = [&](auto&& change) {
    Exchange other = exchange;
    change(other);
    return AnyMatches(rules, other);
  };
  EXPECT_FALSE(matches([&](Exchange& e) { e.inputs = &others; }));
  EXPECT_FALSE(matches([](Exchange& e) { e.inputs = nullptr; }));
  EXPECT_FALSE(matches([](Exchange& e) { e.namespace_name = "ROOT\\CIMV2"; }));
  EXPECT_FALSE(matches([](Exchange& e) { e.method = "M2"; }));
}

TEST(FirmwareRules, EffectsAddUpAndTheEarlierRuleWins) {
  const std::vector<Rule> rules = RulesOf(R"({ "on": { "step": "Get" }, "then": { "delay_ms": 5, "fail": 2 } },
                 { "on": { "step": "Get", "property": "__PATH" }, "then": { "fail": 3, "hang": true } })");
  std::vector<uint64_t> counts;
  EXPECT_EQ(ApplyRules(rules, {.step = Step::kGet, .property = "__path"}, counts),
            (Effects{.fail = 2, .delay_ms = 5, .hang = true}));
  EXPECT_EQ(ApplyRules(rules, {.step = Step::kGet, .property = "x"}, counts), (Effects{.fail = 2, .delay_ms = 5}));
}

}  // namespace
}  // namespace firmware
