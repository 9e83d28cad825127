// Identity, fans and system state of the shipped library on each scenario, and what the registry keeps over processes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <iterator>

#include "tests/e2e/library.h"
#include "tests/e2e/notebook.h"
#include "tests/e2e/peer.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

constexpr wchar_t kKey[] = L"SOFTWARE\\Vexa\\Vexa System Control Interface\\VexaSystemAnalysis";
constexpr uint32_t kFail = 0x7FFFFFFF;  // no answer
constexpr uint32_t kVoid = 0xFFFFFFFF;  // not available
constexpr uint32_t kNone = 65535;       // no firmware revision

Lines TakeExchanges() {
  Lines log = TakeDriverLog();
  std::erase_if(log, [](const std::string& line) { return !line.starts_with("ec "); });
  return log;
}

// Begins and ends without anything that the registry keeps.
class FreshMachine : public EndToEnd {
 protected:
  void SetUp() override {
    EndToEnd::SetUp();
    Forget();
  }
  void TearDown() override {
    Forget();
    EndToEnd::TearDown();
  }
  static void Forget() {
    for (const wchar_t* value : {L"EcChipId", L"EcChipName", L"EcFwRev"}) {
      RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kKey, value);
    }
  }
  static bool IsKept(const wchar_t* value) {
    return RegGetValueW(HKEY_LOCAL_MACHINE, kKey, value, RRF_RT_REG_DWORD, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
  }
};

using IdentityOfProcesses = FreshMachine;

TEST_F(IdentityOfProcesses, TheEcIsAskedOnceOverTwo) {
  Peer first("library");
  Peer second("library");
  EXPECT_EQ(first.Ask("initialize"), Lines{"= 1"});
  EXPECT_EQ(first.Ask("number EC_ReadEcChipId"), Lines{"= 133"});
  EXPECT_EQ(first.Ask("number EC_ReadEcChipName"), Lines{"= 1448622137"});
  EXPECT_EQ(first.Ask("number EC_ReadEcFwRev"), Lines{"= 16706"});
  EXPECT_THAT(TakeExchanges(), ElementsAre("ec 0xbb 10 read -> 0x85 status 0x0", "ec 0xbb 12 read -> 0x56 status 0x0",
                                           "ec 0xbb 13 read -> 0x58 status 0x0", "ec 0xbb 14 read -> 0x38 status 0x0",
                                           "ec 0xbb 15 read -> 0x39 status 0x0", "ec 0xbb 51 read -> 0x80 status 0x0",
                                           "ec 0xbb 03 read -> 0x41 status 0x0", "ec 0xbb 04 read -> 0x42 status 0x0"));
  // With a ready driver and without.
  for (const bool ready : {false, true}) {
    if (ready) EXPECT_EQ(second.Ask("initialize"), Lines{"= 1"});
    EXPECT_EQ(second.Ask("number EC_ReadEcChipId"), Lines{"= 133"});
    EXPECT_EQ(second.Ask("number EC_ReadEcChipName"), Lines{"= 1448622137"});
    EXPECT_EQ(second.Ask("number EC_ReadEcFwRev"), Lines{"= 16706"});
  }
  EXPECT_THAT(TakeExchanges(), IsEmpty());
}

// Columns in the order of kScenarios.
const char* const kScenarios[] = {"healthy-x64", "worn-battery", "no-battery",      "no-table",
                                  "old-table",   "silent-ec",    "hostile-answers", "offset-echo"};
constexpr size_t kScenarioCount = std::size(kScenarios);

struct NumberRow {
  const char* name;
  uint32_t values[kScenarioCount];
};

// clang-format off
// Each value is as the scenario says, of an EC that was not asked before.
const NumberRow kNumbers[] = {
    {"EC_ReadEcChipId",           {0x85, 0x85, 0x85, 0x61, 0x85, kFail, 0xFF, 0x10}},
    {"EC_ReadEcChipName",         {0x56583839, 0x56583839, 0x56583839, 0x56583835, 0x56583835, kFail, 0x256E2573,
                                   0x12131415}},
    {"EC_ReadEcFwRev",            {0x4142, 0x4142, 0x4142, 0x4346, 0x4142, kFail, 0xFFFF, kNone}},
    {"EC_ReadProjectInformation", {0x80, 0x80, 0x80, 0x80, 0x80, kFail, 0x8F, 0x51}},
    {"HealthyTable_FanCounts",      {2, 2, 0, kFail, 2, kFail, 255, 0x30}},
    {"HealthyTable_GetFanTestMode", {0, 0, 0, kFail, 0, kFail, 255, 0x31}},
    {"HealthyTable_FanRPM",         {3120, 4620, 0, kVoid, 3120, kVoid, 0xFFFF, 0x3433}},
    {"HealthyTable_Read_Cpu_Temperature", {52, 91, 52, kFail, 52, kFail, 255, 0}},
    {"Quillo_Read_Cpu_Temperature",       {52, 91, 52, kFail, 52, kFail, 255, 0}},
    {"HealthyTable_Read_BoardTS0L_Temperature", {41, 58, 0, kFail, 41, kFail, 255, 0x12}},
    // The EC of the last two tells no revision that has the command.
    {"System_Read_TabletMode", {0, 1, 0, 0, 0, kFail, 0, 0}},
};
// clang-format on

