// Fans and temperatures on the firmware route: which register each export asks for, and what it makes of the answer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <optional>

#include "frame/handles.h"
#include "tests/support/arch_value.h"
#include "tests/support/scripted_ec.h"
#include "tests/support/wmi_test.h"
#include "vexa/thermal.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr uint32_t kNoAnswer = 0x7FFFFFFF;

// A machine whose firmware holds bytes by "offset table"; its driver is not to be asked.
class ThermalFirmware : public WmiTest {
 protected:
  ThermalFirmware() {
    // The guards of the fan mutex are made here, so that no test sees the wait of a first call.
    HealthyTable_SetFanTestMode(0);
    Quillo_Read_Fan(0);
    Requests();
    Lines();
    wmi.firmware = [this](const std::wstring& method, const FakeWmi::Parameters& in) {
      std::string request = Narrow(method.c_str());
      for (const wchar_t* name : {L"commandcode", L"param0", L"param1"}) {
        if (in.contains(name)) request += " " + Narrow(in.at(name).c_str());
      }
      requests_.push_back(request);
      const auto known = bytes_.find(request);
      if (known == bytes_.end()) return WmiProperties{};
      return WmiProperties{{L"value", Number(VT_UI4, known->second)}};
    };
  }
  ~ThermalFirmware() override { EXPECT_THAT(ec_.TakeExchanges(), IsEmpty()); }

  std::vector<std::string> Requests() { return std::exchange(requests_, {}); }
  // The lines of the family, without those of the firmware's route.
  static std::vector<std::string> FanLines() {
    std::vector<std::string> lines = Lines();
    std::erase_if(lines, [](const std::string& line) { return line.find("HealthyTable_") == std::string::npos; });
    return lines;
  }

  std::map<std::string, int64_t> bytes_;  // by request; another one is not answered
  std::vector<std::string> requests_;
  ArchValue arch_{L"ARM64"};
  ScriptedEc ec_;
};

TEST_F(ThermalFirmware, OneRegisterEach) {
  const struct {
    uint32_t (*call)();
    const char* request;
    int64_t byte;
    uint32_t value;
    const char* line;
  } members[] = {
      {HealthyTable_FanCounts, "ec_read_command_byte 11 1", 2, 2,
       "5 [HealthyTable_FanCounts] ARM64: using WMImethods."},
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

TEST_F(ThermalFirmware, SpeedIsTwoBytesTheHighOneFirst) {
  bytes_ = {{"ec_read_command_byte 9 1", 0x0C}, {"ec_read_command_byte 8 1", 0x30}};
  EXPECT_EQ(HealthyTable_FanRPM(), 3120u);
  EXPECT_THAT(Requests(), ElementsAre("ec_read_command_byte 9 1", "ec_read_command_byte 8 1"));
  EXPECT_THAT(FanLines(), ElementsAre("5 [HealthyTable_FanRPM] ARM64: using WMImethods."));
  bytes_["ec_read_command_byte 9 1"] = 0x1FF;
  bytes_["ec_read_command_byte 8 1"] = 0x2FE;
  EXPECT_EQ(HealthyTable_FanRPM(), 0xFFFEu);
  bytes_.erase("ec_read_command_byte 8 1");
  EXPECT_EQ(HealthyTable_FanRPM(), kNoAnswer);
  Requests();
  bytes_ = {{"ec_read_command_byte 8 1", 0x30}};
  EXPECT_EQ(HealthyTable_FanRPM(), kNoAnswer);
  EXPECT_THAT(Requests(), ElementsAre("ec_read_command_byte 9 1"));
}

TEST_F(ThermalFirmware, IndexAndDutyAreRefusedWithoutARequest) {
  EXPECT_EQ(HealthyTable_SetFanIndex(1), 0u);
  EXPECT_EQ(HealthyTable_SetFanPwmDuty(80), 0u);
  EXPECT_THAT(FanLines(), ElementsAre("5 [HealthyTable_SetFanIndex] ARM64: using WMImethods.",
                                      "5 [HealthyTable_SetFanPwmDuty] ARM64: using WMImethods."));
  EXPECT_THAT(Requests(), IsEmpty());
}

TEST_F(ThermalFirmware, TestModeIsWrittenAsItsSevenBitsTwice) {
  const struct {
    uint32_t mode;
    const char* request;
  } modes[] = {{1, "ec_write_command_byte 130 1 2"},
               {3, "ec_write_command_byte 130 1 6"},
               {0x7F, "ec_write_command_byte 130 1 254"},
               {0x80, "ec_write_command_byte 130 1 0"},
               {0x181, "ec_write_command_byte 130 1 2"}};
  for (const auto& mode : modes) {
    bytes_ = {{mode.request, 0}};
    EXPECT_EQ(HealthyTable_SetFanTestMode(mode.mode), 1u);
    EXPECT_THAT(Requests(), ElementsAre(mode.request));
    EXPECT_THAT(FanLines(), ElementsAre("5 [EC_BH][HealthyTable_SetFanTestMode]",
                                        "5 [EC_BH][HealthyTable_SetFanTestMode] ARM64: using WMImethods."));
    // The firmware refuses turning off: the mutex is given back all the same.
    bytes_ = {{"ec_write_command_byte 130 1 0", 1}};
    EXPECT_EQ(HealthyTable_SetFanTestMode(0), 0u);
    EXPECT_THAT(Requests(), ElementsAre("ec_write_command_byte 130 1 0"));
    EXPECT_EQ(ReleaseMutex(KernelHandle(OpenMutexW(MUTEX_ALL_ACCESS, FALSE, L"Global\\FancontrolMutex")).get()), FALSE);
    FanLines();
  }
}

TEST_F(ThermalFirmware, EveryFanHasTheOneSpeed) {
  bytes_ = {{"ec_read_command_byte 11 1", 2}, {"ec_read_command_byte 9 1", 0x0C}, {"ec_read_command_byte 8 1", 0x30}};
  uint32_t rpm[] = {1, 1, 1};
  EXPECT_EQ(HealthyTable_Read_Fan(rpm), 3120u);
  EXPECT_THAT(rpm, ElementsAre(3120u, 3120u, 1u));
  EXPECT_THAT(Requests(),
              ElementsAre("ec_read_command_byte 11 1", "ec_read_command_byte 9 1", "ec_read_command_byte 8 1",
                          "ec_read_command_byte 9 1", "ec_read_command_byte 8 1"));
  EXPECT_EQ(Quillo_Read_Fan(1), 3120u);
  EXPECT_EQ(Requests().size(), 3u);
  EXPECT_EQ(Quillo_Read_Fan(2), 0u);
  EXPECT_EQ(Requests().size(), 1u);
}

TEST_F(ThermalFirmware, ACountThatNoByteHoldsIsCutOrNone) {
  std::vector<uint32_t> rpm(VEXA_FAN_SLOTS + 1, 1);
  bytes_ = {{"ec_read_command_byte 11 1", 0x7FFFFFFE}};
  EXPECT_EQ(HealthyTable_Read_Fan(rpm.data()), kNoAnswer);
  EXPECT_EQ(rpm[254], kNoAnswer);
  EXPECT_EQ(rpm[255], 1u);
  EXPECT_EQ(Requests().size(), 256u);
  bytes_ = {{"ec_read_command_byte 11 1", 0x7FFFFFFF}};
  EXPECT_EQ(HealthyTable_Read_Fan(rpm.data()), kNoAnswer);
  EXPECT_EQ(rpm[0], 0xFFFFFFFFu);
  EXPECT_EQ(Requests().size(), 1u);
}

}  // namespace
}  // namespace vexa::test
