// Every export that is one exchange or a few behind a version gate, as one table: its gate, its exchanges byte for
// byte, what it makes of the answers, its line, and each exchange failing.
#include "ec/adapter_writes.h"
#include "tests/support/ec_test.h"
#include "vexa/adapter.h"
#include "vexa/battery.h"
#include "vexa/thermal.h"

namespace vexa::test {
namespace {

// The line of the gate: of a refused call, with "Fail." or without; or of every call.
enum class Gate { kFail, kPlain, kAlways };

struct Member {
  std::string name;
  uint32_t (*call)();
  int least_version;
  Strings exchanges;  // behind the version
  uint32_t value;     // on the EC of EcTest
  uint32_t refused;   // below the version, also when that can't be read
  uint32_t on_failure;
  Gate gate;
  std::string log_name = name;
};

Strings Sent(const char* group, const Strings& offsets, const char* tail) {
  Strings exchanges;
  for (const std::string& offset : offsets) exchanges.push_back(std::string("dd ") + group + " " + offset + tail);
  return exchanges;
}
// The offsets in the order in which they are asked for, in hexadecimal.
Strings Battery(const Strings& offsets) { return Sent("01", offsets, " 00 read"); }
Strings Thermal(const Strings& offsets) { return Sent("02", offsets, " 00 read"); }
Strings Adapter(const Strings& offsets) { return Sent("06", offsets, " 00 read"); }

#define CALL(export_name) #export_name, export_name

constexpr uint32_t kNone = kNoAnswer, kNot = kNotAvailable;
using enum Gate;

// clang-format off: one member a row
const Member kBatteryMembers[] = {
    {CALL(BatteryHealthyTable_ManufactureDate), 1, Battery({"55", "54"}), 0xD5D4, kNot, kNone, kFail},
    {CALL(BatteryHealthyTable_SerialNumber), 1, Battery({"29", "28"}), 0xA9A8, 0, kNone, kFail},
    {CALL(BatteryHealthyTable_DesignVoltage), 1, Battery({"2d", "2c"}), 0xADAC, 0, kNone, kFail},
    {CALL(BatteryHealthyTable_CycleCount), 1, Battery({"2f", "2e"}), 0xAFAE, kNot, kNone, kPlain},
    {CALL(BatteryHealthyTable_Rsoc), 1, Battery({"31", "30"}), 0xB1B0, 0, kNone, kPlain},
    {CALL(BatteryHealthyTable_Temperature), 1, Battery({"35", "34"}), 0xB5B4, kNot, kNone, kFail},
    {CALL(BatteryHealthyTable_PackageVoltage), 1, Battery({"37", "36"}), 0xB7B6, kNot, kNone, kFail},
    // Both currents are signed, and nothing else.
    {CALL(BatteryHealthyTable_Current), 1, Battery({"39", "38"}), 0xFFFFB9B8, kNot, kNone, kFail},
    {CALL(BatteryHealthyTable_ChargingCurrent), 1, Battery({"3d", "3c"}), 0xFFFFBDBC, kNot, kNone, kFail},
    {CALL(BatteryHealthyTable_ChargingVoltage), 1, Battery({"3f", "3e"}), 0xBFBE, kNot, kNone, kFail},
    {CALL(BatteryHealthyTable_RemainingCapacity), 1, Battery({"41", "40"}), 0xC1C0, 0, kNone, kPlain},
    {CALL(BatteryHealthyTable_FullChargeCapacity), 1, Battery({"43", "42"}), 0xC3C2, 0, kNone, kFail,
     "BatteryHealthy_FullChargeCapacity"},
    {CALL(BatteryHealthyTable_CellVoltage1), 1, Battery({"49", "48"}), 0xC9C8, 0, kNone, kFail},
    {CALL(BatteryHealthyTable_CellVoltage2), 1, Battery({"4b", "4a"}), 0xCBCA, 0, kNone, kFail},
    {CALL(BatteryHealthyTable_CellVoltage3), 1, Battery({"4d", "4c"}), 0xCDCC, 0, kNone, kFail},
    {CALL(BatteryHealthyTable_CellVoltage4), 1, Battery({"4f", "4e"}), 0xCFCE, 0, kNone, kFail},
    {CALL(BatteryHealthyTable_GaugeIC), 1, Battery({"13"}), 0x93, 0, kNone, kFail},
    {CALL(BatteryHealthyTable_BatteryError), 1, Battery({"01"}), 1, 0, 0, kFail},
    {CALL(BatteryHealthyTable_FullCharged), 1, Battery({"01"}), 0, 0, 0, kFail},
    {CALL(BatteryHealthyTable_TimeoutStatus), 1, Battery({"03"}), 0x83, 0, 0, kFail},
    {CALL(BatteryHealthyTable_ACStatus), 1, Battery({"00"}), 0, 0, 0, kFail},
    {CALL(BatteryHealthyTable_LidStatus), 1, {"dd 03 01 00 read"}, 0x81, 0, kNone, kPlain},
};

const Member kThermalMembers[] = {
    {CALL(HealthyTable_FanCounts), 1, Thermal({"30"}), 0xB0, kNone, kNone, kFail},
    {CALL(HealthyTable_GetFanTestMode), 1, Thermal({"31"}), 0xB1, kNone, kNone, kFail},
    {"FanIndex0", [] { return HealthyTable_SetFanIndex(0); }, 1, {"dd 82 32 00"}, 1, 0, 0, kFail,
     "HealthyTable_SetFanIndex"},
    {"FanIndex4", [] { return HealthyTable_SetFanIndex(4); }, 1, {"dd 82 32 04"}, 1, 0, 0, kFail,
     "HealthyTable_SetFanIndex"},
    {"FanDuty", [] { return HealthyTable_SetFanPwmDuty(0xFE); }, 1, {"dd 82 35 fe"}, 1, 0, 0, kFail,
     "HealthyTable_SetFanPwmDuty"},
    {CALL(HealthyTable_FanRPM), 1, Thermal({"34", "33"}), 0xB4B3, kNot, kNone, kFail},
    {CALL(HealthyTable_Read_Cpu_Temperature), 1, Thermal({"00"}), 0x80, kNone, kNone, kPlain},
    {CALL(Quillo_Read_Cpu_Temperature), 1, Thermal({"00"}), 0x80, kNone, kNone, kPlain},
    {CALL(HealthyTable_Read_BoardTS0L_Temperature), 1, {"dd 02 10 00 read", "dd 82 11 00", "dd 02 12 00 read"}, 0x92,
     kNone, kNone, kPlain},
};

const Member kAdapterMembers[] = {
    {CALL(Adapter_Read_Power_Big_Data_Config), 14, Adapter({"00"}), 0x80, 0, 0, kAlways},
    {CALL(Adapter_Read_PDO1), 14, Adapter({"05", "04", "03", "02"}), 0x85848382, kNot, kNone, kAlways,
     "Adapter_Read_PDO"},
    {CALL(Adapter_Read_PDO2), 14, Adapter({"09", "08", "07", "06"}), 0x89888786, kNot, kNone, kAlways,
     "Adapter_Read_PDO"},
    {CALL(Adapter_Read_PDO3), 14, Adapter({"0d", "0c", "0b", "0a"}), 0x8D8C8B8A, kNot, kNone, kAlways,
     "Adapter_Read_PDO"},
    {CALL(Adapter_Read_PDO4), 14, Adapter({"11", "10", "0f", "0e"}), 0x91908F8E, kNot, kNone, kAlways,
     "Adapter_Read_PDO"},
    {CALL(Adapter_Read_PDO5), 14, Adapter({"15", "14", "13", "12"}), 0x95949392, kNot, kNone, kAlways,
     "Adapter_Read_PDO"},
    {CALL(Adapter_Read_PDO6), 14, Adapter({"19", "18", "17", "16"}), 0x99989796, kNot, kNone, kAlways,
     "Adapter_Read_PDO"},
    {CALL(Adapter_Read_PDO7), 14, Adapter({"1d", "1c", "1b", "1a"}), 0x9D9C9B9A, kNot, kNone, kAlways,
     "Adapter_Read_PDO"},
    {CALL(Adapter_Read_Contract_PDO), 14, Adapter({"21", "20", "1f", "1e"}), 0xA1A09F9E, kNot, kNone, kAlways},
    {CALL(Adapter_Read_PDO_Watt), 14, Adapter({"25", "24", "23", "22"}), 0xA5A4A3A2, kNot, kNone, kAlways},
    {CALL(Adapter_Read_PD_ADO), 14, Adapter({"26"}), 0xA6, 0, 0, kAlways},
    {CALL(Adapter_Read_Charger_Interrupt), 14, Adapter({"27"}), 0xA7, 0, 0, kAlways},
    {CALL(Adapter_Read_Charger_Information), 14, Adapter({"28"}), 0xA8, 0, 0, kAlways},
    {CALL(Adapter_Read_PD_Get_Source_Cap_Extend_VID), 14, Adapter({"2a", "29"}), 0xAAA9, kNot, kNone, kAlways},
    {CALL(Adapter_Read_PD_Get_Source_Cap_Extend_PID), 14, Adapter({"2c", "2b"}), 0xACAB, kNot, kNone, kAlways},
    {CALL(Adapter_Read_PD_Get_Source_Cap_Extend_XID), 14, Adapter({"30", "2f", "2e", "2d"}), 0xB0AFAEAD, kNot, kNone,
     kAlways},
    {CALL(Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion), 14, Adapter({"31"}), 0xB1, 0, 0, kAlways},
    {CALL(Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion), 14, Adapter({"32"}), 0xB2, 0, 0, kAlways},
    {CALL(Adapter_Read_PD_Get_Status_Temperature), 14, Adapter({"33"}), 0xB3, 0, 0, kAlways},
    {CALL(Adapter_Read_PD_Get_Status_EventFlag), 14, Adapter({"34"}), 0xB4, 0, 0, kAlways},
    {CALL(Adapter_Read_PD_Get_Emark_VID), 23, Adapter({"3a", "39", "38", "37"}), 0xBAB9B8B7, 0, 0, kAlways},
    {CALL(Adapter_Read_PD_Get_Emark_PID), 23, Adapter({"42", "41"}), 0xC2C1, 0, 0, kAlways},
    {CALL(Adapter_Read_PD_Get_Emark_XID), 23, Adapter({"3e", "3d", "3c", "3b"}), 0xBEBDBCBB, 0, 0, kAlways},
    {CALL(Adapter_Read_PD_Get_Emark_Other), 23, Adapter({"4a", "49", "48", "47"}), 0xCAC9C8C7, 0, 0, kAlways},
    // Those that write.
    {CALL(Adapter_Clear_Power_Data_Flag), 14, {"dd 86 01 00"}, 1, 0, 0, kAlways},
    {"ClearFlagsBitwise", [] { return Adapter_Clear_Power_Data_Flag_Bitwise(0xA4); }, 23, {"dd 86 35 a4"}, 1, 0, 0,
     kAlways, "Adapter_Clear_Power_Data_Flag_Bitwise"},
    {"NotifyControl", [] { return Adapter_Set_Notify_Control(0xC3); }, 23, {"dd 86 36 c3"}, 1, 0, 0, kAlways,
     "Adapter_Set_Notify_Control"},
    {CALL(Adapter_Clear_Charger_Data), 14, {"dd 86 27 00", "dd 86 28 00"}, 1, kNot, 0, kAlways},
    {"MonitorOn", [] { return Power_Set_Monitor_PowerDropped(1); }, 19, {"dd 87 09 85"}, 1, 0, 0, kAlways,
     "Power_Dropped"},
    {"MonitorOff", [] { return Power_Set_Monitor_PowerDropped(0); }, 19, {"dd 87 09 05"}, 1, 0, 0, kAlways,
     "Power_Dropped"},
    {"MonitorTwo", [] { return Power_Set_Monitor_PowerDropped(2); }, 19, {"dd 87 09 05"}, 1, 0, 0, kAlways,
     "Power_Dropped"},
};
// clang-format on

class EcMember : public PerRow<EcTest, Member> {
 protected:
  void ExpectLine(const std::string& version, bool refused) {
    const std::string head = "5 [EC_BH][" + row_.log_name + (row_.gate == kFail ? "] Fail. " : "] ");
    EXPECT_EQ(TakeLines(),
              refused || row_.gate == kAlways ? Strings{head + "BatteryHealthyTable version: " + version} : Strings{});
  }

