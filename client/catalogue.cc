#include "client/catalogue.h"

#include <algorithm>
#include <cassert>

namespace vexahealth {
namespace {

// Name and signature of an export, both from its declaration.
#define VEXA_EXPORT(name) #name, SignatureOf<decltype(&name)>()

constexpr Section kLibrary = Section::kLibrary;
constexpr Section kController = Section::kController;
constexpr Section kBattery = Section::kBattery;
constexpr Section kCharger = Section::kCharger;
constexpr Gate kTable = Gate::kTable;
constexpr OnFirmware kSame = OnFirmware::kSame;
constexpr OnFirmware kNothing = OnFirmware::kNothing;
constexpr OnFirmware kNeverZero = OnFirmware::kNeverZero;
constexpr OnFirmware kMayBeZero = OnFirmware::kMayBeZero;
constexpr OnFirmware kSystem = OnFirmware::kSystem;
constexpr Reserved kZero = Reserved::kZero;
constexpr Reserved kAllOnes = Reserved::kAllOnes;

constexpr std::array<Row, kRowCount> kTheRows = {{
    {"library.dll_version", "Library interface", kLibrary, VEXA_EXPORT(GetIoDllVersion), Kind::kInterfaceVersion,
     Gate::kLibrary, kSame},
    {"driver.version", "Driver version", kLibrary, VEXA_EXPORT(GetDriverVersion), Kind::kHex32, Gate::kDriver, kNothing,
     Reserved::kZeroIsFault},
    {"driver.reference_count", "Driver users", kLibrary, VEXA_EXPORT(GetRefCount), Kind::kNumber32, Gate::kDriver,
     kNothing, Reserved::kZeroIsFault},

    {"ec.table_version", "Healthy-table version", kController, VEXA_EXPORT(BatteryHealthyTable_ReadVersion),
     Kind::kTableVersion, Gate::kController, kNothing},
    {"ec.vendor_type", "Vendor type", kController, VEXA_EXPORT(BatteryHealthyTable_ReadVendorType), Kind::kBit,
     Gate::kController, kNothing},
    {"ec.chip_id", "Chip id", kController, VEXA_EXPORT(BatteryHealthyTable_ECChipID), Kind::kHex8, Gate::kController,
     kNothing},
    {"ec.chip_name", "Chip name", kController, VEXA_EXPORT(BatteryHealthyTable_ECChipName), Kind::kText,
     Gate::kController, kNothing, Reserved::kNone, VEXA_EC_CHIP_NAME_CAPACITY},

    {"battery.manufacturer", "Manufacturer", kBattery, VEXA_EXPORT(BatteryHealthyTable_ManufactureName), Kind::kText,
     kTable, kNeverZero, Reserved::kNone, VEXA_MANUFACTURE_NAME_CAPACITY},
    {"battery.manufacturer_smbus", "Manufacturer (gauge)", kBattery,
     VEXA_EXPORT(BatteryHealthyTable_ManufactureNameBySMBus), Kind::kText, Gate::kGauge, kNeverZero, Reserved::kNone,
     VEXA_MANUFACTURE_NAME_CAPACITY},
    {"battery.device_name", "Device name", kBattery, VEXA_EXPORT(BatteryHealthyTable_DeviceName), Kind::kText,
     Gate::kGauge, kNeverZero, Reserved::kNone, VEXA_DEVICE_NAME_CAPACITY},
    {"battery.manufacture_date", "Manufacture date", kBattery, VEXA_EXPORT(BatteryHealthyTable_ManufactureDate),
     Kind::kDate, kTable, kNeverZero, kAllOnes},
    {"battery.serial_number", "Serial number", kBattery, VEXA_EXPORT(BatteryHealthyTable_SerialNumber), Kind::kNumber16,
     kTable, kMayBeZero, kZero},
    {"battery.design_voltage", "Design voltage", kBattery, VEXA_EXPORT(BatteryHealthyTable_DesignVoltage),
     Kind::kMillivolts, kTable, kNeverZero, kZero},
    {"battery.cycle_count", "Charge cycles", kBattery, VEXA_EXPORT(BatteryHealthyTable_CycleCount), Kind::kNumber16,
     kTable, kMayBeZero, kAllOnes},
    {"battery.rsoc", "State of charge", kBattery, VEXA_EXPORT(BatteryHealthyTable_Rsoc), Kind::kPercent, kTable,
     kMayBeZero, kZero},
    {"battery.temperature", "Temperature", kBattery, VEXA_EXPORT(BatteryHealthyTable_Temperature), Kind::kDeciKelvin,
     kTable, kNeverZero, kAllOnes},
    {"battery.voltage", "Pack voltage", kBattery, VEXA_EXPORT(BatteryHealthyTable_PackageVoltage), Kind::kMillivolts,
     kTable, kNeverZero, kAllOnes},
    {"battery.current", "Current", kBattery, VEXA_EXPORT(BatteryHealthyTable_Current), Kind::kMilliamps, kTable,
     kMayBeZero, kAllOnes},
    {"battery.charging_current", "Requested charge current", kBattery, VEXA_EXPORT(BatteryHealthyTable_ChargingCurrent),
     Kind::kMilliampsRequested, kTable, kNothing, kAllOnes},
    {"battery.charging_voltage", "Requested charge voltage", kBattery, VEXA_EXPORT(BatteryHealthyTable_ChargingVoltage),
     Kind::kMillivolts, kTable, kMayBeZero, kAllOnes},
    {"battery.remaining_capacity", "Remaining capacity", kBattery, VEXA_EXPORT(BatteryHealthyTable_RemainingCapacity),
     Kind::kCapacity, kTable, kMayBeZero, kZero},
    {"battery.full_charge_capacity", "Full-charge capacity", kBattery,
     VEXA_EXPORT(BatteryHealthyTable_FullChargeCapacity), Kind::kCapacity, kTable, kNeverZero, kZero},
    {"battery.cell_voltage_1", "Cell 1", kBattery, VEXA_EXPORT(BatteryHealthyTable_CellVoltage1), Kind::kMillivolts,
     kTable, kNeverZero, kZero},
    {"battery.cell_voltage_2", "Cell 2", kBattery, VEXA_EXPORT(BatteryHealthyTable_CellVoltage2), Kind::kMillivolts,
     kTable, kMayBeZero, kZero},
    {"battery.cell_voltage_3", "Cell 3", kBattery, VEXA_EXPORT(BatteryHealthyTable_CellVoltage3), Kind::kMillivolts,
     kTable, kMayBeZero, kZero},
    {"battery.cell_voltage_4", "Cell 4", kBattery, VEXA_EXPORT(BatteryHealthyTable_CellVoltage4), Kind::kMillivolts,
     kTable, kMayBeZero, kZero},
    {"battery.gauge_chip", "Gauge chip", kBattery, VEXA_EXPORT(BatteryHealthyTable_GaugeIC), Kind::kHex8, kTable,
     kMayBeZero, kZero},
    {"battery.safety_status", "Safety status", kBattery, VEXA_EXPORT(BatteryHealthyTable_SafetyStatus), Kind::kHex32,
     Gate::kGauge, kNothing},
    {"battery.permanent_failure_status", "Permanent failures", kBattery, VEXA_EXPORT(BatteryHealthyTable_PFStatus),
     Kind::kHex32, Gate::kGauge, kNothing},
    {"battery.error", "Battery error", kBattery, VEXA_EXPORT(BatteryHealthyTable_BatteryError), Kind::kFlag, kTable,
     kMayBeZero, kZero},
    {"battery.fully_charged", "Fully charged", kBattery, VEXA_EXPORT(BatteryHealthyTable_FullCharged), Kind::kFlag,
     kTable, kNothing, kZero},

    {"charger.timeout_status", "Charge time-outs", kCharger, VEXA_EXPORT(BatteryHealthyTable_TimeoutStatus),
     Kind::kTimeoutByte, kTable, kNothing, kZero},
    {"power.ac_present", "External power", kCharger, VEXA_EXPORT(BatteryHealthyTable_ACStatus), Kind::kFlag, kTable,
     kSystem, kZero},
    {"lid.state", "Lid state", kCharger, VEXA_EXPORT(BatteryHealthyTable_LidStatus), Kind::kHex8, kTable, kNothing,
     kZero},

    {"battery.manufacture_information", "Manufacture information", kBattery,
     VEXA_EXPORT(BatteryHealthyTable_BatteryInformation), Kind::kByteList, Gate::kTableWaits, kNothing, Reserved::kNone,
     0, 10},
}};

#undef VEXA_EXPORT

constexpr size_t UniqueKeys() {
  size_t unique = 0;
  for (size_t i = 0; i < kRowCount; ++i) {
    bool seen = kTheRows[i].key.empty();
    for (size_t j = 0; j < i; ++j) seen = seen || kTheRows[j].key == kTheRows[i].key;
    unique += seen ? 0 : 1;
  }
  return unique;
}

constexpr size_t UniqueExports() {
  size_t unique = 0;
  for (size_t i = 0; i < kRowCount; ++i) {
    bool seen = kTheRows[i].export_name == nullptr;
    for (size_t j = 0; j < i; ++j) {
      seen = seen || std::string_view(kTheRows[j].export_name) == std::string_view(kTheRows[i].export_name);
    }
    unique += seen ? 0 : 1;
  }
  return unique;
}

static_assert(UniqueKeys() == kRowCount, "a key is missing or stands twice");
static_assert(UniqueExports() == kRowCount, "an export is missing or stands twice");
static_assert(std::ranges::all_of(kTheRows,
                                  [](const Row& row) {
                                    return (row.signature == Signature::kTextBuffer) == (row.text_capacity != 0);
                                  }),
              "exactly the exports that fill a buffer have a capacity");
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
