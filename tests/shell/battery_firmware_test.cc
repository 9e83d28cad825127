// The battery family on the firmware route: which gauge register each member asks for, and what it makes of the answer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/arch_value.h"
#include "tests/support/scripted_ec.h"
#include "tests/support/wmi_test.h"
#include "vexa/battery.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

// A machine whose firmware answers from a function; its driver is not to be asked.
class BatteryFirmware : public WmiTest {
 protected:
  BatteryFirmware() {
    wmi.firmware = [this](const std::wstring& method, const FakeWmi::Parameters& in) {
      requests_.push_back(Narrow(method.c_str()) + " " + Narrow(in.at(L"commandcode").c_str()) + " " +
                          Narrow(in.at(L"param0").c_str()));
      return WmiProperties{{L"value", Number(VT_UI4, answer_(std::stoi(in.at(L"param0"))))}};
    };
  }
  ~BatteryFirmware() override { EXPECT_THAT(ec_.TakeExchanges(), IsEmpty()); }

  std::vector<std::string> Requests() { return std::exchange(requests_, {}); }
  // The lines of the family, without the invoker's.
  static std::vector<std::string> BatteryLines() {
    std::vector<std::string> lines = Lines();
    std::erase_if(lines, [](const std::string& line) { return line.starts_with("5 [wmiMethod"); });
    return lines;
  }

  std::function<uint32_t(int param0)> answer_ = [](int) { return 0; };
  std::vector<std::string> requests_;
  ArchValue arch_{L"ARM64"};
  ScriptedEc ec_;
};

struct Member {
  const char* name;
  uint32_t (*call)();
  const char* request;  // "": none
  uint32_t constant;    // answer without a request
};

const Member kMembers[] = {
    {"ManufactureDate", BatteryHealthyTable_ManufactureDate, "battery_read_command_byte 27 2", 0},
    {"SerialNumber", BatteryHealthyTable_SerialNumber, "battery_read_command_byte 28 2", 0},
    {"DesignVoltage", BatteryHealthyTable_DesignVoltage, "battery_read_command_byte 25 2", 0},
    {"CycleCount", BatteryHealthyTable_CycleCount, "battery_read_command_byte 23 2", 0},
    {"Rsoc", BatteryHealthyTable_Rsoc, "battery_read_command_byte 13 1", 0},
    {"Temperature", BatteryHealthyTable_Temperature, "battery_read_command_byte 8 2", 0},
    {"PackageVoltage", BatteryHealthyTable_PackageVoltage, "battery_read_command_byte 9 2", 0},
    {"Current", BatteryHealthyTable_Current, "battery_read_command_byte 10 2", 0},
    {"ChargingCurrent", BatteryHealthyTable_ChargingCurrent, "", 0},
    {"ChargingVoltage", BatteryHealthyTable_ChargingVoltage, "battery_read_command_byte 21 2", 0},
    {"RemainingCapacity", BatteryHealthyTable_RemainingCapacity, "battery_read_command_byte 15 2", 0},
    {"FullChargeCapacity", BatteryHealthyTable_FullChargeCapacity, "battery_read_command_byte 16 2", 0},
    {"CellVoltage1", BatteryHealthyTable_CellVoltage1, "battery_read_command_byte 63 2", 0},
    {"CellVoltage2", BatteryHealthyTable_CellVoltage2, "battery_read_command_byte 62 2", 0},
    {"CellVoltage3", BatteryHealthyTable_CellVoltage3, "battery_read_command_byte 61 2", 0},
    {"CellVoltage4", BatteryHealthyTable_CellVoltage4, "battery_read_command_byte 60 2", 0},
    {"GaugeIC", BatteryHealthyTable_GaugeIC, "battery_read_command_by_index 32 4", 0},
    {"BatteryError", BatteryHealthyTable_BatteryError, "battery_read_command_byte 153 2", 0},
    {"FullCharged", BatteryHealthyTable_FullCharged, "", 0x7FFFFFFF},
    {"TimeoutStatus", BatteryHealthyTable_TimeoutStatus, "", 0},
    {"LidStatus", BatteryHealthyTable_LidStatus, "", 0},
};

