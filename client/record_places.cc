#include "client/record_places.h"

#include <array>

namespace vexahealth {
namespace {

constexpr uint8_t kBattery = 1;
constexpr uint8_t kThermal = 2;
constexpr uint8_t kPins = 3;
constexpr uint8_t kAdapter = 6;
constexpr uint8_t kWattage = 0x0C;

// clang-format off: one row a line
constexpr DriverPlace kDriver[] = {
    {"ec.project_information", kInformationGroup, 0x51, 1},
    {"ec.chip_id", kInformationGroup, 0x10, 1},

    {"battery.serial_number", kBattery, 0x28, 2},
    {"battery.design_voltage", kBattery, 0x2C, 2},
    {"battery.cycle_count", kBattery, 0x2E, 2},
    {"battery.rsoc", kBattery, 0x30, 2},
    {"battery.temperature", kBattery, 0x34, 2},
    {"battery.voltage", kBattery, 0x36, 2},
    {"battery.current", kBattery, 0x38, 2},
    {"battery.charging_current", kBattery, 0x3C, 2},
    {"battery.charging_voltage", kBattery, 0x3E, 2},
    {"battery.remaining_capacity", kBattery, 0x40, 2},
    {"battery.full_charge_capacity", kBattery, 0x42, 2},
    {"battery.cell_voltage_1", kBattery, 0x48, 2},
    {"battery.cell_voltage_2", kBattery, 0x4A, 2},
    {"battery.cell_voltage_3", kBattery, 0x4C, 2},
    {"battery.cell_voltage_4", kBattery, 0x4E, 2},
    {"battery.manufacture_date", kBattery, 0x54, 2},
    {"charger.timeout_status", kBattery, 0x03, 1},
    {"lid.state", kPins, 0x01, 1},

    {"charger.interrupt", kAdapter, 0x27, 1},
    {"charger.information", kAdapter, 0x28, 1},
    {"adapter.data_configuration", kAdapter, 0x00, 1},
    {"adapter.pdo.1.word", kAdapter, 0x02, 4},
    {"adapter.pdo.2.word", kAdapter, 0x06, 4},
    {"adapter.pdo.3.word", kAdapter, 0x0A, 4},
    {"adapter.pdo.4.word", kAdapter, 0x0E, 4},
    {"adapter.pdo.5.word", kAdapter, 0x12, 4},
    {"adapter.pdo.6.word", kAdapter, 0x16, 4},
    {"adapter.pdo.7.word", kAdapter, 0x1A, 4},
    {"adapter.contract.word", kAdapter, 0x1E, 4},
    {"adapter.pdo_power_record", kAdapter, 0x22, 4},
    {"adapter.alert", kAdapter, 0x26, 1},
    {"adapter.source.vendor_id", kAdapter, 0x29, 2},
    {"adapter.source.product_id", kAdapter, 0x2B, 2},
    {"adapter.source.certificate_id", kAdapter, 0x2D, 4},
    {"adapter.source.firmware_version", kAdapter, 0x31, 1},
    {"adapter.source.hardware_version", kAdapter, 0x32, 1},
    {"adapter.source.temperature", kAdapter, 0x33, 1},
    {"adapter.source.event_flags", kAdapter, 0x34, 1},
    {"cable.vendor_id", kAdapter, 0x37, 4},
    {"cable.certificate_id", kAdapter, 0x3B, 4},
    {"cable.product_id", kAdapter, 0x41, 2},
    {"cable.other", kAdapter, 0x47, 4},
    {"adapter.standard_power", kWattage, 0x00, 2},
    {"adapter.sufficient_power", kWattage, 0x02, 2},
    {"adapter.champion_port_power", kWattage, 0x04, 2},

    {"fan.count", kThermal, 0x30, 1},
    {"fan.test_mode", kThermal, 0x31, 1},
    {"temperature.cpu", kThermal, 0x00, 1},
};

constexpr DriverBit kBits[] = {
    {"power.ac_present", kBattery, 0x00, 0},
    {"battery.fully_charged", kBattery, 0x01, 4},
    {"battery.error", kBattery, 0x01, 7},
};

constexpr GaugePlace kGauge[] = {
    {"battery.manufacturer_smbus", 0x20, true},
    {"battery.device_name", 0x21, true},
    {"battery.safety_status", 0x51, false},
    {"battery.permanent_failure_status", 0x53, false},
};

constexpr FirmwareGaugePlace kFirmwareGauge[] = {
    {"battery.temperature", 0x08},
    {"battery.voltage", 0x09},
    {"battery.current", 0x0A},
    {"battery.rsoc", 0x0D},
    {"battery.remaining_capacity", 0x0F},
    {"battery.full_charge_capacity", 0x10},
    {"battery.charging_voltage", 0x15},
    {"battery.cycle_count", 0x17},
    {"battery.design_voltage", 0x19},
    {"battery.manufacture_date", 0x1B},
    {"battery.serial_number", 0x1C},
    {"battery.cell_voltage_4", 0x3C},
    {"battery.cell_voltage_3", 0x3D},
    {"battery.cell_voltage_2", 0x3E},
    {"battery.cell_voltage_1", 0x3F},
};

constexpr FirmwarePlace kFirmware[] = {
    {"fan.count", 1, 0x0B, 1},
    {"fan.1.speed", 1, 0x08, 2},
    {"temperature.cpu", 3, 0x01, 1},
    {"temperature.board", 3, 0x02, 1},
};
// clang-format on

}  // namespace

std::span<const DriverPlace> DriverPlaces() { return kDriver; }
std::span<const DriverBit> DriverBits() { return kBits; }
std::span<const GaugePlace> GaugePlaces() { return kGauge; }
std::span<const FirmwareGaugePlace> FirmwareGaugePlaces() { return kFirmwareGauge; }
std::span<const FirmwarePlace> FirmwarePlaces() { return kFirmware; }

}  // namespace vexahealth