class IdentityAndFans : public FreshMachine, public testing::WithParamInterface<size_t> {};

TEST_P(IdentityAndFans, AsTheScenarioSays) {
  const size_t column = GetParam();
  UseScenario(kScenarios[column]);
  const Library library;
  const Ready ready(library);
  ASSERT_EQ(ready.answer(), 1u);
  for (const NumberRow& row : kNumbers) EXPECT_EQ(library.Number(row.name), row.values[column]) << row.name;
  const bool answers = kScenarios[column] != std::string("silent-ec");
  for (const wchar_t* value : {L"EcChipId", L"EcChipName", L"EcFwRev"}) EXPECT_EQ(IsKept(value), answers);
}

INSTANTIATE_TEST_SUITE_P(Scenarios, IdentityAndFans, testing::Range(size_t{0}, kScenarioCount), [](const auto& info) {
  std::string name = kScenarios[info.param];
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

using Fans = EndToEnd;

TEST_F(Fans, AreSelectedReadAndDrivenOneByOne) {
  const Library library;
  const Ready ready(library);
  ASSERT_EQ(library.Number("HealthyTable_FanCounts"), 2u);
  TakeExchanges();
  uint32_t rpm[VEXA_FAN_SLOTS] = {};
  EXPECT_EQ(library.HealthyTable_Read_Fan(rpm), 2870u);
  EXPECT_EQ(rpm[0], 3120u);
  EXPECT_EQ(rpm[1], 2870u);
  EXPECT_EQ(rpm[2], 0u);
  EXPECT_THAT(TakeExchanges(),
              ElementsAre("ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 02 30 00 read -> 0x02 status 0x0",
                          "ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 82 32 00 write -> 0x00 status 0x0",
                          "ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 02 34 00 read -> 0x0c status 0x0",
                          "ec 0xdd 02 33 00 read -> 0x30 status 0x0", "ec 0xbb 50 read -> 0x1c status 0x0",
                          "ec 0xdd 82 32 01 write -> 0x00 status 0x0", "ec 0xbb 50 read -> 0x1c status 0x0",
                          "ec 0xdd 02 34 00 read -> 0x0b status 0x0", "ec 0xdd 02 33 00 read -> 0x36 status 0x0"));
  EXPECT_EQ(library.Quillo_Read_Fan(0), 3120u);
  EXPECT_EQ(library.Quillo_Read_Fan(2), 0u);
  EXPECT_EQ(library.HealthyTable_SetFanIndex(1), 1u);
  EXPECT_EQ(library.Number("HealthyTable_FanRPM"), 2870u);
  EXPECT_EQ(library.HealthyTable_SetFanTestMode(1), 1u);
  EXPECT_EQ(library.HealthyTable_SetFanPwmDuty(200), 1u);
  EXPECT_EQ(library.Number("HealthyTable_GetFanTestMode"), 1u);
  EXPECT_EQ(library.HealthyTable_SetFanTestMode(0), 1u);
  EXPECT_EQ(library.Number("HealthyTable_GetFanTestMode"), 0u);
}

TEST_F(Fans, OfACountThatLies) {
  UseScenario("hostile-answers");
  const Library library;
  const Ready ready(library);
  std::vector<uint32_t> rpm(VEXA_FAN_SLOTS + 1, 7);
  EXPECT_EQ(library.HealthyTable_Read_Fan(rpm.data()), 0xFFFFu);
  EXPECT_EQ(rpm[1], 0u);
  EXPECT_EQ(rpm[VEXA_FAN_SLOTS - 1], 0xFFFFu);
  EXPECT_EQ(rpm[VEXA_FAN_SLOTS], 7u);
}

// What this system lacks gives the documented answers, on the library as it is shipped.
TEST_F(Fans, AndTheSystemAroundThem) {
  const Library library;
  wchar_t version[VEXA_VERSION_CAPACITY] = L"as it was";
  library.GetUWPVersion(version);
  library.GetInfVersion(version);
  EXPECT_EQ(std::wstring(version), L"as it was");
  char text[VEXA_LOCAL_TIME_CAPACITY] = {};
  EXPECT_EQ(library.System_Read_LocalTime(text), 19u);
  for (const uint8_t flag : {uint8_t{0}, uint8_t{1}}) {
    const int32_t volume = library.System_Read_VolumeLevel(flag);
    EXPECT_TRUE(volume >= -1 && volume <= 100) << volume;
  }
  Peer peer("library");
  EXPECT_EQ(peer.Ask("number System_Check_S_Mode"), Lines{"= 0"});
  EXPECT_THAT(peer.Ask("trace"), testing::Contains("5 [System_Check_S_Mode] Load Dll Error, error = 126"));
}

}  // namespace
}  // namespace vexa::test
