// Classes with fixed rows.
#include <algorithm>

#include "names.h"
#include "scenario/object_reader.h"
#include "scenario/texts.h"
#include "section.h"

namespace firmware {
namespace {

using scenario::Concat;
using scenario::Expect;
using scenario::ObjectReader;

constexpr size_t kMaxRows = 1024;

bool IsName(std::string_view name) {
  const auto fits = [](char c) {
    return c == '_' || (c >= '0' && c <= '9') || (UpperLetter(c) >= 'A' && UpperLetter(c) <= 'Z');
  };
  return !name.empty() && std::ranges::all_of(name, fits) && !(name[0] >= '0' && name[0] <= '9');
}

std::string ReadName(const ObjectReader& table, std::string_view key, Faults& faults) {
  const JsonValue* name = table.Require(key);
  return name == nullptr ? "" : scenario::ReadText(*name, key, faults).value_or("");
}

Property* FindProperty(ClassShape& shape, std::string_view name) {
  const auto found = std::ranges::find_if(shape.properties, [&](const Property& p) { return SameName(p.name, name); });
  return found == shape.properties.end() ? nullptr : &*found;
}

void ReadProperties(const JsonValue& value, ClassShape& shape, Faults& faults) {
  if (!Expect(value, "properties", JsonValue::Kind::kObject, faults)) return;
  for (const JsonValue& member : value.items) {
    if (!IsName(member.key) || member.key.starts_with("__")) {
      faults.Add(member.key_line, Concat("\"", member.key, "\" is no name of a property"));
    }
    if (FindProperty(shape, member.key) != nullptr) {
      faults.Add(member.key_line, Concat("property \"", member.key, "\" is given twice"));
    }
    if (!Expect(member, member.key, JsonValue::Kind::kText, faults)) continue;
    const std::optional<CimType> type = CimTypeFromName(member.text);
    if (!type) faults.Add(member.line, Concat("\"", member.text, "\" is no CIM type"));
    shape.properties.push_back({member.key, type.value_or(CimType{})});
  }
}

void ReadKeys(const ObjectReader& table, ClassShape& shape, Faults& faults) {
  for (const JsonValue& key : table.Array("keys", kMaxRows)) {
    if (!Expect(key, "keys", JsonValue::Kind::kText, faults)) continue;
    Property* property = FindProperty(shape, key.text);
    if (property == nullptr) {
      faults.Add(key.line, Concat("key \"", key.text, "\" is no property of the class"));
    } else {
      property->key = true;
    }
  }
}

Row ReadRow(const JsonValue& value, const ClassShape& shape, Faults& faults) {
  Row row(shape.properties.size());
  std::vector<bool> given(row.size());
  if (!Expect(value, "rows", JsonValue::Kind::kObject, faults)) return row;
  for (const JsonValue& member : value.items) {
    const auto found =
        std::ranges::find_if(shape.properties, [&](const Property& p) { return SameName(p.name, member.key); });
    if (found == shape.properties.end()) {
      faults.Add(member.key_line, Concat("\"", member.key, "\" is no property of the class"));
      continue;
    }
    const auto index = static_cast<size_t>(found - shape.properties.begin());
    if (given[index]) faults.Add(member.key_line, Concat("property \"", found->name, "\" is given twice"));
    given[index] = true;
    row[index] = ReadValue(member, member.key, found->type, faults);
  }
  return row;
}

}  // namespace

Table ReadTable(const JsonValue& value, Faults& faults) {
  const ObjectReader reader(value, "tables", {"namespace", "class", "properties", "keys", "rows"}, faults);
  Table table;
  table.namespace_name = NamespaceName(ReadName(reader, "namespace", faults));
  ClassShape shape{.name = ReadName(reader, "class", faults)};
  if (!shape.name.empty() && !IsName(shape.name)) {
    faults.Add(reader.line(), Concat("\"", shape.name, "\" is no name of a class"));
  }
  if (const JsonValue* properties = reader.Require("properties")) ReadProperties(*properties, shape, faults);
  ReadKeys(reader, shape, faults);
  for (const JsonValue& row : reader.Array("rows", kMaxRows)) table.rows.push_back(ReadRow(row, shape, faults));
  table.shape = std::make_shared<const ClassShape>(std::move(shape));
  return table;
}

}  // namespace firmware
