// The catalogue against values written out from the EC's register list, decoded once more here.
#include "ec/catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "ec/table_row.h"

namespace vexa::test {
namespace {

std::vector<EcCommandTable> AllTables() {
  std::vector<EcCommandTable> tables{kEcInfoCommands, kBatteryPowerCommands, kThermalCommands,
                                     kGpioCommands,   kOtherCommands,        kConsumerCommands};
  for (uint8_t number = 3; number <= 6; ++number) tables.push_back(ItemSubTable(number));
  return tables;
}

TEST(Catalogue, TablesInWalkingOrder) {
  std::vector<std::pair<std::string, size_t>> tables;
  for (const EcCommandTable& table : AllTables()) tables.emplace_back(table.front().name, table.size());
  EXPECT_THAT(tables, testing::ElementsAre(std::pair("EC_Info_CMD", 9), std::pair("Bat_Power_CMD", 24),
                                           std::pair("Thermal_CMD", 14), std::pair("GPIO_CMD", 3),
                                           std::pair("Other_CMD", 8), std::pair("Consumer_CMD", 17),
                                           std::pair("BoardSensorInfo_Items", 5), std::pair("VRSensorInfo_Items", 5),
                                           std::pair("FanInfo_Items", 5), std::pair("VRSensorInfo_Items", 12)));
  for (const int number : {0, 1, 2, 7, 8, 255}) EXPECT_TRUE(ItemSubTable(static_cast<uint8_t>(number)).empty());
}

// Every word of the catalogue added up per table, worked out by hand from the list: any slip in any row shows.
TEST(Catalogue, WordSums) {
  std::map<std::string, uint64_t> sums;
  std::map<std::string, unsigned> versions;
  for (const EcCommandTable& table : AllTables()) {
    const std::string key = std::string(table.front().name) + std::to_string(table.size());
    for (const EcCommandEntry& row : table) {
      sums[key] += row.word;
      versions[key] += row.min_version;
    }
  }
  EXPECT_EQ(sums["EC_Info_CMD9"], 0x015050BBull + 0x011010BB + 0x011111BB + 0x015151BB + 0x015252BB + 0x015353BB +
                                      0x001200FF + 0x002001FF + 9);
  EXPECT_EQ(versions["EC_Info_CMD9"], 38u);
  EXPECT_EQ(versions["Bat_Power_CMD24"], 51u);
  EXPECT_EQ(versions["Thermal_CMD14"], 73u);
  EXPECT_EQ(versions["GPIO_CMD3"], 38u);
  EXPECT_EQ(versions["Other_CMD8"], 80u);
  EXPECT_EQ(versions["Consumer_CMD17"], 363u);
}

TEST(Catalogue, RowsDecode) {
  const struct {
    EcCommandTable table;
    size_t row;
    const char* name;
    uint8_t command, group, offset, length, min_version;
  } rows[] = {
      {kEcInfoCommands, 1, "HealthyTableVersion", 0xBB, 0x50, 0x50, 1, 1},
      {kEcInfoCommands, 6, "RawDataVersion", 0xBB, 0x53, 0x53, 1, 17},
      {kEcInfoCommands, 8, "ProjectFWRevision", 0xFF, 1, 0x20, 0, 1},
      {kBatteryPowerCommands, 5, "RSOC", 0xDD, 1, 0x30, 2, 1},
      {kBatteryPowerCommands, 22, "VEXABatteryStatus", 0xDD, 1, 0x58, 2, 22},
      {kBatteryPowerCommands, 23, "Manuf_name", 0xFF, 2, 0x10, 0, 1},
      {kThermalCommands, 9, "CPUTDP", 0xDD, 2, 0x38, 1, 10},
      {kThermalCommands, 13, "FanInfo", 0xFF, 5, 0x30, 0, 1},
      {kGpioCommands, 2, "DGPU_LIMIT", 0xDD, 3, 1, 1, 19},
      {kOtherCommands, 5, "DCJackAdpaterIn", 0xDD, 4, 0x0C, 1, 12},
      {kConsumerCommands, 14, "Power Limit Value", 0xFF, 7, 0x28, 0, 19},
      {kConsumerCommands, 16, "Refresh Model Year", 0xDD, 8, 0x2D, 1, 28},
      {ItemSubTable(3), 2, "Index", 0xDD, 0x82, 0x11, 1, 1},
      {ItemSubTable(4), 3, "Status", 0xDD, 2, 0x09, 1, 23},
      {ItemSubTable(5), 3, "FanRpm", 0xDD, 2, 0x33, 2, 1},
      {ItemSubTable(6), 2, "Index", 0xDD, 0x88, 0x01, 1, 19},
      {ItemSubTable(6), 11, "GPUD2ReleasePoint", 0xDD, 8, 0x0A, 1, 19},
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

TEST(Catalogue, NoRegisterTwiceInATable) {
  for (const EcCommandTable& table : AllTables()) {
    std::set<uint32_t> places;
    for (const EcCommandEntry& row : table.subspan(1)) {
      for (uint32_t i = 0; i < std::max<uint32_t>(row.length(), 1); ++i) {
        EXPECT_TRUE(places.insert((row.word & 0xFFFF) << 8 | (row.offset() + i)).second) << row.name;
      }
    }
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
