#include "methods.h"

#include <algorithm>

#include "names.h"

namespace firmware {
namespace {

uint32_t EcVersion(const EcModel& ec, State&, const Arguments&) { return ec.version; }

uint32_t EcRead(const EcModel& ec, State& state, const Arguments& inputs) {
  const EcPlace place{static_cast<uint8_t>(inputs[1].second), static_cast<uint8_t>(inputs[0].second)};
  const auto row = ec.registers.find(place);
  if (row == ec.registers.end()) return ec.unlisted;
  const auto written = state.ec.find(place);
  return written != state.ec.end() ? written->second : row->second;
}

uint32_t EcWrite(const EcModel& ec, State& state, const Arguments& inputs) {
  const auto table = static_cast<uint8_t>(inputs[1].second);
  const auto target = ec.writes.find({table, static_cast<uint8_t>(inputs[0].second)});
  if (target == ec.writes.end()) return ec.refused;
  state.ec[{table, target->second}] = static_cast<uint8_t>(inputs[2].second);
  return ec.accepted;
}

uint32_t BatteryRead(const EcModel& ec, State& state, const Arguments& inputs) {
  const auto number = static_cast<uint8_t>(inputs[0].second);
  const uint64_t length = inputs[1].second;
  const auto row = ec.gauge.find(number);
  if (row == ec.gauge.end() || !row->second.word || length < 1 || length > 2) return ec.unlisted;
  uint32_t word = *row->second.word;
  const auto written = state.gauge.find(number);
  if (written != state.gauge.end()) word = (word & 0xFF00) | written->second;
  return length == 1 ? word & 0xFF : word;
}

uint32_t BatteryReadByIndex(const EcModel& ec, State&, const Arguments& inputs) {
  const auto row = ec.gauge.find(static_cast<uint8_t>(inputs[0].second));
  const uint64_t index = inputs[1].second;
  if (row == ec.gauge.end() || index >= row->second.block.size()) return ec.unlisted;
  return row->second.block[index];
}

uint32_t BatteryWrite(const EcModel& ec, State& state, const Arguments& inputs) {
  const auto number = static_cast<uint8_t>(inputs[0].second);
  const auto row = ec.gauge.find(number);
  if (row == ec.gauge.end() || !row->second.writable) return ec.refused;
  state.gauge[number] = static_cast<uint8_t>(inputs[1].second);
  return ec.accepted;
}

struct EcMethod {
  std::string_view name;
  std::vector<std::string_view> inputs;
  std::string_view output;
  uint32_t (*execute)(const EcModel&, State&, const Arguments&);
};

const std::vector<EcMethod>& EcMethods() {
  static const std::vector<EcMethod> methods = {
      {"ec_get_version", {}, "version", EcVersion},
      {"ec_read_command_byte", {"commandcode", "param0"}, "value", EcRead},
      {"ec_write_command_byte", {"commandcode", "param0", "param1"}, "value", EcWrite},
      {"battery_read_command_byte", {"commandcode", "param0"}, "value", BatteryRead},
      {"battery_read_command_by_index", {"commandcode", "param0"}, "value", BatteryReadByIndex},
      {"battery_write_command_byte", {"commandcode", "param0"}, "value", BatteryWrite},
  };
  return methods;
}

uint32_t SetDevice(const DeviceModel& model, State& state, uint32_t id, uint32_t control) {
  const auto device = model.devices.find(id);
  if (device == model.devices.end()) return model.unlisted_result;
  if (!device->second.accepts_all && std::ranges::count(device->second.accepts, control) == 0) {
    return device->second.refused;
  }
  state.controls[id] = control;
  return device->second.accepted;
}

std::vector<Property> Parameters(const std::vector<std::string_view>& names, Cim type) {
  std::vector<Property> parameters;
  for (std::string_view name : names) parameters.push_back({std::string(name), {type, false}});
  return parameters;
}

ClassShape EcShape() {
  ClassShape shape{.name = std::string(kEcClass)};
  for (const EcMethod& method : EcMethods()) {
    shape.methods.push_back(
        {std::string(method.name), Parameters(method.inputs, Cim::kUint8), Parameters({method.output}, Cim::kUint32)});
  }
  return shape;
}

ClassShape DeviceShape() {
  return {.name = std::string(kDeviceClass),
          .methods = {{"DSTS", Parameters({"Device_ID"}, Cim::kUint32), Parameters({"device_status"}, Cim::kUint32)},
                      {"DEVS", Parameters({"Device_ID", "Control_status"}, Cim::kUint32),
                       Parameters({"result"}, Cim::kUint32)}}};
}

// Instances are named after the ACPI device that the system made for the class, and numbered.
Table FirmwareTable(ClassShape shape, std::string_view acpi_device, uint32_t instances) {
  shape.properties = {{"InstanceName", {Cim::kString, false}, true}, {"Active", {Cim::kBoolean, false}}};
  Table table{std::string(kFirmwareNamespace), std::make_shared<const ClassShape>(std::move(shape)), {}};
  for (uint32_t i = 0; i < instances; ++i) {
    table.rows.push_back({Datum::Text(std::string(acpi_device) + "_" + std::to_string(i)), Datum::Integer(kVtBool, 1)});
  }
  return table;
}

}  // namespace

std::vector<Table> FirmwareTables(const Model& model) {
  std::vector<Table> tables;
  if (model.ec) tables.push_back(FirmwareTable(EcShape(), "ACPI\\PNP0C14\\1", model.ec->instances));
  if (model.devices) tables.push_back(FirmwareTable(DeviceShape(), "ACPI\\PNP0C14\\0", model.devices->instances));
  return tables;
}

const Method* FindMethod(const ClassShape& shape, std::string_view name) {
  const auto found = std::ranges::find_if(shape.methods, [&](const Method& m) { return SameName(m.name, name); });
  return found == shape.methods.end() ? nullptr : &*found;
}

uint32_t DeviceStatus(const DeviceModel& model, const State& state, uint32_t id) {
  const auto device = model.devices.find(id);
  if (device == model.devices.end()) return model.unlisted_status;
  const auto control = state.controls.find(id);
  if (control == state.controls.end()) return device->second.status;
  const uint32_t mask = device->second.mask;
  return (device->second.status & ~mask) | (control->second & mask);
}

uint32_t ExecuteMethod(const Model& model, State& state, std::string_view class_name, std::string_view method,
                       const Arguments& inputs) {
  if (SameName(class_name, kDeviceClass)) {
    const auto device = static_cast<uint32_t>(inputs[0].second);
    if (SameName(method, "DSTS")) return DeviceStatus(*model.devices, state, device);
    return SetDevice(*model.devices, state, device, static_cast<uint32_t>(inputs[1].second));
  }
  const auto row = std::ranges::find_if(EcMethods(), [&](const EcMethod& m) { return SameName(m.name, method); });
  return row->execute(*model.ec, state, inputs);
}

}  // namespace firmware
