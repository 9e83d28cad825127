// What the adapter and power-source exports answer on each scenario, and what they change on the notebook.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <optional>
#include <string>

#include "tests/e2e/library.h"
#include "tests/e2e/notebook.h"
#include "tests/support/arch_value.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;

constexpr uint32_t kFail = 0x7FFFFFFF;  // no answer
constexpr uint32_t kVoid = 0xFFFFFFFF;  // not available

// Versions of the table: 28, 28, 28, none, 9, no answer, 255, 28.
const char* const kScenarios[] = {"healthy-x64", "worn-battery", "no-battery",      "no-table",
                                  "old-table",   "silent-ec",    "hostile-answers", "offset-echo"};
constexpr size_t kScenarioCount = std::size(kScenarios);

struct NumberRow {
  const char* name;
  uint32_t values[kScenarioCount];
};

// clang-format off
// Columns in the order of kScenarios.
const NumberRow kNumbers[] = {
    {"Adapter_Read_Power_Big_Data_Config", {3,          3,  3,          0,     0,     0,     0xFF,   0}},
    {"Adapter_Read_PDO1",           {0x0801912C, 0,  0x0881912C, kVoid, kVoid, kVoid, kVoid,  0x05040302}},
    {"Adapter_Read_PDO2",           {0x0002D12C, 0,  0x0002D12C, kVoid, kVoid, kVoid, kVoid,  0x09080706}},
    {"Adapter_Read_PDO3",           {0x0004B12C, 0,  0x0004B12C, kVoid, kVoid, kVoid, kVoid,  0x0D0C0B0A}},
    {"Adapter_Read_PDO4",           {0x000641F4, 0,  0x000641F4, kVoid, kVoid, kVoid, kVoid,  0x11100F0E}},
    {"Adapter_Read_PDO5",           {0xC9A42164, 0,  0xC1A42164, kVoid, kVoid, kVoid, kVoid,  0x15141312}},
    {"Adapter_Read_PDO6",           {0xE004B1F4, 0,  0xE007D1F4, kVoid, kVoid, kVoid, kVoid,  0x19181716}},
    {"Adapter_Read_PDO7",           {0,          0,  0,          kVoid, kVoid, kVoid, kVoid,  0x1D1C1B1A}},
    {"Adapter_Read_Contract_PDO",   {0x000641F4, 0,  0xD230968C, kVoid, kVoid, kVoid, kVoid,  0x21201F1E}},
    {"Adapter_Read_PDO_Watt",       {100,        0,  140,        kVoid, kVoid, kVoid, kVoid,  0x25242322}},
    {"Adapter_Read_PD_ADO",         {0,          0,  0,          0,     0,     0,     0xFF,   0x26}},
    {"Adapter_Read_Charger_Interrupt", {2,          2,  2,          0,     0,     0,     0xFF,   0x27}},
    {"Adapter_Read_Charger_Information", {0x11,       17, 0x11,       0,     0,     0,     0xFF,   0x28}},
    {"Adapter_Read_PD_Get_Source_Cap_Extend_VID", {0x1D5A,     0,  0x1D5A,     kVoid, kVoid, kVoid, 0xFFFF, 0x2A29}},
    {"Adapter_Read_PD_Get_Source_Cap_Extend_PID", {0x4C21,     0,  0x4C21,     kVoid, kVoid, kVoid, 0xFFFF, 0x2C2B}},
    {"Adapter_Read_PD_Get_Source_Cap_Extend_XID", {0x0003A7C5, 0, 0x0003A7C5, kVoid, kVoid, kVoid, kVoid,  0x302F2E2D}},
    {"Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion", {0x12,      0,  0x12,       0,     0,     0,     0xFF,   0x31}},
    {"Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion", {0x21,      0,  0x21,       0,     0,     0,     0xFF,   0x32}},
    {"Adapter_Read_PD_Get_Status_Temperature", {36,         0,  36,         0,     0,     0,     0xFF,   0x33}},
    {"Adapter_Read_PD_Get_Status_EventFlag", {0,          0,  0,          0,     0,     0,     0xFF,   0x34}},
    {"Adapter_Read_PD_Get_Emark_VID", {0x1C601D5A, 0,  0x1C601D5A, 0,     0,     0,     kVoid,  0x3A393837}},
    {"Adapter_Read_PD_Get_Emark_PID", {0x0A33,     0,  0x0A33,     0,     0,     0,     0xFFFF, 0x4241}},
    {"Adapter_Read_PD_Get_Emark_XID", {0x0001B2E4, 0,  0x0001B2E4, 0,     0,     0,     kVoid,  0x3E3D3C3B}},
    {"Adapter_Read_PD_Get_Emark_Other", {0x11082043, 0,  0x110A2643, 0,     0,     0,     kVoid,  0x4A494847}},
    {"Adapter_Read_Standard_Watt",  {100,        0,  100,        kVoid, kVoid, kFail, 0xFFFF, 0x0100}},
    {"Adapter_Read_Sufficient_Watt", {65,         65, 65,         kVoid, kVoid, kFail, 0xFFFF, 0x0302}},
    {"Adapter_Read_ChampionPort_Watt", {300,        0,  300,        kVoid, kVoid, kFail, 0xFFFF, 0x0504}},
    {"Power_PD_Charging",           {1,          0,  1,          0,     0,     0,     1,      0}},
    // Changes the notebook, and so comes after the readings.
    {"Adapter_Read_Power_Data_Flag", {0x2D,       0,  0x2D,       0,     0,     0,     0xFF,   1}},
    {"Adapter_Clear_Power_Data_Flag", {1,          1,  1,          0,     0,     0,     1,      1}},
    {"Adapter_Clear_Charger_Data",  {1,          1,  1,          kVoid, kVoid, kVoid, 1,      1}},
};
// clang-format on

