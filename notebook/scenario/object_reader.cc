#include "object_reader.h"

#include <algorithm>
#include <charconv>

#include "texts.h"

namespace scenario {
namespace {

const std::vector<JsonValue> kNoItems;

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::optional<uint64_t> ParseHexText(std::string_view text) {
  if (!text.starts_with("0x") && !text.starts_with("0X")) return std::nullopt;
  uint64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data() + 2, end, number, 16);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

std::string RangeText(Range range) {
  if (range.low < 0) return Concat(range.low, " to ", range.high);
  return Concat(Hex(static_cast<uint64_t>(range.low), 1), " to ", Hex(range.high, 1));
}

// As the scenario writes it: decimal, or hexadecimal.
std::string NumberText(const JsonValue& value, uint64_t magnitude) {
  if (value.kind == JsonValue::Kind::kText) return value.text;
  return Concat(value.negative ? "-" : "", magnitude);
}

std::string Joined(std::initializer_list<std::string_view> keys) {
  std::string joined;
  for (std::string_view key : keys) {
    if (!joined.empty()) joined += ", ";
    joined += key;
  }
  return joined;
}

}  // namespace

std::optional<uint64_t> ReadNumber(const JsonValue& value, std::string_view name, Range range,
                                   Faults& faults) {
  uint64_t magnitude = value.magnitude;
  if (value.kind == JsonValue::Kind::kText) {
    const std::optional<uint64_t> parsed = ParseHexText(value.text);
    if (!parsed) {
      faults.Add(value.line,
                 Concat("\"", name, "\": \"", value.text, "\" is no number; write 12 or \"0x0c\""));
      return std::nullopt;
    }
    magnitude = *parsed;
  } else if (!Expect(value, name, JsonValue::Kind::kInteger, faults)) {
    return std::nullopt;
  }
  const bool fits = value.negative ? range.low < 0 && magnitude <= 0 - static_cast<uint64_t>(range.low)
                                   : magnitude <= range.high &&
                                         (range.low <= 0 || magnitude >= static_cast<uint64_t>(range.low));
  if (!fits) {
    faults.Add(value.line,
               Concat("\"", name, "\" must be ", RangeText(range), ", not ", NumberText(value, magnitude)));
    return std::nullopt;
  }
  return value.negative ? 0 - magnitude : magnitude;
}

std::optional<std::vector<uint8_t>> ReadHex(const JsonValue& value, std::string_view name, Faults& faults) {
  if (!Expect(value, name, JsonValue::Kind::kText, faults)) return std::nullopt;
  std::vector<uint8_t> bytes;
  for (size_t i = 0; i < value.text.size();) {
    if (value.text[i] == ' ') {
      ++i;
      continue;
    }
    const int high = HexDigit(value.text[i]);
    const int low = i + 1 < value.text.size() ? HexDigit(value.text[i + 1]) : -1;
    if (high < 0 || low < 0) {
      faults.Add(value.line, Concat("\"", name, "\" must hold pairs of hexadecimal digits; character ",
                                    high < 0 ? i + 1 : i + 2, " does not fit"));
      return std::nullopt;
    }
    bytes.push_back(static_cast<uint8_t>(high * 16 + low));
    i += 2;
  }
  return bytes;
}

std::optional<std::string> ReadText(const JsonValue& value, std::string_view name, Faults& faults) {
  if (!Expect(value, name, JsonValue::Kind::kText, faults)) return std::nullopt;
  if (!std::ranges::all_of(value.text, [](char c) { return c >= ' ' && c <= '~'; })) {
    faults.Add(value.line, Concat("\"", name, "\" must be printable ASCII; use \"hex\" for other bytes"));
    return std::nullopt;
  }
  return value.text;
}

bool Expect(const JsonValue& value, std::string_view name, JsonValue::Kind kind, Faults& faults) {
  if (value.kind == kind) return true;
  faults.Add(value.line, Concat("\"", name, "\" must be ", KindName(kind), ", not ", KindName(value.kind)));
  return false;
}

const std::vector<JsonValue>& ReadArray(const JsonValue& value, std::string_view name, size_t limit,
                                        Faults& faults) {
  if (!Expect(value, name, JsonValue::Kind::kArray, faults)) return kNoItems;
  if (value.items.size() <= limit) return value.items;
  faults.Add(value.line, Concat("\"", name, "\" has ", value.items.size(), " entries; the limit is ", limit));
  return kNoItems;
}

ObjectReader::ObjectReader(const JsonValue& value, std::string_view name,
                           std::initializer_list<std::string_view> keys, Faults& faults)
    : value_(value), name_(name), faults_(faults) {
  Expect(value, name, JsonValue::Kind::kObject, faults);
  if (value.kind != JsonValue::Kind::kObject) return;
  for (const JsonValue& member : value.items) {
    if (member.key == "description") {
      Expect(member, member.key, JsonValue::Kind::kText, faults);
    } else if (std::ranges::find(keys, std::string_view(member.key)) == keys.end()) {
      faults.Add(member.key_line,
                 Concat("unknown key \"", member.key, "\" in \"", name, "\", which takes ", Joined(keys)));
    }
  }
}

const JsonValue* ObjectReader::Find(std::string_view key) const {
  if (value_.kind != JsonValue::Kind::kObject) return nullptr;
  const auto found = std::ranges::find(value_.items, key, &JsonValue::key);
  return found == value_.items.end() ? nullptr : &*found;
}

const JsonValue* ObjectReader::Require(std::string_view key) const {
  const JsonValue* member = Find(key);
  if (member == nullptr && value_.kind == JsonValue::Kind::kObject) {
    faults_.Add(value_.line, Concat("\"", name_, "\" needs \"", key, "\""));
  }
  return member;
}

uint64_t ObjectReader::Number(std::string_view key, Range range, uint64_t fallback) const {
  const JsonValue* member = Find(key);
  return member == nullptr ? fallback : ReadNumber(*member, key, range, faults_).value_or(fallback);
}

uint64_t ObjectReader::RequireNumber(std::string_view key, Range range) const {
  return Require(key) == nullptr ? 0 : Number(key, range, 0);
}

bool ObjectReader::Boolean(std::string_view key, bool fallback) const {
  const JsonValue* member = Find(key);
  if (member == nullptr || !Expect(*member, key, JsonValue::Kind::kBoolean, faults_)) return fallback;
  return member->boolean;
}

const std::vector<JsonValue>& ObjectReader::Array(std::string_view key, size_t limit) const {
  const JsonValue* member = Find(key);
  return member == nullptr ? kNoItems : ReadArray(*member, key, limit, faults_);
}

std::string_view ObjectReader::OneOf(std::initializer_list<std::string_view> keys, bool required) const {
  std::string_view chosen;
  for (std::string_view key : keys) {
    const JsonValue* member = Find(key);
    if (member == nullptr) continue;
    if (!chosen.empty()) {
      faults_.Add(member->line,
                  Concat("\"", name_, "\" cannot have both \"", chosen, "\" and \"", key, "\""));
      return chosen;
    }
    chosen = key;
  }
  if (chosen.empty() && required && value_.kind == JsonValue::Kind::kObject) {
    faults_.Add(value_.line, Concat("\"", name_, "\" needs one of ", Joined(keys)));
  }
  return chosen;
}

Occurrences ReadOccurrences(const ObjectReader& row) {
  Occurrences occurrences;
  const std::string_view form = row.OneOf({"nth", "from"}, false);
  if (!form.empty()) occurrences.first = row.Number(form, {1, std::numeric_limits<uint32_t>::max()}, 1);
  if (form == "nth") occurrences.last = occurrences.first;
  return occurrences;
}

}  // namespace scenario
