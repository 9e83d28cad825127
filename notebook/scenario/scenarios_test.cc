// The scenarios that come with the product: they compile, and their numbers fit together.
#include <filesystem>

#include "firmware/methods.h"
#include "firmware/section.h"
#include "test_cases.h"
#include "test_notebook.h"

namespace scenario {
namespace {

TestNotebook Shipped(const std::string& name) {
  return TestNotebook(ReadWhole(std::string(SCENARIO_FOLDER "/") + name));
}

TEST(Shipped, AllCompile) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(SCENARIO_FOLDER)) {
    SCOPED_TRACE(entry.path().filename().string());
    TestNotebook notebook(ReadWhole(entry.path().string()));
    ++count;
  }
  EXPECT_GE(count, 8);
}

// What a battery tells of itself, with the charge that it has and the power line.
void ExpectNumbersFit(TestNotebook& notebook) {
  const int remaining = notebook.Word(1, 0x40);
  const int full = notebook.Word(1, 0x42);
  const int design = notebook.Word(1, 0x2A);
  EXPECT_LE(remaining, full);
  EXPECT_LE(full, design);
  EXPECT_EQ(notebook.Word(1, 0x30), (200 * remaining + full) / (2 * full));
  int cells = 0;
  for (int offset = 0x48; offset <= 0x4E; offset += 2) {
    const int cell = notebook.Word(1, static_cast<uint8_t>(offset));
    EXPECT_GT(cell, 3000);
    EXPECT_LT(cell, 4400);
    cells += cell;
  }
  EXPECT_EQ(cells, notebook.Word(1, 0x36));
  const double celsius = notebook.Word(1, 0x34) / 10.0 - 273.15;
  EXPECT_GT(celsius, 0);
  EXPECT_LT(celsius, 60);
  const int date = notebook.Word(1, 0x54);
  const int month = date / 32 % 16;
  EXPECT_TRUE(month >= 1 && month <= 12 && date % 32 >= 1 && 1980 + date / 512 > 2015 && 1980 + date / 512 < 2030);
  const bool on_ac = notebook.Byte(1, 0x00) & 1;
  const bool discharging = notebook.Word(1, 0x50) & 0x40;
  const bool negative = notebook.Word(1, 0x38) & 0x8000;
  EXPECT_EQ(discharging, !on_ac);
  EXPECT_EQ(discharging, negative);
}

TEST(Shipped, NumbersFitTogether) {
  for (const char* name : {"healthy-x64.json", "worn-battery.json", "old-table.json"}) {
    SCOPED_TRACE(name);
    TestNotebook notebook = Shipped(name);
    ExpectNumbersFit(notebook);
  }
}

// The firmware's route gives the same battery as the driver's.
TEST(Shipped, BothHealthyNotebooksHaveOneBattery) {
  TestNotebook x64 = Shipped("healthy-x64.json");
  Faults faults;
  const std::string text = ReadWhole(SCENARIO_FOLDER "/healthy-arm64.json");
  const std::optional<firmware::Model> arm64 = firmware::ReadFirmwareScenario(text, faults);
  ASSERT_TRUE(arm64 && arm64->ec);
  firmware::State state;
  const auto read = [&](std::string_view method, uint64_t first, uint64_t second) {
    return firmware::ExecuteMethod(*arm64, state, firmware::kEcClass, method, {{"", first}, {"", second}});
  };
  constexpr std::pair<int, uint8_t> kGaugeAndOffset[] = {
      {0x08, 0x34}, {0x09, 0x36}, {0x0A, 0x38}, {0x0D, 0x30}, {0x0F, 0x40}, {0x10, 0x42}, {0x15, 0x3E}, {0x17, 0x2E},
      {0x19, 0x2C}, {0x1B, 0x54}, {0x1C, 0x28}, {0x3C, 0x4E}, {0x3D, 0x4C}, {0x3E, 0x4A}, {0x3F, 0x48}, {0x99, 0x58},
  };
  for (const auto& [gauge, offset] : kGaugeAndOffset) {
    EXPECT_EQ(read("battery_read_command_byte", gauge, 2), x64.Word(1, offset)) << gauge;
  }
  for (uint8_t i = 0; i < 11; ++i) {
    EXPECT_EQ(read("battery_read_command_by_index", 0x20, i + 1), x64.Byte(1, 0x10 + i)) << int{i};
  }
  EXPECT_EQ(read("ec_read_command_byte", 9, 1) * 256 + read("ec_read_command_byte", 8, 1), x64.Word(2, 0x33));
}

}  // namespace
}  // namespace scenario
