#include "section.h"

#include <algorithm>

#include "methods.h"
#include "names.h"
#include "scenario/object_reader.h"
#include "scenario/texts.h"

namespace firmware {
namespace {

using scenario::Concat;
using scenario::ObjectReader;

constexpr size_t kMaxTables = 256;
constexpr size_t kMaxRules = 1024;
constexpr size_t kMaxDevices = 1024;
constexpr size_t kMaxAccepted = 256;

uint32_t Dword(const ObjectReader& row, std::string_view key, uint32_t fallback) {
  return static_cast<uint32_t>(row.Number(key, scenario::kSignedDwordRange, fallback));
}

void ReadAccepts(const JsonValue& value, Device& device, Faults& faults) {
  if (value.kind == JsonValue::Kind::kText) {
    device.accepts_all = value.text == "any";
    if (!device.accepts_all) faults.Add(value.line, "\"accepts\" must be \"any\" or an array of control values");
    return;
  }
  for (const JsonValue& control : scenario::ReadArray(value, "accepts", kMaxAccepted, faults)) {
    const auto number = scenario::ReadNumber(control, "accepts", scenario::kSignedDwordRange, faults);
    device.accepts.push_back(static_cast<uint32_t>(number.value_or(0)));
  }
}

void ReadDevice(const JsonValue& value, DeviceModel& model, Faults& faults) {
  const ObjectReader row(value, "list", {"device", "name", "status", "accepts", "mask", "accepted", "refused"}, faults);
  const auto id = static_cast<uint32_t>(row.RequireNumber("device", scenario::kDwordRange));
  Device device;
  row.Require("status");
  device.status = Dword(row, "status", 0);
  if (const JsonValue* accepts = row.Find("accepts")) ReadAccepts(*accepts, device, faults);
  device.mask = Dword(row, "mask", 0);
  device.accepted = Dword(row, "accepted", 1);
  device.refused = Dword(row, "refused", 0);
  if (!model.devices.emplace(id, std::move(device)).second) {
    faults.Add(row.line(), Concat("device ", scenario::Hex(id, 8), " is given twice"));
  }
}

// No class has two tables in one namespace, and none takes the place of a class that the firmware has anyway.
void AddTable(const JsonValue& value, Model& model, Faults& faults) {
  Table table = ReadTable(value, faults);
  std::vector<Table> taken = FirmwareTables(model);
  taken.insert(taken.end(), model.tables.begin(), model.tables.end());
  const bool twice = std::ranges::any_of(taken, [&](const Table& other) {
    return other.namespace_name == table.namespace_name && SameName(other.shape->name, table.shape->name);
  });
  if (twice) faults.Add(value.line, Concat("class \"", table.shape->name, "\" is already given"));
  model.tables.push_back(std::move(table));
}

}  // namespace

DeviceModel ReadDevices(const JsonValue& value, Faults& faults) {
  const ObjectReader section(value, "devices", {"instances", "unlisted", "list"}, faults);
  DeviceModel model;
  model.instances = static_cast<uint32_t>(section.Number("instances", scenario::kByteRange, 1));
  if (const JsonValue* unlisted = section.Find("unlisted")) {
    const ObjectReader row(*unlisted, "unlisted", {"status", "result"}, faults);
    model.unlisted_status = Dword(row, "status", model.unlisted_status);
    model.unlisted_result = Dword(row, "result", model.unlisted_result);
  }
  for (const JsonValue& device : section.Array("list", kMaxDevices)) ReadDevice(device, model, faults);
  return model;
}

Model ReadFirmwareSection(const JsonValue& value, Faults& faults) {
  const ObjectReader section(value, "firmware", {"log", "ec", "devices", "tables", "rules"}, faults);
  Model model;
  model.log = section.Boolean("log", true);
  if (const JsonValue* ec = section.Find("ec")) model.ec = ReadEc(*ec, faults);
  if (const JsonValue* devices = section.Find("devices")) model.devices = ReadDevices(*devices, faults);
  for (const JsonValue& table : section.Array("tables", kMaxTables)) AddTable(table, model, faults);
  for (const JsonValue& rule : section.Array("rules", kMaxRules)) model.rules.push_back(ReadRule(rule, faults));
  return model;
}

std::optional<Model> ReadFirmwareScenario(std::string_view text, Faults& faults) {
  const std::optional<JsonValue> document = scenario::ParseJson(text, faults);
  if (!document || !scenario::Expect(*document, "scenario", JsonValue::Kind::kObject, faults)) return std::nullopt;
  Model model;
  const auto section = std::ranges::find(document->items, "firmware", &JsonValue::key);
  if (section != document->items.end()) model = ReadFirmwareSection(*section, faults);
  if (!faults.Empty()) return std::nullopt;
  return model;
}

}  // namespace firmware