struct PartRow {
  uint32_t answer, told_length, length;
  const char* begins_with;
};
const PartRow kParts[kScenarioCount] = {
    {1, 8, 8, "VXPD5126"},
    {1, 8, 8, "VXPD5126"},
    {1, 8, 8, "VXPD5126"},
    {0, 0, 0, ""},
    {0, 0, 0, ""},
    {0, 0, 0, ""},
    {1, 255, 63, "%n%s%x%n%s\xFF\xFF"},
    {1, 1, 1, "\x02"},
};

class AdapterReadings : public EndToEnd, public testing::WithParamInterface<size_t> {};

TEST_P(AdapterReadings, AsTheScenarioSays) {
  const size_t column = GetParam();
  UseScenario(kScenarios[column]);
  const Library library;
  const Ready ready(library);
  ASSERT_EQ(ready.answer(), 1u);
  for (const NumberRow& row : kNumbers) EXPECT_EQ(library.Number(row.name), row.values[column]) << row.name;

  VexaPdIcPartNumber part;
  std::memset(&part, 0x5A, sizeof part);
  const PartRow& expected = kParts[column];
  EXPECT_EQ(library.Adapter_Read_PD_IC_PN(&part), expected.answer);
  EXPECT_EQ(part.told_length, expected.told_length);
  EXPECT_EQ(part.length, expected.length);
  EXPECT_EQ(std::strncmp(part.text, expected.begins_with, std::strlen(expected.begins_with)), 0);
  EXPECT_EQ(strnlen(part.text, sizeof part.text), expected.length);
}