TEST_F(BatteryFirmware, EachMemberAsksForItsOwnRegister) {
  // Bit 7 set, so that the one flag reads 1; every other number comes back as it is.
  answer_ = [](int) { return 0x15E80; };
  for (const Member& member : kMembers) {
    SCOPED_TRACE(member.name);
    const std::string name = "BatteryHealthyTable_" + std::string(member.name);
    std::vector<std::string> lines = {"5 [" + name + "] ARM64: using WMImethods."};
    const bool asks = member.request[0] != '\0';
    uint32_t value = asks ? 0x15E80 : member.constant;
    std::string text = "89728";
    if (std::string_view(member.name) == "BatteryError") value = 1, text = "1";
    if (std::string_view(member.name) == "Current") value = 0x5E80, text = "24192";
    if (asks) lines.push_back("5 [EC_BH][" + name + "] ATD_STS_battery_read_byte: " + text);
    EXPECT_EQ(member.call(), value);
    EXPECT_THAT(BatteryLines(), ElementsAreArray(lines));
    EXPECT_THAT(Requests(), ElementsAreArray(std::vector<std::string>(asks ? 1 : 0, member.request)));
  }
}

TEST_F(BatteryFirmware, WithoutAnAnswerTheValueIsZero) {
  wmi.rows.clear();
  for (const Member& member : kMembers) {
    EXPECT_EQ(member.call(), member.constant) << member.name;
    const std::vector<std::string> lines = BatteryLines();
    if (member.request[0] != '\0') {
      EXPECT_THAT(lines.back(), testing::EndsWith("] ATD_STS_battery_read_byte: 0"));
    }
  }
}

TEST_F(BatteryFirmware, OnlyTheCurrentIsSigned) {
  const struct {
    uint32_t answer, value;
    const char* text;
  } currents[] = {{0xFF38, 0xFFFFFF38, "-200"},
                  {0x8000, 0xFFFF8000, "-32768"},
                  {0x7FFF, 0x7FFF, "32767"},
                  {0xFFFFFF38, 0xFFFFFF38, "-200"}};
  for (const auto& current : currents) {
    answer_ = [&current](int) { return current.answer; };
    EXPECT_EQ(BatteryHealthyTable_Current(), current.value);
    EXPECT_EQ(BatteryLines().back(),
              std::string("5 [EC_BH][BatteryHealthyTable_Current] ATD_STS_battery_read_byte: ") + current.text);
  }
  answer_ = [](int) { return 0xFF38; };
  EXPECT_EQ(BatteryHealthyTable_Temperature(), 0xFF38u);
  EXPECT_EQ(BatteryHealthyTable_CellVoltage1(), 0xFF38u);
  EXPECT_EQ(BatteryHealthyTable_Rsoc(), 0xFF38u);
}

