#include "client/catalogue.h"

#include <algorithm>
#include <cassert>

#include "client/ask.h"

namespace vexahealth {
namespace {

constexpr Section kLibrary = Section::kLibrary;
constexpr Section kController = Section::kController;
constexpr Section kBattery = Section::kBattery;
constexpr Section kCharger = Section::kCharger;
constexpr Gate kTable = Gate::kTable;
constexpr OnFirmware kNeverZero = OnFirmware::kNeverZero;
constexpr OnFirmware kMayBeZero = OnFirmware::kMayBeZero;
constexpr OnFirmware kSystem = OnFirmware::kSystem;

constexpr std::array<Row, kRowCount> kTheRows = {{
    {"library.dll_version", "Library interface", kLibrary, VEXA_EXPORT(GetIoDllVersion), Kind::kInterfaceVersion,
     Gate::kLibrary},
    {"driver.version", "Driver version", kLibrary, VEXA_EXPORT(GetDriverVersion), Kind::kHex32, Gate::kDriver},
    {"driver.reference_count", "Driver users", kLibrary, VEXA_EXPORT(GetRefCount), Kind::kNumber32, Gate::kDriver},

    {"ec.table_version", "Healthy-table version", kController, VEXA_EXPORT(BatteryHealthyTable_ReadVersion),
     Kind::kTableVersion, Gate::kController},
    {"ec.vendor_type", "Vendor type", kController, VEXA_EXPORT(BatteryHealthyTable_ReadVendorType), Kind::kBit,
     Gate::kController},
    {"ec.chip_id", "Chip id", kController, VEXA_EXPORT(BatteryHealthyTable_ECChipID), Kind::kHex8, Gate::kController},
    {"ec.chip_name", "Chip name", kController, VEXA_EXPORT(BatteryHealthyTable_ECChipName), Kind::kText,
     Gate::kController},

    {"battery.manufacturer", "Manufacturer", kBattery, VEXA_EXPORT(BatteryHealthyTable_ManufactureName), Kind::kText,
     kTable, kNeverZero},
    {"battery.manufacturer_smbus", "Manufacturer (gauge)", kBattery,
     VEXA_EXPORT(BatteryHealthyTable_ManufactureNameBySMBus), Kind::kText, Gate::kGauge, kNeverZero},
    {"battery.device_name", "Device name", kBattery, VEXA_EXPORT(BatteryHealthyTable_DeviceName), Kind::kText,
     Gate::kGauge, kNeverZero},
    {"battery.manufacture_date", "Manufacture date", kBattery, VEXA_EXPORT(BatteryHealthyTable_ManufactureDate),
     Kind::kDate, kTable, kNeverZero},
    {"battery.serial_number", "Serial number", kBattery, VEXA_EXPORT(BatteryHealthyTable_SerialNumber), Kind::kNumber16,
     kTable, kMayBeZero},
    {"battery.design_voltage", "Design voltage", kBattery, VEXA_EXPORT(BatteryHealthyTable_DesignVoltage),
     Kind::kMillivolts, kTable, kNeverZero},
    {"battery.cycle_count", "Charge cycles", kBattery, VEXA_EXPORT(BatteryHealthyTable_CycleCount), Kind::kNumber16,
     kTable, kMayBeZero},
    {"battery.rsoc", "State of charge", kBattery, VEXA_EXPORT(BatteryHealthyTable_Rsoc), Kind::kPercent, kTable,
     kMayBeZero},
    {"battery.temperature", "Temperature", kBattery, VEXA_EXPORT(BatteryHealthyTable_Temperature), Kind::kDeciKelvin,
     kTable, kNeverZero},
    {"battery.voltage", "Pack voltage", kBattery, VEXA_EXPORT(BatteryHealthyTable_PackageVoltage), Kind::kMillivolts,
     kTable, kNeverZero},
    {"battery.current", "Current", kBattery, VEXA_EXPORT(BatteryHealthyTable_Current), Kind::kMilliamps, kTable,
     kMayBeZero},
    {"battery.charging_current", "Requested charge current", kBattery, VEXA_EXPORT(BatteryHealthyTable_ChargingCurrent),
     Kind::kMilliampsRequested, kTable},
    {"battery.charging_voltage", "Requested charge voltage", kBattery, VEXA_EXPORT(BatteryHealthyTable_ChargingVoltage),
     Kind::kMillivolts, kTable, kMayBeZero},
    {"battery.remaining_capacity", "Remaining capacity", kBattery, VEXA_EXPORT(BatteryHealthyTable_RemainingCapacity),
     Kind::kCapacity, kTable, kMayBeZero},
    {"battery.full_charge_capacity", "Full-charge capacity", kBattery,
     VEXA_EXPORT(BatteryHealthyTable_FullChargeCapacity), Kind::kCapacity, kTable, kNeverZero},
    {"battery.cell_voltage_1", "Cell 1", kBattery, VEXA_EXPORT(BatteryHealthyTable_CellVoltage1), Kind::kMillivolts,
     kTable, kNeverZero},
    {"battery.cell_voltage_2", "Cell 2", kBattery, VEXA_EXPORT(BatteryHealthyTable_CellVoltage2), Kind::kMillivolts,
     kTable, kMayBeZero},
    {"battery.cell_voltage_3", "Cell 3", kBattery, VEXA_EXPORT(BatteryHealthyTable_CellVoltage3), Kind::kMillivolts,
     kTable, kMayBeZero},
    {"battery.cell_voltage_4", "Cell 4", kBattery, VEXA_EXPORT(BatteryHealthyTable_CellVoltage4), Kind::kMillivolts,
     kTable, kMayBeZero},
    {"battery.gauge_chip", "Gauge chip", kBattery, VEXA_EXPORT(BatteryHealthyTable_GaugeIC), Kind::kHex8, kTable,
     kMayBeZero},
    {"battery.safety_status", "Safety status", kBattery, VEXA_EXPORT(BatteryHealthyTable_SafetyStatus), Kind::kHex32,
     Gate::kGauge},
    {"battery.permanent_failure_status", "Permanent failures", kBattery, VEXA_EXPORT(BatteryHealthyTable_PFStatus),
     Kind::kHex32, Gate::kGauge},
    {"battery.error", "Battery error", kBattery, VEXA_EXPORT(BatteryHealthyTable_BatteryError), Kind::kFlag, kTable,
     kMayBeZero},
    {"battery.fully_charged", "Fully charged", kBattery, VEXA_EXPORT(BatteryHealthyTable_FullCharged), Kind::kFlag,
     kTable},

    {"charger.timeout_status", "Charge time-outs", kCharger, VEXA_EXPORT(BatteryHealthyTable_TimeoutStatus),
     Kind::kTimeoutByte, kTable},
    {"power.ac_present", "External power", kCharger, VEXA_EXPORT(BatteryHealthyTable_ACStatus), Kind::kFlag, kTable,
     kSystem},
    {"lid.state", "Lid state", kCharger, VEXA_EXPORT(BatteryHealthyTable_LidStatus), Kind::kHex8, kTable},

    {"battery.manufacture_information", "Manufacture information", kBattery,
     VEXA_EXPORT(BatteryHealthyTable_BatteryInformation), Kind::kByteList, Gate::kTableWaits},
}};

template <typename Member>
constexpr bool Unique(Member member) {
  for (auto row = kTheRows.begin(); row != kTheRows.end(); ++row) {
    if (std::ranges::count(kTheRows, row->*member, member) != 1) return false;
  }
  return true;
}

static_assert(Unique(&Row::key), "a key stands twice");
static_assert(Unique(&Row::export_name), "an export stands twice");
static_assert(kTheRows.back().gate == Gate::kTableWaits, "the call that waits comes last, when presence is known");

}  // namespace

const std::array<Row, kRowCount> kRows = kTheRows;

size_t RowIndex(std::string_view key) {
  const auto row = std::ranges::find(kRows, key, &Row::key);
  assert(row != kRows.end());
  return static_cast<size_t>(row - kRows.begin());
}

std::string_view SectionTitle(Section section) {
  switch (section) {
    case Section::kLibrary: return "Library and driver";
    case Section::kController: return "Embedded controller";
    case Section::kBattery: return "Battery";
    case Section::kCharger: return "Charger, power and lid";
    case Section::kAdapter: return "Power adapter";
    case Section::kPowerDelivery: return "USB Power Delivery";
    case Section::kThermal: return "Fans and temperatures";
    case Section::kSystem: return "System";
    case Section::kWifi: return "Wi-Fi link";
    case Section::kAccessPoints: return "Access points in range";
    case Section::kBluetooth: return "Bluetooth";
    case Section::kUsb: return "USB, disks and HDMI";
    case Section::kMachine: return "Machine";
    case Section::kProcessor: return "Processor, memory and graphics";
    case Section::kStorage: return "Storage";
    case Section::kDisplay: return "Displays";
    case Section::kNetwork: return "Network";
    case Section::kChargeLimit: return "Charge limit";
    case Section::kQuietFan: return "Quiet fan";
    case Section::kApplication: return "Application folder";
  }
  return "";
}

std::optional<std::string_view> UnitOf(Kind kind) {
  switch (kind) {
    case Kind::kPercent:
    case Kind::kStoredPercent: return "%";
    case Kind::kMillivolts: return "mV";
    case Kind::kMilliamps:
    case Kind::kMilliampsRequested: return "mA";
    case Kind::kMilliwatts: return "mW";
    case Kind::kWatts: return "W";
    case Kind::kDeciKelvin: return "0.1 K";
    case Kind::kCelsius: return "°C";
    case Kind::kRpm: return "RPM";
    case Kind::kDbm: return "dBm";
    case Kind::kMegabits: return "Mbit/s";
    case Kind::kMegatransfers: return "MT/s";
    case Kind::kCapacity: return "mAh or 10 mWh";
    default: return std::nullopt;
  }
}

bool IsText(Kind kind) {
  switch (kind) {
    case Kind::kInterfaceVersion:
    case Kind::kDate:
    case Kind::kArchitecture:
    case Kind::kFourCharacters:
    case Kind::kRevision:
    case Kind::kText:
    case Kind::kPath:
    case Kind::kByteList: return true;
    default: return false;
  }
}

bool IsSigned(Kind kind) { return kind == Kind::kMilliamps || kind == Kind::kMilliampsRequested; }

uint32_t LargestAnswer(Kind kind) {
  switch (kind) {
    case Kind::kBit:
    case Kind::kFlag:
    case Kind::kSwitch: return 1;
    case Kind::kPercent: return 100;
    case Kind::kHex8:
    case Kind::kNumber8:
    case Kind::kTableVersion:
    case Kind::kTimeoutByte:
    case Kind::kCelsius: return 0xFF;
    case Kind::kHex16:
    case Kind::kRevision:
    case Kind::kWatts:
    case Kind::kRpm:
    case Kind::kNumber16:
    case Kind::kMillivolts:
    case Kind::kDeciKelvin:
    case Kind::kDate:
    case Kind::kCapacity: return 0xFFFF;
    default: return 0xFFFFFFFF;
  }
}

bool TellsBattery(const Row& row) { return row.key.starts_with("battery."); }

}  // namespace vexahealth