INSTANTIATE_TEST_SUITE_P(Scenarios, AdapterReadings, testing::Range(size_t{0}, kScenarioCount),
                         [](const testing::TestParamInfo<size_t>& info) {
                           std::string name = kScenarios[info.param];
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

class AdapterChanges : public EndToEnd {
 protected:
  void SetUp() override {
    EndToEnd::SetUp();
    library_.emplace();
    Restart();
  }
  void TearDown() override {
    ready_.reset();
    library_.reset();
    EndToEnd::TearDown();
  }

  // Opens the driver anew, and takes the opening out of its log.
  void Restart() {
    ready_.reset();
    ready_.emplace(*library_);
    ASSERT_EQ(ready_->answer(), 1u);
    library_->GetRefCount();
    TakeDriverLog();
  }

  std::optional<Library> library_;
  std::optional<Ready> ready_;
};

TEST_F(AdapterChanges, DataFlagsAreSeenOnce) {
  EXPECT_EQ(library_->Number("Adapter_Read_Power_Data_Flag"), 0x2Du);
  EXPECT_EQ(library_->Number("Adapter_Read_Power_Data_Flag"), 0u);
  EXPECT_THAT(TakeDriverLog(),
              ElementsAre("ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 06 01 00 read -> 0x2d status 0x0",
                          "ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 86 35 2d write -> 0x00 status 0x0",
                          "ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 06 01 00 read -> 0x00 status 0x0",
                          "ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 86 35 00 write -> 0x00 status 0x0"));
}

TEST_F(AdapterChanges, ChargerDataIsClearedAndValuesAreSet) {
  EXPECT_EQ(library_->Number("Adapter_Clear_Charger_Data"), 1u);
  EXPECT_EQ(library_->Number("Adapter_Read_Charger_Interrupt"), 0u);
  EXPECT_EQ(library_->Number("Adapter_Read_Charger_Information"), 0u);
  TakeDriverLog();
  EXPECT_EQ(library_->Adapter_Set_Notify_Control(0xC3), 1u);
  EXPECT_EQ(library_->Power_Set_Monitor_PowerDropped(1), 1u);
  EXPECT_EQ(library_->Power_Set_Monitor_PowerDropped(0), 1u);
  EXPECT_THAT(TakeDriverLog(),
              ElementsAre("ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 86 36 c3 write -> 0x00 status 0x0",
                          "ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 87 09 85 write -> 0x00 status 0x0",
                          "ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 87 09 05 write -> 0x00 status 0x0"));
}

TEST_F(AdapterChanges, EachByteOfAWattageIsReadTwice) {
  EXPECT_EQ(library_->Number("Adapter_Read_ChampionPort_Watt"), 300u);
  EXPECT_THAT(TakeDriverLog(),
              ElementsAre("ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 0c 05 00 read -> 0x01 status 0x0",
                          "ec 0xdd 0c 05 00 read -> 0x01 status 0x0", "ec 0xdd 0c 04 00 read -> 0x2c status 0x0",
                          "ec 0xdd 0c 04 00 read -> 0x2c status 0x0"));
}

TEST_F(AdapterChanges, TheSystemTellsItsPowerLine) {
  EXPECT_THAT(library_->Number("Power_Read_ACDCMode"), testing::AnyOf(0u, 1u, 255u));
}

TEST_F(AdapterChanges, AnIndexBeyondTheLastPdoSendsNothing) {
  EXPECT_EQ(library_->Adapter_Read_PDO(7), kVoid);
  EXPECT_TRUE(TakeDriverLog().empty());
  EXPECT_EQ(library_->Adapter_Read_PDO(3), 0x000641F4u);
}

// ---- The firmware's ACPI device, which the notebook's driver provides ----

constexpr char kWatts[][32] = {"Adapter_Read_Standard_Watt", "Adapter_Read_Sufficient_Watt",
                               "Adapter_Read_ChampionPort_Watt"};

TEST_F(AdapterChanges, OnTheFirmwareRouteWattagesComeFromTheAcpiDevice) {
  const ArchValue arch(L"ARM64");
  const uint32_t watts[] = {100, 65, 300};
  for (size_t i = 0; i < std::size(kWatts); ++i) EXPECT_EQ(library_->Number(kWatts[i]), watts[i]) << kWatts[i];
  EXPECT_EQ(library_->Number("Adapter_Read_Contract_PDO"), kVoid);
  EXPECT_EQ(library_->Number("Power_PD_Charging"), 0u);
  EXPECT_THAT(TakeDriverLog(),
              ElementsAre("open OBXACPI handles 1", "acpi DSTS 0x001200f2 0x00000001 -> 0x00010064 length 4",
                          "open OBXACPI handles 1", "acpi DSTS 0x001200f2 0x00000002 -> 0x00010041 length 4",
                          "open OBXACPI handles 1", "acpi DSTS 0x001200f2 0x00000003 -> 0x0001012c length 4"));
}

TEST_F(AdapterChanges, ShortAnswersOfTheAcpiDeviceAreNoWattage) {
  ready_.reset();
  UseScenario("hostile-answers");
  Restart();
  const ArchValue arch(L"ARM64");
  const uint32_t watts[] = {kVoid, kVoid, 0xFFFF};
  for (size_t i = 0; i < std::size(kWatts); ++i) EXPECT_EQ(library_->Number(kWatts[i]), watts[i]) << kWatts[i];
}

TEST_F(AdapterChanges, MachinesWithTheWattageDeviceTellNone) {
  constexpr wchar_t kKey[] = L"SYSTEM\\CurrentControlSet\\Enum\\ACPI\\VEXA2025";
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr), 0);
  RegCloseKey(key);
  for (const char* name : kWatts) EXPECT_EQ(library_->Number(name), kVoid) << name;
  EXPECT_TRUE(TakeDriverLog().empty());
  RegDeleteKeyW(HKEY_LOCAL_MACHINE, kKey);
  EXPECT_EQ(library_->Number(kWatts[0]), 100u);
}

// Also scenarios that came after this test was written.
TEST_F(EndToEnd, EveryScenarioIsSurvivedByTheAdapterExports) {
  const Library library;
  for (const std::string& scenario : AllScenarios()) {
    SCOPED_TRACE(scenario);
    UseScenario(scenario);
    const Ready ready(library);
    for (const NumberRow& row : kNumbers) library.Number(row.name);
    VexaPdIcPartNumber part;
    library.Adapter_Read_PD_IC_PN(&part);
    EXPECT_LT(part.length, sizeof part.text);
    EXPECT_EQ(part.text[part.length], '\0');
  }
}

}  // namespace
}  // namespace vexa::test
