#include "ec/catalogue.h"

#include <algorithm>
#include <iterator>

namespace vexa {
namespace {

// clang-format off: one row a line
constexpr EcCommandEntry kEcInfoRows[] = {
    {"EC_Info_CMD", 9, 0},
    {"HealthyTableVersion", 0x015050BB, 1},
    {"ChipID", 0x011010BB, 1},
    {"LengthOfChipName", 0x011111BB, 1},
    {"ProjectInformation", 0x015151BB, 1},
    {"PlatformInformation", 0x015252BB, 15},
    {"RawDataVersion", 0x015353BB, 17},
    {"ChipName", 0x001200FF, 1},
    {"ProjectFWRevision", 0x002001FF, 1},
};

constexpr EcCommandEntry kBatteryPowerRows[] = {
    {"Bat_Power_CMD", 24, 0},
    {"PowerSource", 0x010001DD, 1},
    {"ECBatteryStatus", 0x010101DD, 1},
    {"ChargerStatus", 0x010201DD, 1},
    {"BatteryChargeErrorStatus", 0x010301DD, 1},
    {"RSOC", 0x023001DD, 1},
    {"BatteryTemperature", 0x023401DD, 1},
    {"Voltage", 0x023601DD, 1},
    {"Current", 0x023801DD, 1},
    {"AverageCurrent", 0x023A01DD, 1},
    {"ChargeCurrent", 0x023C01DD, 1},
    {"ChargeVoltage", 0x023E01DD, 1},
    {"RemainingCapacity", 0x024001DD, 1},
    {"FullChargeCapacity", 0x024201DD, 1},
    {"CellVoltage1", 0x024801DD, 1},
    {"CellVoltage2", 0x024A01DD, 1},
    {"CellVoltage3", 0x024C01DD, 1},
    {"CellVoltage4", 0x024E01DD, 1},
    {"BatteryStatus", 0x025001DD, 1},
    {"BatteryMode", 0x025201DD, 1},
    {"ManufactureDate", 0x025401DD, 1},
    {"RSOCofHealthCharge", 0x025601DD, 8},
    {"VEXABatteryStatus", 0x025801DD, 22},
    {"Manuf_name", 0x001002FF, 1},
};

constexpr EcCommandEntry kThermalRows[] = {
    {"Thermal_CMD", 14, 0},
    {"CPUTemperature1", 0x010002DD, 1},
    {"CPUTemperature2", 0x010102DD, 1},
    {"PCHTemperature", 0x010202DD, 1},
    {"GPUTemperature1", 0x010302DD, 1},
    {"GPUTemperature2", 0x010402DD, 1},
    {"STTTemperature", 0x010502DD, 1},
    {"ThermalSensorSupportedStatus", 0x010602DD, 22},
    {"ThermalSensorDisableStatus", 0x010702DD, 22},
    {"CPUTDP", 0x013802DD, 10},
    {"ThermalSensorFailStatus", 0x013902DD, 10},
    {"BoardSensorInfo", 0x001003FF, 1},
    {"VRSensorInfo", 0x001304FF, 1},
    {"FanInfo", 0x003005FF, 1},
};

constexpr EcCommandEntry kGpioRows[] = {
    {"GPIO_CMD", 3, 0},
    {"THRO_CPU_L", 0x010003DD, 19},
    {"DGPU_LIMIT", 0x010103DD, 19},
};

constexpr EcCommandEntry kOtherRows[] = {
    {"Other_CMD", 8, 0},
    {"RawDataFunctionStatus", 0x010604DD, 7},
    {"MBDesignPower", 0x010704DD, 8},
    {"SupportAdapterType", 0x010804DD, 8},
    {"PDNotEnoughWattStatus", 0x010B04DD, 11},
    {"DCJackAdpaterIn", 0x010C04DD, 12},
    {"BatteryHealthState", 0x010F04DD, 15},
    {"HWProtectionPinSupported", 0x011304DD, 19},
};

constexpr EcCommandEntry kConsumerRows[] = {
    {"Consumer_CMD", 17, 0},
    {"MSFTHotBagStatus", 0x011208DD, 20},
    {"MSFTHotBagTriggerTemperature", 0x011308DD, 20},
    {"MSFTHotBagSourceTemperature", 0x011408DD, 20},
    {"OffsetofMSFTHotBagSourceTemperature", 0x011508DD, 20},
    {"MSFT Hot Bag Source Information", 0x011808DD, 21},
    {"Consumer_VRSensorInfo", 0x000006FF, 19},
    {"Last CPU Throttle Status Code", 0x012008DD, 24},
    {"Current CPU Throttle Status Code", 0x012108DD, 24},
    {"CPU Throttle Count", 0x012208DD, 24},
    {"Last GPU Limit Status Code", 0x012308DD, 24},
    {"Current GPU Limit Status Code", 0x012408DD, 24},
    {"GPU Limit Count", 0x012508DD, 24},
    {"Power Limit Information Status", 0x012608DD, 24},
    {"Power Limit Value", 0x002807FF, 19},
    {"Project Year", 0x012C08DD, 28},
    {"Refresh Model Year", 0x012D08DD, 28},
};

constexpr EcCommandEntry kBoardSensorRows[] = {
    {"BoardSensorInfo_Items", 0x00100005, 0},
    {"Count", 0x011002DD, 1},
    {"Index", 0x011182DD, 1},
    {"Status", 0x010802DD, 23},
    {"Temperature", 0x011202DD, 1},
};

constexpr EcCommandEntry kVrSensorRows[] = {
    {"VRSensorInfo_Items", 0x00130005, 0},
    {"Count", 0x011302DD, 1},
    {"Index", 0x011482DD, 1},
    {"Status", 0x010902DD, 23},
    {"Temperature", 0x011502DD, 1},
};

constexpr EcCommandEntry kFanRows[] = {
    {"FanInfo_Items", 0x00300005, 0},
    {"Count", 0x013002DD, 1},
    {"Index", 0x013282DD, 1},
    {"FanRpm", 0x023302DD, 1},
    {"FanPwmDuty", 0x013502DD, 1},
};

constexpr EcCommandEntry kConsumerVrSensorRows[] = {
    {"VRSensorInfo_Items", 0x0000000C, 0},
    {"Count", 0x010008DD, 19},
    {"Index", 0x010188DD, 19},
    {"Temperature", 0x010208DD, 19},
    {"ThresholdON", 0x010308DD, 19},
    {"ThresholdOFF", 0x010408DD, 19},
    {"AlertON", 0x010508DD, 19},
    {"AlertOFF", 0x010608DD, 19},
    {"OSShutdown", 0x010708DD, 19},
    {"ECForceShutdown", 0x010808DD, 19},
    {"GPUD2Point", 0x010908DD, 19},
    {"GPUD2ReleasePoint", 0x010A08DD, 19},
};

// clang-format on

constexpr uint8_t kWholeTable = 0;  // for rows of several groups

// What a slip of the pen in a row would break.
constexpr bool IsWellFormed(std::span<const EcCommandEntry> rows, uint8_t group) {
  const EcCommandEntry& header = rows.front();
  if ((header.word & 0xFFFF) != rows.size() || header.length() != 0 || header.min_version != 0) return false;
  return std::ranges::all_of(rows.subspan(1), [group](const EcCommandEntry& row) {
    if (row.min_version < 1 || row.min_version > 28) return false;
    if (row.is_sub_table()) return row.length() == 0 && row.sub_table() <= 7;
    if (row.length() != 1 && row.length() != 2) return false;
    if (row.command() == kEcInfoRead) return row.group() == row.offset();
    return row.command() == kEcTableAccess && (row.group() & ~kGroupWrite) == group;
  });
}

static_assert(IsWellFormed(kEcInfoRows, kWholeTable));
static_assert(IsWellFormed(kBatteryPowerRows, kBatteryGroup));
static_assert(IsWellFormed(kThermalRows, kThermalGroup));
static_assert(IsWellFormed(kGpioRows, kGpioGroup));
static_assert(IsWellFormed(kOtherRows, kOtherGroup));
static_assert(IsWellFormed(kConsumerRows, kConsumerGroup));
static_assert(IsWellFormed(kBoardSensorRows, kThermalGroup));
static_assert(IsWellFormed(kVrSensorRows, kThermalGroup));
static_assert(IsWellFormed(kFanRows, kThermalGroup));
static_assert(IsWellFormed(kConsumerVrSensorRows, kConsumerGroup));

}  // namespace

constinit const EcCommandTable kEcInfoCommands{kEcInfoRows};
constinit const EcCommandTable kBatteryPowerCommands{kBatteryPowerRows};
constinit const EcCommandTable kThermalCommands{kThermalRows};
constinit const EcCommandTable kGpioCommands{kGpioRows};
constinit const EcCommandTable kOtherCommands{kOtherRows};
constinit const EcCommandTable kConsumerCommands{kConsumerRows};

EcCommandTable ItemSubTable(uint8_t number) {
  switch (number) {
    case 3: return kBoardSensorRows;
    case 4: return kVrSensorRows;
    case 5: return kFanRows;
    case 6: return kConsumerVrSensorRows;
    default: return {};
  }
}

}  // namespace vexa
