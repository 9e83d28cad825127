// The scenarios that come with the product: they compile, and their numbers fit together.
#include <filesystem>
#include <fstream>
#include <iterator>

#include "firmware/methods.h"
#include "firmware/section.h"
#include "test_notebook.h"

namespace scenario {
namespace {

std::string ReadWhole(const std::filesystem::path& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file.good()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

TestNotebook Shipped(const std::string& name) {
  return TestNotebook(ReadWhole(std::filesystem::path(SCENARIO_FOLDER) / name));
}

TEST(Shipped, AllCompile) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(SCENARIO_FOLDER)) {
    SCOPED_TRACE(entry.path().filename().string());
    TestNotebook notebook(ReadWhole(entry.path()));
    ++count;
  }
  EXPECT_GE(count, 8);
}

std::string FileAsName(const testing::TestParamInfo<const char*>& info) {
  std::string name = info.param;
  std::replace_if(name.begin(), name.end(), [](char c) { return !std::isalnum(c); }, '_');
  return name;
}

class Battery : public testing::TestWithParam<const char*> {};

TEST_P(Battery, NumbersFitTogether) {
  TestNotebook notebook = Shipped(GetParam());
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
  const bool on_ac = notebook.Register(1, 0x00).byte & 1;
  const bool discharging = notebook.Word(1, 0x50) & 0x40;
  const bool negative = notebook.Word(1, 0x38) & 0x8000;
  EXPECT_EQ(discharging, !on_ac);
  EXPECT_EQ(discharging, negative);
}

INSTANTIATE_TEST_SUITE_P(Shipped, Battery, testing::Values("healthy-x64.json", "worn-battery.json", "old-table.json"),
                         FileAsName);

// ---- The adapter: its PDOs by the USB Power Delivery standard ----

uint32_t Dword(TestNotebook& notebook, uint8_t group, uint8_t offset) {
  return static_cast<uint32_t>(notebook.Word(group, offset)) |
         static_cast<uint32_t>(notebook.Word(group, static_cast<uint8_t>(offset + 2))) << 16;
}

uint32_t Bits(uint32_t word, int high, int low) { return word >> low & ((2u << (high - low)) - 1); }

enum class Supply { kNone, kFixed, kProgrammable, kExtendedAdjustable, kAdjustable, kOther };

struct Offer {
  Supply supply;
  uint32_t least_mv, most_mv, most_mw;
};

Offer Decode(uint32_t pdo) {
  if (pdo == 0) return {Supply::kNone, 0, 0, 0};
  if (Bits(pdo, 31, 30) == 0) {
    const uint32_t mv = 50 * Bits(pdo, 19, 10);
    return {Supply::kFixed, mv, mv, mv / 100 * Bits(pdo, 9, 0)};
  }
  switch (Bits(pdo, 31, 28)) {
    case 0xC: {
      const uint32_t most_mv = 100 * Bits(pdo, 24, 17);
      return {Supply::kProgrammable, 100 * Bits(pdo, 15, 8), most_mv, most_mv / 100 * 5 * Bits(pdo, 6, 0)};
    }
    case 0xD:
      return {Supply::kExtendedAdjustable, 100 * Bits(pdo, 15, 8), 100 * Bits(pdo, 25, 17), 1000 * Bits(pdo, 7, 0)};
    case 0xE: return {Supply::kAdjustable, 9000, 20000, 200 * Bits(pdo, 9, 0)};
    default: return {Supply::kOther, 0, 0, 0};
  }
}

class Adapter : public testing::TestWithParam<const char*> {};

TEST_P(Adapter, NumbersFitTogether) {
  TestNotebook notebook = Shipped(GetParam());
  const bool on_ac = notebook.Register(1, 0x00).byte & 1;
  const Offer contract = Decode(Dword(notebook, 6, 0x1E));
  EXPECT_EQ(contract.supply != Supply::kNone, on_ac);
  EXPECT_EQ(contract.most_mw, 1000 * Dword(notebook, 6, 0x22));
  // The cable's marker: type and current by its vendor information words.
  const uint32_t cable = Dword(notebook, 6, 0x47);
  EXPECT_EQ(Bits(Dword(notebook, 6, 0x37), 29, 27), on_ac ? 3u : 0u) << "passive cable";
  EXPECT_EQ(Bits(cable, 6, 5), on_ac ? 2u : 0u) << "5 A";
  EXPECT_EQ(Bits(cable, 17, 17) == 1, contract.most_mv > 20000) << "extended power range";
  EXPECT_EQ(notebook.Register(4, 0x08).byte != 0, on_ac);
  std::string part_number;
  for (uint8_t offset = 2; notebook.Register(5, offset).byte != 0; ++offset) {
    part_number += static_cast<char>(notebook.Register(5, offset).byte);
  }
  EXPECT_EQ(notebook.Register(5, 0x01).byte, static_cast<int>(part_number.size()));

  uint32_t last_fixed_mv = 0;
  for (int i = 0; i < 7; ++i) {
    SCOPED_TRACE(i + 1);
    const Offer offer = Decode(Dword(notebook, 6, static_cast<uint8_t>(2 + 4 * i)));
    EXPECT_NE(offer.supply, Supply::kOther);
    EXPECT_LE(offer.least_mv, offer.most_mv);
    EXPECT_LE(offer.most_mv, 21000u);
    EXPECT_LE(offer.most_mw, 105000u);
    if (i == 0) {
      EXPECT_EQ(offer.most_mv, on_ac ? 5000u : 0u);
    }
    if (offer.supply == Supply::kFixed) {
      EXPECT_GT(offer.most_mv, last_fixed_mv);
      last_fixed_mv = offer.most_mv;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Shipped, Adapter, testing::Values("healthy-x64.json", "no-battery.json", "worn-battery.json"),
                         FileAsName);

TEST(Shipped, TheHealthyAdapterShowsEachKindOfSupply) {
  TestNotebook notebook = Shipped("healthy-x64.json");
  std::vector<Supply> supplies;
  for (int i = 0; i < 7; ++i) supplies.push_back(Decode(Dword(notebook, 6, static_cast<uint8_t>(2 + 4 * i))).supply);
  const std::vector<Supply> expected{Supply::kFixed,        Supply::kFixed,      Supply::kFixed, Supply::kFixed,
                                     Supply::kProgrammable, Supply::kAdjustable, Supply::kNone};
  EXPECT_EQ(supplies, expected);
  TestNotebook extended = Shipped("no-battery.json");
  const Offer contract = Decode(Dword(extended, 6, 0x1E));
  EXPECT_EQ(contract.supply, Supply::kExtendedAdjustable);
  EXPECT_EQ(contract.least_mv, 15000u);
  EXPECT_EQ(contract.most_mv, 28000u);
}

// Clearing by a mask clears these flags alone; the firmware's ACPI device tells the same wattages as the EC.
TEST(Shipped, TheAdapterTakesWritesAndBothRoutesTellItsWattages) {
  TestNotebook notebook = Shipped("healthy-x64.json");
  EXPECT_EQ(notebook.Register(6, 0x01).byte, 0x2D);
  notebook.Set(6, 0x35, 0x0C);
  EXPECT_EQ(notebook.Register(6, 0x01).byte, 0x21);
  notebook.Set(6, 0x01, 0);
  EXPECT_EQ(notebook.Register(6, 0x01).byte, 0);
  for (const uint8_t offset : {0x27, 0x28, 0x36}) {
    notebook.Set(6, offset, 0x5A);
    EXPECT_EQ(notebook.Register(6, offset).byte, 0x5A) << int{offset};
  }
  notebook.Set(7, 0x09, 0x85);
  EXPECT_EQ(notebook.Register(7, 0x09).byte, 0x85);
  for (uint8_t i = 0; i < 3; ++i) {
    const ControlAnswer answer = notebook.Acpi("DSTS", {0x001200F2, i + 1u});
    ASSERT_EQ(answer.bytes.size(), 4u);
    uint32_t word;
    std::memcpy(&word, answer.bytes.data(), sizeof word);
    EXPECT_EQ(word, 0x10000u | static_cast<uint32_t>(notebook.Word(12, static_cast<uint8_t>(2 * i)))) << int{i};
  }
}

// The firmware's route gives the same battery as the driver's.
TEST(Shipped, BothHealthyNotebooksHaveOneBattery) {
  TestNotebook x64 = Shipped("healthy-x64.json");
  Faults faults;
  const std::string text = ReadWhole(std::filesystem::path(SCENARIO_FOLDER) / "healthy-arm64.json");
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
    EXPECT_EQ(read("battery_read_command_by_index", 0x20, i + 1), x64.Register(1, 0x10 + i).byte) << int{i};
  }
  x64.Set(2, 0x32, 0);
  EXPECT_EQ(read("ec_read_command_byte", 9, 1) * 256 + read("ec_read_command_byte", 8, 1), x64.Word(2, 0x33));
}

TEST(Shipped, TheSilentEcNeverAnswers) {
  TestNotebook notebook = Shipped("silent-ec.json");
  for (int command = 0; command < 256; ++command) {
    for (size_t count = 0; count <= 8; ++count) {
      const auto code = static_cast<uint8_t>(command);
      EXPECT_NE(notebook.Read(code, std::vector<uint8_t>(count)).status, 0u) << command;
      EXPECT_NE(notebook.Write(code, std::vector<uint8_t>(count, 0x81)).status, 0u) << command;
    }
  }
}

TEST(Shipped, TheEchoTellsOffsets) {
  TestNotebook notebook = Shipped("offset-echo.json");
  for (uint8_t group : {1, 2, 3, 4, 5, 6, 7, 8, 12}) {
    for (int offset = 0; offset < 256; ++offset) {
      ASSERT_EQ(notebook.Register(group, static_cast<uint8_t>(offset)), (EcAnswer{0, offset})) << int{group};
    }
  }
  EXPECT_EQ(notebook.Read(0xBB, {0x50}).byte, 28);
  EXPECT_EQ(notebook.Read(0xBB, {0x51}).byte, 0x51);
}

}  // namespace
}  // namespace scenario
