// The Bluetooth radios of the section, and the devices that they know.
#include "section.h"

namespace radios {
namespace {

constexpr size_t kMaxRadios = 16;
constexpr size_t kMaxDevices = 1024;
constexpr scenario::Range kClassRange{0, 0xFFFFFF};

BluetoothDevice ReadDevice(const JsonValue& value, Faults& faults) {
  const ObjectReader row(value, "devices", {"name", "address", "class", "connected"}, faults);
  BluetoothDevice device;
  device.name = ReadName(row, "name", kMaxBluetoothName, faults);
  device.address = ReadAddress(row, "address", faults);
  device.device_class = static_cast<uint32_t>(row.RequireNumber("class", kClassRange));
  device.connected = row.Boolean("connected", true);
  return device;
}

BluetoothRadio ReadRadio(const JsonValue& value, Faults& faults) {
  const ObjectReader row(value, "radios", {"name", "address", "class", "devices"}, faults);
  BluetoothRadio radio;
  radio.name = ReadName(row, "name", kMaxBluetoothName, faults);
  radio.address = ReadAddress(row, "address", faults);
  radio.device_class = static_cast<uint32_t>(row.Number("class", kClassRange, 0));
  for (const JsonValue& device : row.Array("devices", kMaxDevices)) radio.devices.push_back(ReadDevice(device, faults));
  return radio;
}

}  // namespace

std::vector<BluetoothRadio> ReadBluetooth(const JsonValue& value, Faults& faults) {
  const ObjectReader section(value, "bluetooth", {"radios"}, faults);
  std::vector<BluetoothRadio> radios;
  for (const JsonValue& radio : section.Array("radios", kMaxRadios)) radios.push_back(ReadRadio(radio, faults));
  return radios;
}

}  // namespace radios
