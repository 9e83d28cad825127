// On which steps a rule acts.
#include "rules.h"

#include <gtest/gtest.h>

#include "test_model.h"

namespace firmware {
namespace {

class Rules : public testing::Test {
 protected:
  void Use(const std::string& rules) {
    rules_ = ModelOf("{\"rules\":[" + rules + "]}").rules;
    counts_.clear();
  }
  Effects Apply(const Exchange& exchange) { return ApplyRules(rules_, exchange, counts_); }

  std::vector<Rule> rules_;
  std::vector<uint64_t> counts_;
};

TEST_F(Rules, NthAndFrom) {
  Use(R"({ "on": { "step": "Next" }, "nth": 2, "then": { "fail": "0x80041001" } },
         { "on": { "step": "Next" }, "from": 4, "then": { "fail": 1 } })");
  std::vector<std::optional<uint32_t>> results;
  for (int i = 0; i < 5; ++i) results.push_back(Apply({.step = Step::kNext}).fail);
  EXPECT_EQ(results, (std::vector<std::optional<uint32_t>>{{}, 0x80041001, {}, 1, 1}));
  EXPECT_EQ(Apply({.step = Step::kGet}), Effects{});
  EXPECT_EQ(counts_, (std::vector<uint64_t>{5, 5}));
}

TEST_F(Rules, EverythingNamedMustAgree) {
  Use(R"({ "on": { "step": "ExecMethod", "namespace": "\\\\.\\root/wmi", "class": "atd_sts", "method": "M",
                   "inputs": { "A": 1, "b": "0x02" } }, "then": { "value": -1 } })");
  const Arguments inputs{{"a", 1}, {"B", 2}, {"c", 3}};
  const Arguments others{{"a", 1}, {"B", 3}};
  const Exchange exchange{.step = Step::kExecMethod,
                          .namespace_name = "ROOT\\WMI",
                          .class_name = "ATD_STS",
                          .method = "m",
                          .inputs = &inputs};
  EXPECT_EQ(Apply(exchange).value, 0xFFFFFFFFu);
  Exchange other = exchange;
  other.inputs = &others;
  EXPECT_FALSE(AnyMatches(rules_, other));
  other.inputs = nullptr;
  EXPECT_FALSE(AnyMatches(rules_, other));
  other = exchange;
  other.namespace_name = "ROOT\\CIMV2";
  EXPECT_FALSE(AnyMatches(rules_, other));
  other = exchange;
  other.method = "M2";
  EXPECT_FALSE(AnyMatches(rules_, other));
}

TEST_F(Rules, EffectsAddUpAndTheEarlierRuleWins) {
  Use(R"({ "on": { "step": "Get" }, "then": { "delay_ms": 5, "fail": 2 } },
         { "on": { "step": "Get", "property": "__PATH" }, "then": { "fail": 3, "hang": true } })");
  EXPECT_EQ(Apply({.step = Step::kGet, .property = "__path"}), (Effects{.fail = 2, .delay_ms = 5, .hang = true}));
  EXPECT_EQ(Apply({.step = Step::kGet, .property = "x"}), (Effects{.fail = 2, .delay_ms = 5}));
}

}  // namespace
}  // namespace firmware