TEST_F(BatteryFirmware, ErrorIsBitSevenOfTheLowByte) {
  const struct {
    uint32_t answer, value;
  } answers[] = {{0x0080, 1}, {0xFF7F, 0}, {0x8000, 0}, {0xFFFF, 1}, {0, 0}};
  for (const auto& answer : answers) {
    answer_ = [&answer](int) { return answer.answer; };
    EXPECT_EQ(BatteryHealthyTable_BatteryError(), answer.value) << answer.answer;
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
  const struct {
    BYTE line;
    BOOL succeeds;
    uint32_t value;
  } cases[] = {{1, TRUE, 1}, {0, TRUE, 0}, {255, TRUE, 0}, {2, TRUE, 0}, {1, FALSE, 0}};
  for (const auto& status : cases) {
    g_power = {.line = status.line, .succeeds = status.succeeds, .calls = 0};
    EXPECT_EQ(BatteryHealthyTable_ACStatus(), status.value) << int{status.line} << " " << status.succeeds;
    EXPECT_EQ(g_power.calls, 1);
    EXPECT_EQ(BatteryLines().front(), "5 [BatteryHealthyTable_ACStatus] ARM64: using WMImethods.");
  }
  EXPECT_THAT(Requests(), IsEmpty());
  EXPECT_THAT(wmi.TakeCalls(), IsEmpty());
}

struct Name {
  const char* name;
  uint32_t (*call)(char*);
  const char* block;  // as decimal text
};

const Name kNames[] = {
    {"BatteryHealthyTable_ManufactureName", BatteryHealthyTable_ManufactureName, "32"},
    {"BatteryHealthyTable_ManufactureNameBySMBus", BatteryHealthyTable_ManufactureNameBySMBus, "32"},
    {"BatteryHealthyTable_DeviceName", BatteryHealthyTable_DeviceName, "33"},
};

class BatteryFirmwareName : public BatteryFirmware, public testing::WithParamInterface<Name> {
 protected:
  // A block: its length byte and its characters, zeros behind them.
  void Block(uint32_t length, const std::string& characters) {
    answer_ = [length, characters](int index) -> uint32_t {
      if (index == 0) return length;
      const auto at = static_cast<size_t>(index - 1);
      return at < characters.size() ? static_cast<uint8_t>(characters[at]) : 0;
    };
  }
  void ExpectName(const std::string& name, uint32_t result) {
    char buffer[64];
    std::fill_n(buffer, sizeof buffer, '~');
    EXPECT_EQ(GetParam().call(buffer), result);
    EXPECT_STREQ(buffer, name.c_str());
    EXPECT_EQ(buffer[name.size() + 1], '~');  // nothing behind the terminator
  }
  std::string RouteLine() const { return "5 [" + std::string(GetParam().name) + "] ARM64: using WMImethods."; }
  std::string FailureLine() const {
    return "5 [EC_BH][" + std::string(GetParam().name) + "] Fail. BatteryHealthyTable version: 2147483647";
  }
};

TEST_P(BatteryFirmwareName, ReadsItsBlockByIndex) {
  Block(3, "AB%Z");
  ExpectName("AB%", 1);
  const std::string request = "battery_read_command_by_index " + std::string(GetParam().block);
  EXPECT_THAT(Requests(), ElementsAre(request + " 0", request + " 1", request + " 2", request + " 3"));
  EXPECT_THAT(BatteryLines(),
              ElementsAre(RouteLine(), "5 [EC_BH][BatteryHealthyTable_ManufactureName] ManufactureName: AB%"));
}

TEST_P(BatteryFirmwareName, LengthsAtTheirEdges) {
  Block(0, "ABC");
  ExpectName("", 0);
  EXPECT_EQ(Requests().size(), 1u);
  EXPECT_THAT(BatteryLines(), ElementsAre(RouteLine(), FailureLine()));
  for (const uint32_t length : {32u, 33u, 255u, 0xFFFFFFFFu}) {
    Block(length, std::string(60, 'N'));
    ExpectName(std::string(32, 'N'), 1);
    EXPECT_EQ(Requests().size(), 33u);
  }
  // A zero ends the name before its length does.
  Block(8, "CELL");
  ExpectName("CELL", 1);
  BatteryLines();
  Block(8, "");
  ExpectName("", 0);
  EXPECT_THAT(BatteryLines(), ElementsAre(RouteLine(), FailureLine()));
}

TEST_P(BatteryFirmwareName, WithoutAnAnswer) {
  wmi.rows.clear();
  ExpectName("", 0);
  EXPECT_THAT(BatteryLines(), ElementsAre(RouteLine(), FailureLine()));
  EXPECT_EQ(GetParam().call(nullptr), 0u);
  EXPECT_THAT(BatteryLines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Members, BatteryFirmwareName, testing::ValuesIn(kNames),
                         [](const auto& info) { return std::string(info.param.name).substr(20); });

}  // namespace
}  // namespace vexa::test
