// The catalogue against the EC's register list.
#include "ec/catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "ec/table_row.h"

namespace vexa::test {
namespace {

std::vector<EcCommandTable> AllTables() {
  std::vector<EcCommandTable> tables{kEcInfoCommands, kBatteryPowerCommands, kThermalCommands,
                                     kGpioCommands,   kOtherCommands,        kConsumerCommands};
  for (uint8_t number = 3; number <= 6; ++number) tables.push_back(ItemSubTable(number));
  return tables;
}

// FNV-1a, 64 bits, over "name word version\n" of every row, the word in hexadecimal of eight digits.
uint64_t DigestOf(const EcCommandTable& table) {
  uint64_t digest = 0xCBF29CE484222325;
  for (const EcCommandEntry& row : table) {
    char word[16];
    std::snprintf(word, sizeof word, " %08X %u\n", row.word, row.min_version);
    for (const char c : std::string(row.name) + word) {
      digest = (digest ^ static_cast<uint8_t>(c)) * 0x100000001B3;
    }
  }
  return digest;
}

// The digests were worked out from the EC's register list by another program: any slip in any row shows.
TEST(Catalogue, EveryRowInWalkingOrder) {
  using testing::Pair;
  std::vector<std::pair<std::string, uint64_t>> tables;
  for (const EcCommandTable& table : AllTables()) tables.emplace_back(table.front().name, DigestOf(table));
  EXPECT_THAT(tables,
              testing::ElementsAre(
                  Pair("EC_Info_CMD", 0x94629712728F1208), Pair("Bat_Power_CMD", 0x51628BF9BD282DA3),
                  Pair("Thermal_CMD", 0x583BBCBC2D3FA1B6), Pair("GPIO_CMD", 0xB075FDA8256161A8),
                  Pair("Other_CMD", 0x5243DBD37DF68ABF), Pair("Consumer_CMD", 0x349F9A9A0C4CFAE9),
                  Pair("BoardSensorInfo_Items", 0x5C87E2D45418A52F), Pair("VRSensorInfo_Items", 0x158460B2714CF804),
                  Pair("FanInfo_Items", 0xBA9179C52CDE98CA), Pair("VRSensorInfo_Items", 0x13E9F64A621B3FED)));
  for (const int number : {0, 1, 2, 7, 8, 255}) EXPECT_TRUE(ItemSubTable(static_cast<uint8_t>(number)).empty());
}

TEST(Catalogue, RowsDecode) {
  const struct {
    EcCommandTable table;
    size_t row;
    const char* name;
    uint8_t command, group, offset, length, min_version;
  } rows[] = {
      {kEcInfoCommands, 6, "RawDataVersion", 0xBB, 0x53, 0x53, 1, 17},
      {kBatteryPowerCommands, 5, "RSOC", 0xDD, 1, 0x30, 2, 1},
      {kThermalCommands, 13, "FanInfo", 0xFF, 5, 0x30, 0, 1},
      {ItemSubTable(6), 2, "Index", 0xDD, 0x88, 0x01, 1, 19},
  };
  for (const auto& row : rows) {
    const EcCommandEntry& entry = row.table[row.row];
    EXPECT_EQ(entry.name, row.name);
    EXPECT_EQ(entry.command(), row.command) << row.name;
    EXPECT_EQ(entry.group(), row.group) << row.name;
    EXPECT_EQ(entry.offset(), row.offset) << row.name;
    EXPECT_EQ(entry.length(), row.length) << row.name;
    EXPECT_EQ(entry.min_version, row.min_version) << row.name;
  }
}

TEST(Catalogue, VersionsCompareAsSignedNumbers) {
  const EcCommandEntry& row = kBatteryPowerCommands[22];
  EXPECT_FALSE(IsSupported(row, 21));
  EXPECT_TRUE(IsSupported(row, 22));
  EXPECT_FALSE(IsSupported(row, -1));
  EXPECT_TRUE(IsSupported(row, 0x7FFFFFFF));
}

TEST(Catalogue, ConsumerTableByProject) {
  EXPECT_TRUE(HasConsumerTable(0x00));
  EXPECT_TRUE(HasConsumerTable(0x8F));
  for (const int bit : {0x10, 0x20, 0x40}) EXPECT_FALSE(HasConsumerTable(static_cast<uint8_t>(bit)));
}

TEST(TableRowFold, ShiftsByTheStepAndNeverOutOfRange) {
  EXPECT_EQ(FoldTableByte(0, 0, 0xAB), 0xABu);
  EXPECT_EQ(FoldTableByte(0xAB, 1, 0xCD), 0xABCDu);
  EXPECT_EQ(FoldTableByte(0xABCD, 2, 0xEF), 0xABCD00EFu);
  EXPECT_EQ(FoldTableByte(0xABCD00EF, 3, 0x12), 0xEF000012u);
  for (uint32_t step = 4; step < 256; ++step) EXPECT_EQ(FoldTableByte(0xFFFFFFFF, step, 0x34), 0x34u);
  EXPECT_EQ(StepOffset(0x30, 2, 0), 0x31);
  EXPECT_EQ(StepOffset(0xFF, 2, 0), 0x00);
}

}  // namespace
}  // namespace vexa::test
