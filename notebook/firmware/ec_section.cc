// The EC behind the firmware: tables of bytes, and the battery gauge.
#include <algorithm>

#include "scenario/object_reader.h"
#include "scenario/texts.h"
#include "section.h"

namespace firmware {
namespace {

using scenario::Concat;
using scenario::Hex;
using scenario::kByteRange;
using scenario::ObjectReader;

constexpr size_t kMaxRows = 256;
constexpr size_t kMaxBlock = 255;

uint8_t Byte(const ObjectReader& row, std::string_view key) {
  return static_cast<uint8_t>(row.RequireNumber(key, kByteRange));
}

// A row's bytes stand at its offset and the following ones, low byte first.
std::vector<uint8_t> ReadBytes(const ObjectReader& row, Faults& faults) {
  const std::string_view form = row.OneOf({"byte", "word", "hex"}, true);
  if (form == "hex") return scenario::ReadHex(*row.Find("hex"), form, faults).value_or(std::vector<uint8_t>{});
  if (form == "byte") return {static_cast<uint8_t>(row.Number(form, {INT8_MIN, 0xFF}, 0))};
  const uint64_t word = form.empty() ? 0 : row.Number(form, {INT16_MIN, 0xFFFF}, 0);
  return {static_cast<uint8_t>(word), static_cast<uint8_t>(word >> 8)};
}

void ReadRegister(const JsonValue& value, uint8_t table, EcModel& ec, Faults& faults) {
  const ObjectReader row(value, "registers", {"offset", "name", "byte", "word", "hex", "writable", "write_code"},
                         faults);
  const uint8_t offset = Byte(row, "offset");
  const std::vector<uint8_t> bytes = ReadBytes(row, faults);
  if (bytes.size() > kMaxRows - offset) {
    faults.Add(row.line(), Concat(bytes.size(), " bytes at offset ", Hex(offset), " reach beyond offset 0xff"));
    return;
  }
  for (size_t i = 0; i < bytes.size(); ++i) {
    const auto place = static_cast<uint8_t>(offset + i);
    if (!ec.registers.emplace(EcPlace{table, place}, bytes[i]).second) {
      faults.Add(row.line(), Concat("register ", Hex(place), " of table ", Hex(table), " is given twice"));
    }
  }
  const bool has_code = row.Find("write_code") != nullptr;
  if (!row.Boolean("writable", has_code)) return;
  if (bytes.size() != 1) faults.Add(row.line(), "only a single byte can be writable");
  const auto code = static_cast<uint8_t>(row.Number("write_code", kByteRange, offset));
  if (!ec.writes.emplace(EcPlace{table, code}, offset).second) {
    faults.Add(row.line(), Concat("command code ", Hex(code), " writes another register already"));
  }
}

// The first byte of a block is the number of those that follow, or "count" when it is to lie.
std::vector<uint8_t> ReadBlock(const ObjectReader& row, std::string_view form, Faults& faults) {
  const JsonValue& member = *row.Find(form);
  std::vector<uint8_t> bytes;
  if (form == "text") {
    const std::string text = scenario::ReadText(member, form, faults).value_or("");
    bytes.assign(text.begin(), text.end());
  } else {
    bytes = scenario::ReadHex(member, form, faults).value_or(bytes);
  }
  if (bytes.size() > kMaxBlock) {
    faults.Add(member.line, Concat("\"", form, "\" has ", bytes.size(), " bytes; the limit is ", kMaxBlock));
    bytes.resize(kMaxBlock);
  }
  bytes.insert(bytes.begin(), static_cast<uint8_t>(row.Number("count", kByteRange, bytes.size())));
  return bytes;
}

void ReadGauge(const JsonValue& value, EcModel& ec, Faults& faults) {
  const ObjectReader row(value, "gauge", {"register", "name", "word", "text", "hex", "count", "writable"}, faults);
  const uint8_t number = Byte(row, "register");
  GaugeRegister gauge;
  const std::string_view form = row.OneOf({"word", "text", "hex"}, true);
  if (form == "word") {
    gauge.word = static_cast<uint16_t>(row.Number(form, {INT16_MIN, 0xFFFF}, 0));
    gauge.writable = row.Boolean("writable", false);
    if (row.Find("count") != nullptr) faults.Add(row.line(), "\"count\" goes with \"text\" and \"hex\" only");
  } else if (!form.empty()) {
    gauge.block = ReadBlock(row, form, faults);
    if (row.Find("writable") != nullptr) faults.Add(row.line(), "\"writable\" goes with \"word\" only");
  }
  if (!ec.gauge.emplace(number, std::move(gauge)).second) {
    faults.Add(row.line(), Concat("gauge register ", Hex(number), " is given twice"));
  }
}

}  // namespace

EcModel ReadEc(const JsonValue& value, Faults& faults) {
  const ObjectReader section(value, "ec",
                             {"instances", "version", "unlisted", "accepted", "refused", "tables", "gauge"}, faults);
  EcModel ec;
  const auto dword = [&](std::string_view key, uint32_t fallback) {
    return static_cast<uint32_t>(section.Number(key, scenario::kSignedDwordRange, fallback));
  };
  ec.instances = static_cast<uint32_t>(section.Number("instances", kByteRange, 1));
  ec.unlisted = dword("unlisted", ec.unlisted);
  ec.version = dword("version", ec.unlisted);
  ec.accepted = dword("accepted", ec.accepted);
  ec.refused = dword("refused", ec.refused);
  std::vector<uint8_t> tables;
  for (const JsonValue& entry : section.Array("tables", kMaxRows)) {
    const ObjectReader table(entry, "tables", {"table", "name", "registers"}, faults);
    const uint8_t number = Byte(table, "table");
    if (std::ranges::count(tables, number) != 0) {
      faults.Add(table.line(), Concat("table ", Hex(number), " is already given"));
      continue;
    }
    tables.push_back(number);
    for (const JsonValue& row : table.Array("registers", kMaxRows)) ReadRegister(row, number, ec, faults);
  }
  for (const JsonValue& row : section.Array("gauge", kMaxRows)) ReadGauge(row, ec, faults);
  return ec;
}

}  // namespace firmware
