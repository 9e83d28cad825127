// Addresses, GUIDs and names of the section.
#include <charconv>

#include "scenario/texts.h"
#include "section.h"

namespace radios {
namespace {

using scenario::Concat;

const JsonValue* RequireText(const ObjectReader& row, std::string_view key, Faults& faults) {
  const JsonValue* member = row.Require(key);
  return member != nullptr && scenario::Expect(*member, key, JsonValue::Kind::kText, faults) ? member : nullptr;
}

// Whether `text` looks like `form`, in which "x" stands for a hexadecimal digit; its digits go to `digits`.
bool TakeDigits(std::string_view text, std::string_view form, std::string& digits) {
  if (text.size() != form.size()) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool digit = std::string_view("0123456789abcdefABCDEF").contains(text[i]);
    if (form[i] == 'x' ? !digit : text[i] != form[i]) return false;
    if (form[i] == 'x') digits += text[i];
  }
  return true;
}

uint32_t HexNumber(std::string_view digits) {
  uint32_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
  return number;
}

// The parser has let only well-formed UTF-8 through.
std::u16string Utf16Of(std::string_view text) {
  std::u16string wide;
  for (size_t i = 0; i < text.size();) {
    const auto lead = static_cast<uint8_t>(text[i++]);
    const int trailing = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
    uint32_t point = trailing == 0 ? lead : lead & (0x3F >> trailing);
    for (int k = 0; k < trailing; ++k) point = point << 6 | (static_cast<uint8_t>(text[i++]) & 0x3F);
    if (point < 0x10000) {
      wide += static_cast<char16_t>(point);
    } else {
      wide += static_cast<char16_t>(0xD7C0 + (point >> 10));
      wide += static_cast<char16_t>(0xDC00 + (point & 0x3FF));
    }
  }
  return wide;
}

// Code units as a person writes them: "D83D 0041".
std::u16string CodeUnits(const JsonValue& value, Faults& faults) {
  const ObjectReader row(value, "name", {"utf16"}, faults);
  const JsonValue* hex = row.Require("utf16");
  const std::optional<Bytes> bytes = hex == nullptr ? std::nullopt : scenario::ReadHex(*hex, "utf16", faults);
  std::u16string wide;
  for (size_t i = 0; bytes && i + 1 < bytes->size(); i += 2) {
    wide += static_cast<char16_t>((*bytes)[i] << 8 | (*bytes)[i + 1]);
  }
  if (bytes && bytes->size() % 2 != 0) faults.Add(value.line, "\"utf16\" must hold four digits for each code unit");
  return wide;
}

}  // namespace

Address ReadAddress(const ObjectReader& row, std::string_view key, Faults& faults) {
  Address address{};
  const JsonValue* member = RequireText(row, key, faults);
  if (member == nullptr) return address;
  std::string digits;
  if (!TakeDigits(member->text, "xx:xx:xx:xx:xx:xx", digits)) {
    faults.Add(member->line, Concat("\"", key, "\" must look like 00:11:22:33:44:55"));
    return address;
  }
  for (size_t i = 0; i < address.size(); ++i) address[i] = static_cast<uint8_t>(HexNumber(digits.substr(2 * i, 2)));
  return address;
}

Guid ReadGuid(const ObjectReader& row, std::string_view key, Faults& faults) {
  Guid guid;
  const JsonValue* member = RequireText(row, key, faults);
  if (member == nullptr) return guid;
  std::string digits;
  if (!TakeDigits(member->text, "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}", digits)) {
    faults.Add(member->line, Concat("\"", key, "\" must look like {00112233-4455-6677-8899-aabbccddeeff}"));
    return guid;
  }
  guid.first = HexNumber(digits.substr(0, 8));
  guid.second = static_cast<uint16_t>(HexNumber(digits.substr(8, 4)));
  guid.third = static_cast<uint16_t>(HexNumber(digits.substr(12, 4)));
  for (size_t i = 0; i < 8; ++i) guid.rest[i] = static_cast<uint8_t>(HexNumber(digits.substr(16 + 2 * i, 2)));
  return guid;
}

std::u16string ReadName(const ObjectReader& row, std::string_view key, size_t limit, Faults& faults) {
  const JsonValue* member = row.Require(key);
  if (member == nullptr) return {};
  std::u16string name;
  if (member->kind == JsonValue::Kind::kObject) {
    name = CodeUnits(*member, faults);
  } else if (scenario::Expect(*member, key, JsonValue::Kind::kText, faults)) {
    name = Utf16Of(member->text);
  }
  if (name.size() > limit) {
    faults.Add(member->line, Concat("\"", key, "\" has ", name.size(), " characters; the limit is ", limit));
  }
  return name;
}

std::optional<uint32_t> ReadOptional(const ObjectReader& row, std::string_view key, scenario::Range range) {
  if (row.Find(key) == nullptr) return std::nullopt;
  return static_cast<uint32_t>(row.Number(key, range, 0));
}

}  // namespace radios
