// The "rules" section: which exchanges fail, are delayed or answer otherwise.
#include <algorithm>

#include "object_reader.h"
#include "sections.h"
#include "texts.h"

namespace scenario {
namespace {

constexpr uint32_t kEcControlCode = 0x80102070;
constexpr uint32_t kControlCodes[] = {
    0x80102040, 0x80102044, 0x80102068, kEcControlCode, 0x80102074, 0x80102078, 0x8010207C,
    0x80102080, 0x80102084, 0x80102088, 0x80102090,     0x80102094, 0x0022240C,
};
constexpr uint8_t kGroupCommand = 0xDD;
constexpr uint8_t kGroupWrite = 0x80;

void ReadControlCode(const ObjectReader& on, ImageRule& rule, Faults& faults) {
  rule.kind = kRuleControl;
  rule.subject = static_cast<uint32_t>(on.Number("control_code", kDwordRange, kEcControlCode));
  if (std::ranges::count(kControlCodes, rule.subject) == 0) {
    faults.Add(on.line(), Concat("control code ", Hex(rule.subject, 8), " is none of the driver's"));
  }
}

void ReadOpen(const JsonValue& value, ImageRule& rule, Faults& faults) {
  rule.kind = kRuleOpen;
  const std::optional<std::string> device = ReadText(value, "open", faults);
  if (!device) return;
  if (*device != "VexaSAIO" && *device != "OBXACPI") {
    faults.Add(value.line, "\"open\" must be \"VexaSAIO\" or \"OBXACPI\"");
  }
  rule.subject = *device == "OBXACPI" ? kDeviceAcpi : kDeviceSaio;
}

void ReadGroupAccess(const ObjectReader& on, ImageRule& rule, Faults& faults) {
  if (rule.command != kGroupCommand) faults.Add(on.line(), "\"group\" goes with \"ec_command\" 0xdd only");
  const bool write = on.Boolean("write", false);
  const uint64_t group = on.Number("group", {0, IMAGE_GROUPS - 1}, 0);
  rule.data[rule.data_length++] = static_cast<uint8_t>(group | (write ? kGroupWrite : 0));
  if (on.Find("offset") != nullptr) {
    rule.data[rule.data_length++] = static_cast<uint8_t>(on.Number("offset", kByteRange, 0));
  }
}

void ReadEcCommand(const ObjectReader& on, ImageRule& rule, Faults& faults) {
  rule.kind = kRuleEc;
  rule.subject = kEcControlCode;
  rule.command = static_cast<uint8_t>(on.Number("ec_command", kByteRange, 0));
  const std::string_view form = on.OneOf({"group", "data"}, false);
  if (form == "group") {
    ReadGroupAccess(on, rule, faults);
    return;
  }
  for (std::string_view key : {"offset", "write"}) {
    if (const JsonValue* value = on.Find(key)) {
      faults.Add(value->line, Concat("\"", key, "\" needs \"group\""));
    }
  }
  for (const JsonValue& byte : on.Array("data", IMAGE_EC_DATA)) {
    rule.data[rule.data_length++] =
        static_cast<uint8_t>(ReadNumber(byte, "data", kByteRange, faults).value_or(0));
  }
}

void ReadOn(const JsonValue& value, ImageRule& rule, Faults& faults) {
  const ObjectReader on(value, "on",
                        {"control_code", "ec_command", "group", "offset", "write", "data", "open"}, faults);
  const std::string_view form = on.OneOf({"control_code", "ec_command", "open"}, true);
  if (form == "ec_command") {
    ReadEcCommand(on, rule, faults);
    return;
  }
  for (std::string_view key : {"group", "offset", "write", "data"}) {
    if (const JsonValue* member = on.Find(key)) {
      faults.Add(member->line, Concat("\"", key, "\" goes with \"ec_command\" only"));
    }
  }
  if (form == "control_code") ReadControlCode(on, rule, faults);
  if (form == "open") ReadOpen(*on.Find("open"), rule, faults);
}

struct Effect {
  std::string_view key;
  ImageRuleEffect bit;
  Range range;
  uint32_t ImageRule::* field;  // null: the byte
  bool ec_only;
  bool open_too;
};

constexpr Effect kEffects[] = {
    {"fail", kEffectFail, kFailureRange, &ImageRule::fail, false, true},
    {"delay_ms", kEffectDelay, {0, IMAGE_MAX_DELAY_MS}, &ImageRule::delay_ms, false, true},
    {"answer_length", kEffectLength, {0, IMAGE_ACPI_OUTPUT}, &ImageRule::length, false, false},
    {"driver_status", kEffectStatus, {1, 0xFFFFFFFF}, &ImageRule::status, true, false},
    {"byte", kEffectByte, kByteRange, nullptr, true, false},
};

void ReadThen(const JsonValue& value, ImageRule& rule, Faults& faults) {
  const ObjectReader then(value, "then", {"fail", "driver_status", "byte", "delay_ms", "answer_length"},
                          faults);
  const bool ec = rule.kind == kRuleEc || (rule.kind == kRuleControl && rule.subject == kEcControlCode);
  for (const Effect& effect : kEffects) {
    const JsonValue* member = then.Find(effect.key);
    if (member == nullptr) continue;
    if ((effect.ec_only && !ec) || (rule.kind == kRuleOpen && !effect.open_too)) {
      faults.Add(member->line, Concat("\"", effect.key, "\" has no meaning for this kind of exchange"));
    }
    rule.effects |= effect.bit;
    const auto number = static_cast<uint32_t>(then.Number(effect.key, effect.range, 0));
    if (effect.field != nullptr) {
      rule.*effect.field = number;
    } else {
      rule.byte = static_cast<uint8_t>(number);
    }
  }
  if (rule.effects == 0) faults.Add(then.line(), "\"then\" says nothing to do");
}

}  // namespace

void ReadRulesSection(const JsonValue& value, ImageBuilder& image, Faults& faults) {
  for (const JsonValue& entry : ReadArray(value, "rules", IMAGE_MAX_ROWS, faults)) {
    const ObjectReader row(entry, "rules", {"on", "nth", "from", "then"}, faults);
    ImageRule rule{};
    const JsonValue* on = row.Require("on");
    const JsonValue* then = row.Require("then");
    if (on == nullptr || then == nullptr) continue;
    ReadOn(*on, rule, faults);
    const Occurrences occurrences = ReadOccurrences(row);
    rule.first = static_cast<uint32_t>(occurrences.first);
    rule.last = static_cast<uint32_t>(occurrences.last);
    ReadThen(*then, rule, faults);
    image.rules.push_back(rule);
  }
}

}  // namespace scenario
