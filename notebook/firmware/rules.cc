#include "rules.h"

#include <algorithm>
#include <iterator>

#include "names.h"

namespace firmware {
namespace {

constexpr std::pair<Step, std::string_view> kSteps[] = {
    {Step::kCreateInstance, "CreateInstance"},
    {Step::kConnectServer, "ConnectServer"},
    {Step::kSetBlanket, "SetBlanket"},
    {Step::kExecQuery, "ExecQuery"},
    {Step::kNext, "Next"},
    {Step::kGetObject, "GetObject"},
    {Step::kGetMethod, "GetMethod"},
    {Step::kSpawnInstance, "SpawnInstance"},
    {Step::kPut, "Put"},
    {Step::kGet, "Get"},
    {Step::kExecMethod, "ExecMethod"},
};

bool Agrees(std::string_view wanted, std::string_view found) { return wanted.empty() || SameName(wanted, found); }

bool InputsAgree(const Arguments& wanted, const Arguments* found) {
  return std::ranges::all_of(wanted, [found](const auto& want) {
    return found != nullptr && std::ranges::any_of(*found, [&want](const auto& have) {
             return SameName(have.first, want.first) && have.second == want.second;
           });
  });
}

bool Matches(const Rule& rule, const Exchange& exchange) {
  return rule.step == exchange.step && Agrees(rule.namespace_name, exchange.namespace_name) &&
         Agrees(rule.class_name, exchange.class_name) && Agrees(rule.method, exchange.method) &&
         Agrees(rule.property, exchange.property) && InputsAgree(rule.inputs, exchange.inputs);
}

template <typename T>
void Add(std::optional<T>& sum, const std::optional<T>& more) {
  if (!sum) sum = more;
}

}  // namespace

std::optional<Step> StepFromName(std::string_view name) {
  for (const auto& [step, text] : kSteps) {
    if (text == name) return step;
  }
  return std::nullopt;
}

std::string_view StepName(Step step) {
  return std::ranges::find(kSteps, step, &std::pair<Step, std::string_view>::first)->second;
}

bool AnyMatches(const std::vector<Rule>& rules, const Exchange& exchange) {
  return std::ranges::any_of(rules, [&exchange](const Rule& rule) { return Matches(rule, exchange); });
}

Effects ApplyRules(const std::vector<Rule>& rules, const Exchange& exchange, std::vector<uint64_t>& counts) {
  Effects sum;
  counts.resize(rules.size());
  for (size_t i = 0; i < rules.size(); ++i) {
    if (!Matches(rules[i], exchange)) continue;
    const uint64_t count = ++counts[i];
    if (count < rules[i].first || count > rules[i].last) continue;
    const Effects& more = rules[i].effects;
    Add(sum.fail, more.fail);
    Add(sum.delay_ms, more.delay_ms);
    Add(sum.value, more.value);
    Add(sum.raw, more.raw);
    Add(sum.rows, more.rows);
    sum.hang |= more.hang;
    sum.absent |= more.absent;
  }
  return sum;
}

}  // namespace firmware
