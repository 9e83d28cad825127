#include "section.h"

#include <algorithm>
#include <iterator>

#include "scenario/texts.h"

namespace radios {
namespace {

using scenario::Concat;

constexpr size_t kMaxNetworkInterfaces = 256;
constexpr size_t kMaxRules = 1024;
constexpr uint32_t kMaxDelayMs = 600000;

constexpr std::string_view kCalls[] = {
    "WlanOpenHandle",          "WlanEnumInterfaces",     "WlanQueryInterface",    "WlanGetNetworkBssList",
    "BluetoothFindFirstRadio", "BluetoothFindNextRadio", "BluetoothGetRadioInfo", "BluetoothFindFirstDevice",
    "BluetoothFindNextDevice", "GetIfTable2Ex",          "GetIfEntry2",
};
constexpr std::string_view kCallWithOpcode = "WlanQueryInterface";

NetworkInterface ReadNetworkInterface(const JsonValue& value, Faults& faults) {
  const ObjectReader row(value, "network", {"index", "type", "medium", "hardware", "up", "guid", "name"}, faults);
  NetworkInterface entry;
  entry.index = static_cast<uint32_t>(row.RequireNumber("index", {1, 0xFFFFFF}));
  entry.type = static_cast<uint32_t>(row.RequireNumber("type", scenario::kDwordRange));
  entry.medium = static_cast<uint32_t>(row.Number("medium", scenario::kDwordRange, 0));
  entry.hardware = row.Boolean("hardware", true);
  entry.up = row.Boolean("up", true);
  if (row.Find("guid") != nullptr) entry.guid = ReadGuid(row, "guid", faults);
  if (row.Find("name") != nullptr) entry.name = ReadName(row, "name", kMaxWlanName, faults);
  return entry;
}

void ReadOn(const JsonValue& value, Rule& rule, Faults& faults) {
  const ObjectReader on(value, "on", {"call", "opcode"}, faults);
  const JsonValue* call = on.Require("call");
  if (call == nullptr || !scenario::Expect(*call, "call", JsonValue::Kind::kText, faults)) return;
  if (std::ranges::find(kCalls, std::string_view(call->text)) == std::end(kCalls)) {
    faults.Add(call->line, Concat("\"", call->text, "\" is no call that can be made to fail"));
  }
  rule.call = call->text;
  rule.opcode = ReadOptional(on, "opcode", scenario::kDwordRange);
  if (rule.opcode && rule.call != kCallWithOpcode) {
    faults.Add(on.line(), Concat("\"opcode\" goes with \"", kCallWithOpcode, "\" only"));
  }
}

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
  const ObjectReader effects(*then, "then", {"fail", "delay_ms"}, faults);
  rule.fail = ReadOptional(effects, "fail", {1, 0xFFFFFFFF});
  rule.delay_ms = static_cast<uint32_t>(effects.Number("delay_ms", {0, kMaxDelayMs}, 0));
  if (!rule.fail && rule.delay_ms == 0) faults.Add(effects.line(), "\"then\" says nothing to do");
  return rule;
}

}  // namespace

Model ReadRadiosSection(const JsonValue& value, Faults& faults) {
  const ObjectReader section(value, "radios", {"wlan", "bluetooth", "network", "rules"}, faults);
  Model model;
  if (const JsonValue* wlan = section.Find("wlan")) model.wlan = ReadWlan(*wlan, faults);
  if (const JsonValue* bluetooth = section.Find("bluetooth")) model.bluetooth = ReadBluetooth(*bluetooth, faults);
  for (const JsonValue& entry : section.Array("network", kMaxNetworkInterfaces)) {
    model.network.push_back(ReadNetworkInterface(entry, faults));
    const auto same = std::ranges::count(model.network, model.network.back().index, &NetworkInterface::index);
    if (same > 1) faults.Add(entry.line, Concat("index ", model.network.back().index, " is given twice"));
  }
  for (const JsonValue& rule : section.Array("rules", kMaxRules)) model.rules.push_back(ReadRule(rule, faults));
  return model;
}

std::optional<Model> ReadRadiosScenario(std::string_view text, Faults& faults) {
  const std::optional<JsonValue> document = scenario::ParseJson(text, faults);
  if (!document || !scenario::Expect(*document, "scenario", JsonValue::Kind::kObject, faults)) return std::nullopt;
  const auto section = std::ranges::find(document->items, "radios", &JsonValue::key);
  Model model;
  if (section != document->items.end()) model = ReadRadiosSection(*section, faults);
  return faults.Empty() ? std::optional(std::move(model)) : std::nullopt;
}

}  // namespace radios
