// One entry of the firmware's rules.
#include "names.h"
#include "scenario/object_reader.h"
#include "scenario/texts.h"
#include "section.h"

namespace firmware {
namespace {

using scenario::Concat;
using scenario::Expect;
using scenario::ObjectReader;

constexpr uint32_t kMaxDelayMs = 600000;
constexpr uint32_t kMaxRowsGiven = 255;

std::string Text(const ObjectReader& on, std::string_view key, Faults& faults) {
  const JsonValue* member = on.Find(key);
  return member == nullptr ? "" : scenario::ReadText(*member, key, faults).value_or("");
}

void ReadInputs(const JsonValue& value, Rule& rule, Faults& faults) {
  if (!Expect(value, "inputs", JsonValue::Kind::kObject, faults)) return;
  for (const JsonValue& member : value.items) {
    const auto number = scenario::ReadNumber(member, member.key, scenario::kDwordRange, faults);
    rule.inputs.emplace_back(member.key, number.value_or(0));
  }
}

// Which of what a rule can name the step has at all.
void CheckParts(const ObjectReader& on, Step step, Faults& faults) {
  const bool has_namespace = step != Step::kCreateInstance;
  const bool has_class = has_namespace && step != Step::kConnectServer && step != Step::kSetBlanket;
  const bool has_property = step == Step::kPut || step == Step::kGet;
  const bool has_method =
      has_property || step == Step::kGetMethod || step == Step::kSpawnInstance || step == Step::kExecMethod;
  const bool has_inputs = step == Step::kGet || step == Step::kExecMethod;
  const std::pair<std::string_view, bool> parts[] = {{"namespace", has_namespace},
                                                     {"class", has_class},
                                                     {"method", has_method},
                                                     {"property", has_property},
                                                     {"inputs", has_inputs}};
  for (const auto& [key, has] : parts) {
    const JsonValue* member = on.Find(key);
    if (member != nullptr && !has) {
      faults.Add(member->key_line, Concat("step \"", StepName(step), "\" has no \"", key, "\""));
    }
  }
}

void ReadOn(const JsonValue& value, Rule& rule, Faults& faults) {
  const ObjectReader on(value, "on", {"step", "namespace", "class", "method", "property", "inputs"}, faults);
  const JsonValue* name = on.Require("step");
  if (name == nullptr || !Expect(*name, "step", JsonValue::Kind::kText, faults)) return;
  const std::optional<Step> step = StepFromName(name->text);
  if (!step) {
    faults.Add(name->line, Concat("\"", name->text, "\" is no step"));
    return;
  }
  rule.step = *step;
  CheckParts(on, *step, faults);
  rule.namespace_name = NamespaceName(Text(on, "namespace", faults));
  rule.class_name = Text(on, "class", faults);
  rule.method = Text(on, "method", faults);
  rule.property = Text(on, "property", faults);
  if (const JsonValue* inputs = on.Find("inputs")) ReadInputs(*inputs, rule, faults);
}

// Reports an effect that the step does not have.
void CheckEffect(const ObjectReader& then, std::string_view key, Step step, Step wanted, Faults& faults) {
  const JsonValue* member = then.Find(key);
  if (member != nullptr && step != wanted) {
    faults.Add(member->key_line, Concat("\"", key, "\" goes with step \"", StepName(wanted), "\" only"));
  }
}

void ReadThen(const JsonValue& value, Rule& rule, Faults& faults) {
  const ObjectReader then(value, "then", {"fail", "delay_ms", "hang", "absent", "value", "raw", "rows"}, faults);
  const auto number = [&](std::string_view key, scenario::Range range) -> std::optional<uint32_t> {
    if (then.Find(key) == nullptr) return std::nullopt;
    return static_cast<uint32_t>(then.Number(key, range, 0));
  };
  Effects& effects = rule.effects;
  effects.fail = number("fail", scenario::kDwordRange);
  effects.delay_ms = number("delay_ms", {0, kMaxDelayMs});
  effects.hang = then.Boolean("hang", false);
  effects.absent = then.Boolean("absent", false);
  effects.value = number("value", scenario::kSignedDwordRange);
  effects.rows = number("rows", {0, kMaxRowsGiven});
  if (const JsonValue* raw = then.Find("raw")) effects.raw = ReadRawValue(*raw, faults);
  CheckEffect(then, "absent", rule.step, Step::kExecMethod, faults);
  CheckEffect(then, "value", rule.step, Step::kExecMethod, faults);
  CheckEffect(then, "rows", rule.step, Step::kExecQuery, faults);
  CheckEffect(then, "raw", rule.step, Step::kGet, faults);
  if (effects == Effects{}) faults.Add(then.line(), "\"then\" says nothing to do");
}

}  // namespace

Rule ReadRule(const JsonValue& value, Faults& faults) {
  const ObjectReader row(value, "rules", {"on", "nth", "from", "then"}, faults);
  Rule rule;
  const JsonValue* on = row.Require("on");
  const JsonValue* then = row.Require("then");
  if (on == nullptr || then == nullptr) return rule;
  ReadOn(*on, rule, faults);
  const scenario::Occurrences occurrences = scenario::ReadOccurrences(row);
  rule.first = occurrences.first;
  rule.last = occurrences.last;
  ReadThen(*then, rule, faults);
  return rule;
}

}  // namespace firmware