  const Strings all_ = BehindVersion(row_.exchanges);
};

TEST_P(EcMember, Gate) {
  for (const int version : {0, 1, 13, row_.least_version - 1, row_.least_version, 22, 23, 24, 28, 255}) {
    SCOPED_TRACE(version);
    UseVersion(version);
    const bool passes = version >= row_.least_version;
    EXPECT_EQ(row_.call(), passes ? row_.value : row_.refused);
    EXPECT_EQ(ec_.TakeExchanges(), passes ? all_ : Strings{kReadVersion});
    ExpectLine(std::to_string(version), !passes);
  }
}

TEST_P(EcMember, EachExchangeFailingInTurn) {
  FailEachExchange(
      all_.size(), [&] { UseVersion(28); },
      [&](size_t i, ScriptedEc::Failure) {
        EXPECT_EQ(row_.call(), i == 0 ? row_.refused : row_.on_failure);
        EXPECT_EQ(ec_.TakeExchanges(), FirstOf(all_, i + 1));
        ExpectLine(i == 0 ? "2147483647" : "28", i == 0);
      });
}

// The other families have calls of the firmware, which their own tests tell of.
TEST_P(EcMember, OfTheAdapterTheFirmwareHasNone) {
  if (row_.gate != kAlways) return;
  ArchValue::Set(L"ARM64");
  UseVersion(28);
  EXPECT_EQ(row_.call(), row_.refused);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
  EXPECT_THAT(TakeLines(), ElementsAre("5 [BatteryHealthyTable_ReadVersion] ARM64: using WMImethods.",
                                       VersionLine(row_.log_name, "2147483647")));
}

INSTANTIATE_TEST_SUITE_P(Battery, EcMember, testing::ValuesIn(kBatteryMembers), NameOfRow());
INSTANTIATE_TEST_SUITE_P(Thermal, EcMember, testing::ValuesIn(kThermalMembers), NameOfRow());
INSTANTIATE_TEST_SUITE_P(Adapter, EcMember, testing::ValuesIn(kAdapterMembers), NameOfRow());

using EcMembers = EcTest;

TEST_F(EcMembers, SignsAndFlagsAtTheirEdges) {
  const struct {
    uint32_t (*call)();
    uint16_t word;
    uint32_t value;
  } words[] = {{BatteryHealthyTable_Current, 0x8000, 0xFFFF8000},
               {BatteryHealthyTable_Current, 0x7FFF, 0x7FFF},
               {BatteryHealthyTable_ChargingCurrent, 0xFFFF, 0xFFFFFFFF},
               {BatteryHealthyTable_BatteryError, 0x8000, 1},
               {BatteryHealthyTable_BatteryError, 0x7F00, 0},
               {BatteryHealthyTable_FullCharged, 0x1000, 1},
               {BatteryHealthyTable_FullCharged, 0xEF00, 0},
               {BatteryHealthyTable_ACStatus, 0x0001, 1},
               {BatteryHealthyTable_ACStatus, 0x00FE, 0}};
  for (const auto& one : words) {
    UseEc(28, [&](const EcCommandRecord& record) { return record.data[1] % 2 == 1 ? one.word >> 8 : one.word; });
    EXPECT_EQ(one.call(), one.value) << one.word;
  }
}

TEST_F(EcMembers, ArgumentsBeyondTheirRangeSendNothing) {
  UseVersion(28);
  for (const uint32_t index : {5u, 255u, 256u, 0xFFFFFFFFu}) EXPECT_EQ(HealthyTable_SetFanIndex(index), 0u);
  for (const uint32_t index : {7u, 8u, 255u, 256u, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(Adapter_Read_PDO(index), kNotAvailable) << index;
  }
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
  EXPECT_EQ(Adapter_Read_PDO(6), 0x9D9C9B9Au);
}

TEST_F(EcMembers, WithoutBoardSensorsNoneIsSelected) {
  UseEc(28, [](const EcCommandRecord&) { return 0; });
  EXPECT_EQ(HealthyTable_Read_BoardTS0L_Temperature(), 0u);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion, "dd 02 10 00 read"));
}

}  // namespace
}  // namespace vexa::test
