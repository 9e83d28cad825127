// What the battery exports answer on each scenario.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "tests/support/guarded_buffer.h"
#include "tests/e2e/library.h"
#include "tests/e2e/notebook.h"
#include "tests/support/import_patch.h"

namespace vexa::test {
namespace {

constexpr int32_t kFail = 0x7FFFFFFF;  // no answer
constexpr int32_t kVoid = -1;          // not available: 0xFFFFFFFF

const char* const kScenarios[] = {"healthy-x64", "worn-battery", "no-battery",      "no-table",
                                  "old-table",   "silent-ec",    "hostile-answers", "offset-echo"};
constexpr size_t kScenarioCount = std::size(kScenarios);

struct NumberRow {
  const char* name;
  int32_t values[kScenarioCount];  // of all 32 bits
};

// clang-format off
// Columns in the order of kScenarios.
const NumberRow kNumbers[] = {
    {"BatteryHealthyTable_ReadVersion",        {28,    28,     28,    0,     9,     kFail, 255,      28}},
    {"BatteryHealthyTable_ReadVendorType",     {1,     1,      1,     1,     1,     kFail, 1,        0}},
    {"BatteryHealthyTable_ECChipID",           {0x85,  0x85,   0x85,  0x61,  0x85,  kFail, 0xFF,     0x10}},
    {"BatteryHealthyTable_ManufactureDate",    {23153, 20326,  0,     kVoid, 23153, kVoid, 65535,    0x5554}},
    {"BatteryHealthyTable_SerialNumber",       {19754, 19754,  0,     0,     19754, 0,     65535,    0x2928}},
    {"BatteryHealthyTable_DesignVoltage",      {15400, 15400,  0,     0,     15400, 0,     65535,    0x2D2C}},
    {"BatteryHealthyTable_CycleCount",         {63,    912,    0,     kVoid, 63,    kVoid, 65535,    0x2F2E}},
    {"BatteryHealthyTable_Rsoc",               {84,    37,     0,     0,     84,    0,     65535,    0x3130}},
    {"BatteryHealthyTable_Temperature",        {3033,  3180,   0,     kVoid, 3033,  kVoid, 65535,    0x3534}},
    {"BatteryHealthyTable_PackageVoltage",     {16155, 14600,  0,     kVoid, 16155, kVoid, 65535,    0x3736}},
    {"BatteryHealthyTable_Current",            {1850,  -1420,  0,     kVoid, 1850,  kVoid, -1,       0x3938}},
    {"BatteryHealthyTable_ChargingCurrent",    {2560,  0,      0,     kVoid, 2560,  kVoid, -1,       0x3D3C}},
    {"BatteryHealthyTable_ChargingVoltage",    {17600, 0,      0,     kVoid, 17600, kVoid, 65535,    0x3F3E}},
    {"BatteryHealthyTable_RemainingCapacity",  {4112,  944,    0,     0,     4112,  0,     65535,    0x4140}},
    {"BatteryHealthyTable_FullChargeCapacity", {4896,  2550,   0,     0,     4896,  0,     65535,    0x4342}},
    {"BatteryHealthyTable_CellVoltage1",       {4038,  3701,   0,     0,     4038,  0,     65535,    0x4948}},
    {"BatteryHealthyTable_CellVoltage2",       {4041,  3688,   0,     0,     4041,  0,     65535,    0x4B4A}},
    {"BatteryHealthyTable_CellVoltage3",       {4036,  3512,   0,     0,     4036,  0,     65535,    0x4D4C}},
    {"BatteryHealthyTable_CellVoltage4",       {4040,  3699,   0,     0,     4040,  0,     65535,    0x4F4E}},
    {"BatteryHealthyTable_GaugeIC",            {'2',   '2',    0,     0,     '2',   0,     's',      0x13}},
    {"BatteryHealthyTable_SafetyStatus",       {0,     0x2000, kFail, kFail, 0,     kFail, 0xFFFFFF, kFail}},
    {"BatteryHealthyTable_PFStatus",           {0,     0,      kFail, kFail, 0,     kFail, -1,       kFail}},
    {"BatteryHealthyTable_BatteryError",       {0,     0,      0,     0,     0,     0,     1,        0}},
    {"BatteryHealthyTable_FullCharged",        {0,     0,      0,     0,     0,     0,     1,        0}},
    {"BatteryHealthyTable_TimeoutStatus",      {0,     0,      0,     0,     0,     0,     0xFB,     3}},
    {"BatteryHealthyTable_ACStatus",           {1,     0,      1,     0,     1,     0,     1,        0}},
    {"BatteryHealthyTable_LidStatus",          {1,     1,      1,     0,     1,     0,     255,      1}},
};
// clang-format on

constexpr char kMaker[] = "VXB2-CELLCO";
constexpr char kDevice[] = "VXB4S51-N14";

struct TextRow {
  const char* name;
  size_t capacity;
  const char* values[kScenarioCount];  // null: not answered, so 0 and an empty text
};

const TextRow kTexts[] = {
    {"BatteryHealthyTable_ECChipName",
     15,
     {"VX8987", "VX8987", "VX8987", "VX8510", "VX8510", nullptr, "%n%s%08x%n%s%0",
      "\x12\x13\x14\x15\x16\x17\x18\x19\x1A\x1B\x1C\x1D\x1E\x1F"}},
    {"BatteryHealthyTable_ManufactureName",
     33,
     {kMaker, kMaker, "", nullptr, kMaker, nullptr, "%n%s%x%n%s%x%n%s",
      "\x10\x11\x12\x13\x14\x15\x16\x17\x18\x19\x1A\x1B\x1C\x1D\x1E\x1F"}},
    {"BatteryHealthyTable_ManufactureNameBySMBus",
     33,
     {kMaker, kMaker, nullptr, nullptr, kMaker, nullptr, "%n%s%x%n%s%x%n%s%x%n%s%x%n%s%x%%", nullptr}},
    {"BatteryHealthyTable_DeviceName",
     33,
     {kDevice, kDevice, nullptr, nullptr, kDevice, nullptr, "", nullptr}},
};

struct InformationRow {
  const char* text;
  std::vector<DWORD> pauses_ms;
};

const InformationRow kInformation[kScenarioCount] = {
    {"0x56,0x58,0x42,0x32,0x2d,0x41,0x37,0x31,0x34,0x30,0x30,0x36,0x33,0x0,0x1,0x2,"
     "0x20,0x25,0x3,0x17,0x4d,0x2a,0x13,0x20,0x13,0xec,0x0,0x3f,0x3c,0x28,0x0,0xa5",
     {}},
    {"0x56,0x58,0x42,0x32,0x2d,0x41,0x37,0x31,0x34,0x30,0x30,0x36,0x33,0x0,0x1,0x2,"
     "0x20,0x19,0x11,0x6,0x4d,0x2a,0x9,0xf6,0x13,0xec,0x3,0x90,0x3c,0x28,0x0,0xa5",
     {1000, 1000}},
    {"", {1000, 1000, 1000}},
    {"", {}},
    {"", {}},
    {"", {1000, 1000, 1000}},
    {"0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,"
     "0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff,0xff",
     {}},
    {"", {}},
};

std::vector<DWORD> g_pauses_ms;

// The handshake counts its polls and not the time between them, so that its pauses need not be made.
void WINAPI ToldSleep(DWORD milliseconds) { g_pauses_ms.push_back(milliseconds); }

class Readings : public EndToEnd, public testing::WithParamInterface<size_t> {};

TEST_P(Readings, AsTheScenarioSays) {
  const size_t column = GetParam();
  UseScenario(kScenarios[column]);
  const Library library;
  const Ready ready(library);
  ASSERT_EQ(ready.answer(), 1u);
  for (const NumberRow& row : kNumbers) {
    EXPECT_EQ(static_cast<int32_t>(library.Number(row.name)), row.values[column]) << row.name;
  }
  for (const TextRow& row : kTexts) {
    SCOPED_TRACE(row.name);
    const char* expected = row.values[column];
    const GuardedBuffer buffer(row.capacity);
    EXPECT_EQ(library.Text(row.name, buffer.data()), expected == nullptr ? 0u : 1u);
    ASSERT_TRUE(buffer.IsTerminated());
    EXPECT_STREQ(buffer.data(), expected == nullptr ? "" : expected);
    EXPECT_TRUE(buffer.IsUntouchedBefore());
  }
  const ImportPatch sleep("Sleep", ToldSleep, library.module());
  g_pauses_ms.clear();
  EXPECT_STREQ(library.BatteryHealthyTable_BatteryInformation().text, kInformation[column].text);
  EXPECT_EQ(g_pauses_ms, kInformation[column].pauses_ms);
}

std::string TestName(const testing::TestParamInfo<size_t>& info) {
  std::string name = kScenarios[info.param];
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Scenarios, Readings, testing::Range(size_t{0}, kScenarioCount), TestName);

using Answers = EndToEnd;

// Also those that came after this test was written.
TEST_F(Answers, EveryScenarioIsSurvived) {
  const std::vector<std::string> scenarios = AllScenarios();
  EXPECT_THAT(scenarios, testing::IsSupersetOf(kScenarios));
  const Library library;
  const ImportPatch sleep("Sleep", ToldSleep, library.module());
  for (const std::string& scenario : scenarios) {
    SCOPED_TRACE(scenario);
    UseScenario(scenario);
    const Ready ready(library);
    for (const NumberRow& row : kNumbers) library.Number(row.name);
    for (const TextRow& row : kTexts) {
      const GuardedBuffer buffer(row.capacity);
      library.Text(row.name, buffer.data());
      EXPECT_TRUE(buffer.IsTerminated() && buffer.IsUntouchedBefore()) << row.name;
    }
    const VexaText information = library.BatteryHealthyTable_BatteryInformation();
    EXPECT_LE(std::string(information.text, strnlen(information.text, sizeof information.text)).size(), 159u);
    library.GetDriverVersion();
    library.GetRefCount();
  }
}

TEST_F(Answers, TheDriversOwnNumbersMayBeCut) {
  UseScenario("hostile-answers");
  const Library library;
  const Ready ready(library);
  EXPECT_EQ(library.GetDriverVersion(), 0xFFu);
  EXPECT_EQ(library.GetRefCount(), 0u);
}

// A cut answer leaves zeros where it ends; a failed one ends the reading.
TEST_F(Answers, CutFailedAndWithAStatus) {
  UseScenario("short-answers");
  const Library library;
  const Ready ready(library);
  ASSERT_EQ(ready.answer(), 1u);
  EXPECT_EQ(library.GetDriverVersion(), 0x00030201u);
  EXPECT_EQ(library.GetRefCount(), 0u);
  EXPECT_EQ(library.Number("BatteryHealthyTable_CycleCount"), 0x002Eu);
  EXPECT_EQ(library.Number("BatteryHealthyTable_Rsoc"), 0x3130u);
  EXPECT_EQ(library.Number("BatteryHealthyTable_Temperature"), 0x0034u);
  EXPECT_EQ(library.Number("BatteryHealthyTable_PackageVoltage"), 0x7FFFFFFFu);
  EXPECT_EQ(library.Number("BatteryHealthyTable_Current"), 0x7FFFFFFFu);
  EXPECT_EQ(library.Number("BatteryHealthyTable_GaugeIC"), 0x7FFFFFFFu);
  EXPECT_EQ(library.Number("BatteryHealthyTable_ACStatus"), 0u);
  char name[33];
  EXPECT_EQ(library.Text("BatteryHealthyTable_ManufactureName", name), 0u);
  EXPECT_STREQ(name, "");
  EXPECT_THAT(TakeDriverLog(),
              testing::ElementsAre("open VexaSAIO handles 1", "version -> 0x04030201 length 3",
                                   "references -> failed 0xc0000001",
                                   "ec 0xbb 50 read -> 0x1c status 0x0",
                                   "ec 0xdd 01 2f 00 read -> 0x2f status 0x0 length 11",
                                   "ec 0xdd 01 2e 00 read -> 0x2e status 0x0",
                                   "ec 0xbb 50 read -> 0x1c status 0x0",
                                   "ec 0xdd 01 31 00 read -> 0x31 status 0x0",
                                   "ec 0xdd 01 30 00 read -> 0x30 status 0x0 length 12",
                                   "ec 0xbb 50 read -> 0x1c status 0x0",
                                   "ec 0xdd 01 35 00 read -> 0x35 status 0x0 length 0",
                                   "ec 0xdd 01 34 00 read -> 0x34 status 0x0",
                                   "ec 0xbb 50 read -> 0x1c status 0x0",
                                   "ec 0xdd 01 37 00 read -> failed 0xc0000001",
                                   "ec 0xbb 50 read -> 0x1c status 0x0",
                                   "ec 0xdd 01 39 00 read -> 0x39 status 0x0",
                                   "ec 0xdd 01 38 00 read -> 0x77 status 0x2",
                                   "ec 0xbb 50 read -> 0x1c status 0x0",
                                   "ec 0xdd 01 13 00 read -> 0x00 status 0x80000000",
                                   "ec 0xbb 50 read -> 0x1c status 0x0",
                                   "ec 0xdd 01 00 00 read -> failed 0xc0000001",
                                   "ec 0xbb 50 read -> 0x1c status 0x0",
                                   "ec 0xdd 01 10 00 read -> 0x10 status 0x0",
                                   "ec 0xdd 01 11 00 read -> 0x11 status 0x0",
                                   "ec 0xdd 01 12 00 read -> 0x12 status 0x0",
                                   "ec 0xdd 01 13 00 read -> 0x00 status 0x80000000"));
}

}  // namespace
}  // namespace vexa::test
