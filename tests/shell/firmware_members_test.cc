// The battery and thermal families on the firmware route: which register each export asks for, and what it makes of the
// answer. The driver is not to be asked.
#include <functional>
#include <map>

#include "frame/handles.h"
#include "tests/support/arch_value.h"
#include "tests/support/scripted_ec.h"
#include "tests/support/wmi_test.h"
#include "vexa/battery.h"
#include "vexa/thermal.h"

namespace vexa::test {
namespace {

constexpr uint32_t kNoAnswer = 0x7FFFFFFF;

class FirmwareMembers : public WmiTest {
 protected:
  ~FirmwareMembers() override { EXPECT_THAT(ec_.TakeExchanges(), IsEmpty()); }

  ArchValue arch_{L"ARM64"};
  ScriptedEc ec_;
};

// ---- Battery ----

class BatteryFirmware : public FirmwareMembers {
 protected:
  void AnswerAll(uint32_t value) {
    AnswerRequests([value](const std::string&) { return WmiProperties{{L"value", Number(VT_UI4, value)}}; });
  }
  // The lines of the family, without the invoker's.
  static Strings BatteryLines() { return LinesWithout({"[wmiMethod"}); }
};

struct Member {
  const char* name;
  uint32_t (*call)();
  const char* request;  // "": none
  uint32_t value;       // of the answer 0x15E80, or without a request
  const char* text;     // of the value, in the line
};

constexpr char kPlain[] = "89728";  // 0x15E80

// clang-format off: one member a row
#define CALL(export_name) #export_name, export_name
const Member kMembers[] = {
    {CALL(BatteryHealthyTable_ManufactureDate), "battery_read_command_byte 27 2", 0x15E80, kPlain},
    {CALL(BatteryHealthyTable_SerialNumber), "battery_read_command_byte 28 2", 0x15E80, kPlain},
    {CALL(BatteryHealthyTable_DesignVoltage), "battery_read_command_byte 25 2", 0x15E80, kPlain},
    {CALL(BatteryHealthyTable_CycleCount), "battery_read_command_byte 23 2", 0x15E80, kPlain},
    {CALL(BatteryHealthyTable_Rsoc), "battery_read_command_byte 13 1", 0x15E80, kPlain},
    {CALL(BatteryHealthyTable_Temperature), "battery_read_command_byte 8 2", 0x15E80, kPlain},
    {CALL(BatteryHealthyTable_PackageVoltage), "battery_read_command_byte 9 2", 0x15E80, kPlain},
    {CALL(BatteryHealthyTable_Current), "battery_read_command_byte 10 2", 0x5E80, "24192"},
    {CALL(BatteryHealthyTable_ChargingCurrent), "", 0, ""},
    {CALL(BatteryHealthyTable_ChargingVoltage), "battery_read_command_byte 21 2", 0x15E80, kPlain},
    {CALL(BatteryHealthyTable_RemainingCapacity), "battery_read_command_byte 15 2", 0x15E80, kPlain},
    {CALL(BatteryHealthyTable_FullChargeCapacity), "battery_read_command_byte 16 2", 0x15E80, kPlain},
    {CALL(BatteryHealthyTable_CellVoltage1), "battery_read_command_byte 63 2", 0x15E80, kPlain},
    {CALL(BatteryHealthyTable_CellVoltage2), "battery_read_command_byte 62 2", 0x15E80, kPlain},
    {CALL(BatteryHealthyTable_CellVoltage3), "battery_read_command_byte 61 2", 0x15E80, kPlain},
    {CALL(BatteryHealthyTable_CellVoltage4), "battery_read_command_byte 60 2", 0x15E80, kPlain},
    {CALL(BatteryHealthyTable_GaugeIC), "battery_read_command_by_index 32 4", 0x15E80, kPlain},
    {CALL(BatteryHealthyTable_BatteryError), "battery_read_command_byte 153 2", 1, "1"},
    {CALL(BatteryHealthyTable_FullCharged), "", 0x7FFFFFFF, ""},
    {CALL(BatteryHealthyTable_TimeoutStatus), "", 0, ""},
    {CALL(BatteryHealthyTable_LidStatus), "", 0, ""},
};
// clang-format on

TEST_F(BatteryFirmware, EachMemberAsksForItsOwnRegister) {
  const std::vector<WmiProperties> instance = wmi.rows[L"Select * from ATD_STS"];
  for (const Member& member : kMembers) {
    SCOPED_TRACE(member.name);
    const std::string name = member.name, request = member.request;
    Strings lines = {"5 [" + name + "] ARM64: using WMImethods."};
    if (!request.empty()) lines.push_back("5 [EC_BH][" + name + "] ATD_STS_battery_read_byte: " + member.text);
    AnswerAll(0x15E80);
    EXPECT_EQ(member.call(), member.value);
    EXPECT_EQ(BatteryLines(), lines);
    EXPECT_EQ(Requests(), request.empty() ? Strings{} : Strings{request});
    // Without an answer the value is 0.
    wmi.rows.clear();
    EXPECT_EQ(member.call(), request.empty() ? member.value : 0u);
    if (!request.empty()) EXPECT_THAT(BatteryLines().back(), EndsWith("] ATD_STS_battery_read_byte: 0"));
    Lines();
    wmi.rows[L"Select * from ATD_STS"] = instance;
  }
}

TEST_F(BatteryFirmware, OnlyTheCurrentIsSignedAndOnlyTheErrorIsABit) {
  const struct {
    uint32_t (*call)();
    uint32_t answer, value;
    const char* text;
  } values[] = {
      {BatteryHealthyTable_Current, 0xFF38, 0xFFFFFF38, "-200"},
      {BatteryHealthyTable_Current, 0x8000, 0xFFFF8000, "-32768"},
      {BatteryHealthyTable_Current, 0x7FFF, 0x7FFF, "32767"},
      {BatteryHealthyTable_Current, 0xFFFFFF38, 0xFFFFFF38, "-200"},
      {BatteryHealthyTable_Temperature, 0xFFFFFF38, 0xFFFFFF38, "4294967096"},
      {BatteryHealthyTable_BatteryError, 0x0080, 1, "1"},
      {BatteryHealthyTable_BatteryError, 0xFF7F, 0, "0"},
      {BatteryHealthyTable_BatteryError, 0xFFFF, 1, "1"},
  };
  for (const auto& one : values) {
    AnswerAll(one.answer);
    EXPECT_EQ(one.call(), one.value) << one.answer;
    EXPECT_THAT(BatteryLines().back(), EndsWith(std::string("] ATD_STS_battery_read_byte: ") + one.text));
  }
}

struct PowerStatus {
  BYTE line;
  BOOL succeeds;
  int calls;
} g_power;

BOOL WINAPI AnswerPowerStatus(LPSYSTEM_POWER_STATUS status) {
  ++g_power.calls;
  status->ACLineStatus = g_power.line;
  return g_power.succeeds;
}

TEST_F(BatteryFirmware, AcLineComesFromTheSystem) {
  const ImportPatch patch("GetSystemPowerStatus", AnswerPowerStatus);
  for (const auto& [line, succeeds, value] :
       {std::tuple{1, TRUE, 1u}, {0, TRUE, 0u}, {255, TRUE, 0u}, {2, TRUE, 0u}, {1, FALSE, 0u}}) {
    g_power = {.line = static_cast<BYTE>(line), .succeeds = succeeds, .calls = 0};
    EXPECT_EQ(BatteryHealthyTable_ACStatus(), value) << line << " " << succeeds;
    EXPECT_EQ(g_power.calls, 1);
    EXPECT_EQ(BatteryLines().front(), "5 [BatteryHealthyTable_ACStatus] ARM64: using WMImethods.");
  }
  EXPECT_THAT(wmi.TakeCalls(), IsEmpty());
}

struct Name {
  const char* name;
  uint32_t (*call)(char*);
  std::string request;
};

const Name kNames[] = {
    {CALL(BatteryHealthyTable_ManufactureName), "battery_read_command_by_index 32 "},
    {CALL(BatteryHealthyTable_ManufactureNameBySMBus), "battery_read_command_by_index 32 "},
    {CALL(BatteryHealthyTable_DeviceName), "battery_read_command_by_index 33 "},
};

class BatteryFirmwareName : public PerRow<BatteryFirmware, Name> {
 protected:
  // A block: its length byte and its characters, zeros behind them.
  void Block(uint32_t length, const std::string& characters) {
    AnswerRequests([=](const std::string& request) {
      const size_t index = std::stoul(request.substr(request.rfind(' ')));
      const uint32_t value = index == 0                   ? length
                             : index <= characters.size() ? static_cast<uint8_t>(characters[index - 1])
                                                          : 0;
      return WmiProperties{{L"value", Number(VT_UI4, value)}};
    });
  }
  // An empty name is a failure.
  void ExpectName(const std::string& name, size_t requests) {
    char buffer[64];
    std::fill_n(buffer, sizeof buffer, '~');
    Lines();
    EXPECT_EQ(row_.call(buffer), name.empty() ? 0u : 1u);
    EXPECT_STREQ(buffer, name.c_str());
    EXPECT_EQ(buffer[name.size() + 1], '~');  // nothing behind the terminator
    const std::string own = row_.name;
    EXPECT_THAT(BatteryLines(),
                ElementsAre("5 [" + own + "] ARM64: using WMImethods.",
                            name.empty() ? "5 [EC_BH][" + own + "] Fail. BatteryHealthyTable version: 2147483647"
                                         : "5 [EC_BH][BatteryHealthyTable_ManufactureName] ManufactureName: " + name));
    Strings expected;
    for (size_t i = 0; i < requests; ++i) expected.push_back(row_.request + std::to_string(i));
    EXPECT_EQ(Requests(), expected);
  }
};

TEST_P(BatteryFirmwareName, ReadsItsBlockByIndex) {
  Block(3, "AB%Z");
  ExpectName("AB%", 4);
  Block(0, "ABC");
  ExpectName("", 1);
  for (const uint32_t length : {32u, 33u, 255u, 0xFFFFFFFFu}) {
    Block(length, std::string(60, 'N'));
    ExpectName(std::string(32, 'N'), 33);
  }
  // A zero ends the name before its length does.
  Block(8, "CELL");
  ExpectName("CELL", 6);
  Block(8, "");
  ExpectName("", 2);
  wmi.rows.clear();
  ExpectName("", 0);
  EXPECT_EQ(row_.call(nullptr), 0u);
  EXPECT_THAT(BatteryLines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Members, BatteryFirmwareName, testing::ValuesIn(kNames), NameOfRow());

// ---- Fans and temperatures ----

class ThermalFirmware : public FirmwareMembers {
 protected:
  ThermalFirmware() {
    // The guards of the fan mutex are made here, so that no test sees the wait of a first call.
    HealthyTable_SetFanTestMode(0);
    Quillo_Read_Fan(0);
    Lines();
    AnswerRequests([this](const std::string& request) {
      const auto known = bytes_.find(request);
      return known == bytes_.end() ? WmiProperties{} : WmiProperties{{L"value", Number(VT_UI4, known->second)}};
    });
  }

  // The lines of the family, without those of the firmware's route.
  static Strings FanLines() { return LinesWithout({"[wmiMethod", "[ReadWMI", "[ATD_STS", "[WOA_EC", "[Mutex"}); }

  std::map<std::string, int64_t> bytes_;  // by request; another one is not answered
};

constexpr char kCount[] = "ec_read_command_byte 11 1";
constexpr char kLow[] = "ec_read_command_byte 8 1", kHigh[] = "ec_read_command_byte 9 1";

TEST_F(ThermalFirmware, OneRegisterEach) {
  const struct {
    uint32_t (*call)();
    const char* request;
    int64_t byte;
    uint32_t value;
    const char* line;
  } members[] = {
      {HealthyTable_FanCounts, kCount, 2, 2, "5 [HealthyTable_FanCounts] ARM64: using WMImethods."},
      {HealthyTable_GetFanTestMode, "ec_read_command_byte 2 1", 0x02, 1,
       "5 [EC_BH][HealthyTable_GetFanTestMode] ARM64: using WMImethods."},
      {HealthyTable_GetFanTestMode, "ec_read_command_byte 2 1", 0xFD, 0,
       "5 [EC_BH][HealthyTable_GetFanTestMode] ARM64: using WMImethods."},
      {HealthyTable_Read_Cpu_Temperature, "ec_read_command_byte 1 3", 52, 52,
       "5 [HealthyTable_Read_Cpu_Temperature] ARM64: using WMImethods."},
      {Quillo_Read_Cpu_Temperature, "ec_read_command_byte 1 3", 255, 255,
       "5 [HealthyTable_Read_Cpu_Temperature] ARM64: using WMImethods."},
      {HealthyTable_Read_BoardTS0L_Temperature, "ec_read_command_byte 2 3", 41, 41,
       "5 [HealthyTable_Read_BoardTS0L_Temperature] ARM64: using WMImethods."},
  };
  for (const auto& member : members) {
    bytes_ = {{member.request, member.byte}};
    EXPECT_EQ(member.call(), member.value) << member.request;
    EXPECT_THAT(Requests(), ElementsAre(member.request));
    EXPECT_THAT(FanLines(), ElementsAre(member.line));
    // No answer, and one that no byte can be.
    bytes_.clear();
    EXPECT_EQ(member.call(), kNoAnswer) << member.request;
    bytes_ = {{member.request, 0xFFFFFFFF}};
    EXPECT_EQ(member.call(), kNoAnswer) << member.request;
    Requests();
    Lines();
  }
}

TEST_F(ThermalFirmware, SpeedIsTwoBytesTheHighOneFirstAndEveryFanHasIt) {
  bytes_ = {{kCount, 2}, {kHigh, 0x0C}, {kLow, 0x30}};
  EXPECT_EQ(HealthyTable_FanRPM(), 3120u);
  EXPECT_THAT(Requests(), ElementsAre(kHigh, kLow));
  EXPECT_THAT(FanLines(), ElementsAre("5 [HealthyTable_FanRPM] ARM64: using WMImethods."));
  uint32_t rpm[] = {1, 1, 1};
  EXPECT_EQ(HealthyTable_Read_Fan(rpm), 3120u);
  EXPECT_THAT(rpm, ElementsAre(3120u, 3120u, 1u));
  EXPECT_THAT(Requests(), ElementsAre(kCount, kHigh, kLow, kHigh, kLow));
  EXPECT_EQ(Quillo_Read_Fan(1), 3120u);
  EXPECT_THAT(Requests(), ElementsAre(kCount, kHigh, kLow));
  EXPECT_EQ(Quillo_Read_Fan(2), 0u);
  EXPECT_THAT(Requests(), ElementsAre(kCount));
  bytes_ = {{kHigh, 0x1F0}, {kLow, 0x2FE}};
  EXPECT_EQ(HealthyTable_FanRPM(), 0xF0FEu);
  bytes_ = {{kHigh, 0x0C}};
  EXPECT_EQ(HealthyTable_FanRPM(), kNoAnswer);
  bytes_ = {{kLow, 0x30}};
  Requests();
  EXPECT_EQ(HealthyTable_FanRPM(), kNoAnswer);
  EXPECT_THAT(Requests(), ElementsAre(kHigh));
}

TEST_F(ThermalFirmware, IndexAndDutyAreRefusedWithoutARequest) {
  EXPECT_EQ(HealthyTable_SetFanIndex(1), 0u);
  EXPECT_EQ(HealthyTable_SetFanPwmDuty(80), 0u);
  EXPECT_THAT(FanLines(), ElementsAre("5 [HealthyTable_SetFanIndex] ARM64: using WMImethods.",
                                      "5 [HealthyTable_SetFanPwmDuty] ARM64: using WMImethods."));
  EXPECT_THAT(Requests(), IsEmpty());
}

TEST_F(ThermalFirmware, TestModeIsWrittenAsItsSevenBitsTwice) {
  for (const auto& [mode, request] : {std::pair{1u, "ec_write_command_byte 130 1 2"},
                                      {3u, "ec_write_command_byte 130 1 6"},
                                      {0x7Fu, "ec_write_command_byte 130 1 254"},
                                      {0x80u, "ec_write_command_byte 130 1 0"},
                                      {0x181u, "ec_write_command_byte 130 1 2"}}) {
    bytes_ = {{request, 0}};
    EXPECT_EQ(HealthyTable_SetFanTestMode(mode), 1u);
    EXPECT_THAT(Requests(), ElementsAre(request));
    EXPECT_THAT(FanLines(), ElementsAre("5 [EC_BH][HealthyTable_SetFanTestMode]",
                                        "5 [EC_BH][HealthyTable_SetFanTestMode] ARM64: using WMImethods."));
    // The firmware refuses turning off: the mutex is given back all the same.
    bytes_ = {{"ec_write_command_byte 130 1 0", 1}};
    EXPECT_EQ(HealthyTable_SetFanTestMode(0), 0u);
    EXPECT_THAT(Requests(), ElementsAre("ec_write_command_byte 130 1 0"));
    EXPECT_EQ(ReleaseMutex(KernelHandle(OpenMutexW(MUTEX_ALL_ACCESS, FALSE, L"Global\\FancontrolMutex")).get()), FALSE);
    Lines();
  }
}

TEST_F(ThermalFirmware, ACountThatNoByteHoldsIsCutOrNone) {
  std::vector<uint32_t> rpm(VEXA_FAN_SLOTS + 1, 1);
  bytes_ = {{kCount, 0x7FFFFFFE}};
  EXPECT_EQ(HealthyTable_Read_Fan(rpm.data()), kNoAnswer);
  EXPECT_EQ(rpm[254], kNoAnswer);
  EXPECT_EQ(rpm[255], 1u);
  EXPECT_EQ(Requests().size(), 256u);
  bytes_ = {{kCount, 0x7FFFFFFF}};
  EXPECT_EQ(HealthyTable_Read_Fan(rpm.data()), kNoAnswer);
  EXPECT_EQ(rpm[0], 0xFFFFFFFFu);
  EXPECT_EQ(Requests().size(), 1u);
}

}  // namespace
}  // namespace vexa::test
