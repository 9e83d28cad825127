// Every rate against the list in tests/data/wlan_rates.csv, which was worked out apart from the library.
#include "radio/rate_tables.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace vexa::test {
namespace {

struct Row {
  std::string phy, interval;
  uint8_t streams, mcs;
  int width_mhz;
  bool allowed;
  uint16_t half_units;
};

std::vector<Row> ReadRows() {
  std::ifstream file(VEXA_TEST_DATA "/wlan_rates.csv");
  std::vector<Row> rows;
  std::string line;
  std::getline(file, line);
  EXPECT_EQ(line, "phy,streams,mcs,width_mhz,guard_interval,allowed,mbps,half_units_rounded,mbps_table");
  while (std::getline(file, line)) {
    std::vector<std::string> cells;
    std::istringstream stream(line);
    for (std::string cell; std::getline(stream, cell, ',');) cells.push_back(cell);
    const auto number = [&](size_t cell) { return std::stoi(cells.at(cell)); };
    const bool is_ht = cells.at(0) == "HT";
    // HT counts on from stream to stream: 8 to 15 for two.
    if (is_ht) EXPECT_EQ(number(2) / 8 + 1, number(1)) << line;
    rows.push_back({.phy = cells.at(0),
                    .interval = cells.at(4),
                    .streams = static_cast<uint8_t>(number(1)),
                    .mcs = static_cast<uint8_t>(is_ht ? number(2) % 8 : number(2)),
                    .width_mhz = number(3),
                    .allowed = number(5) == 1,
                    .half_units = static_cast<uint16_t>(number(7))});
  }
  return rows;
}

ChannelWidth Width(int mhz) {
  return std::map<int, ChannelWidth>{
      {20, ChannelWidth::k20}, {40, ChannelWidth::k40}, {80, ChannelWidth::k80}, {160, ChannelWidth::k160}}
      .at(mhz);
}

uint16_t LibraryRate(const Row& row) {
  if (row.phy == "HE") {
    const std::map<std::string, HeGuardInterval> intervals = {
        {"0.8us", HeGuardInterval::k0_8us}, {"1.6us", HeGuardInterval::k1_6us}, {"3.2us", HeGuardInterval::k3_2us}};
    return HeRate(row.streams, Width(row.width_mhz), intervals.at(row.interval), row.mcs);
  }
  const GuardInterval interval = row.interval == "short" ? GuardInterval::k0_4us : GuardInterval::k0_8us;
  return VhtRate(row.streams, Width(row.width_mhz), interval, row.mcs);
}

std::string Name(const Row& row) {
  return row.phy + " " + std::to_string(row.width_mhz) + " MHz " + row.interval + " MCS " + std::to_string(row.mcs);
}

// The entries that differ from the standard, and what stands there.
const std::map<std::string, uint16_t> kKept = {{"HE 20 MHz 0.8us MCS 5", 178},
                                               {"HE 40 MHz 0.8us MCS 3", 178},
                                               {"HE 80 MHz 0.8us MCS 4", 512},
                                               {"HE 160 MHz 0.8us MCS 2", 512}};

TEST(RateTables, EveryRateOfTheStandardAndTheKeptEntriesByName) {
  std::map<std::string, int> checked;
  std::set<std::string> kept;
  for (const Row& row : ReadRows()) {
    if (row.phy == "HE" && row.streams > 1) continue;
    ++checked[row.phy];
    uint16_t expected = row.allowed ? row.half_units : 0;
    if (const auto entry = kKept.find(Name(row)); entry != kKept.end()) {
      EXPECT_NE(expected, entry->second) << "not odd at all: " << Name(row);
      expected = entry->second;
      kept.insert(Name(row));
    }
    EXPECT_EQ(LibraryRate(row), expected) << Name(row) << " streams " << int{row.streams};
  }
  EXPECT_EQ(checked, (std::map<std::string, int>{{"HT", 128}, {"VHT", 320}, {"HE", 144}}));
  EXPECT_EQ(kept.size(), kKept.size());
}

TEST(RateTables, MoreHeStreamsAreMultiplesTheKeptEntriesIncluded) {
  int checked = 0;
  for (Row row : ReadRows()) {
    if (row.phy != "HE" || row.streams == 1) continue;
    const uint16_t rate = LibraryRate(row);
    const int streams = row.streams;
    row.streams = 1;
    EXPECT_EQ(rate, streams * LibraryRate(row)) << Name(row) << " streams " << streams;
    ++checked;
  }
  EXPECT_EQ(checked, 432);
  EXPECT_EQ(HeRate(3, ChannelWidth::k20, HeGuardInterval::k0_8us, 5), 534);
}

TEST(RateTables, NothingOutsideTheTables) {
  for (int mcs = 0; mcs < 256; ++mcs) {
    for (const int streams : {0, 5, 8, 255}) {
      EXPECT_EQ(
          HeRate(static_cast<uint8_t>(streams), ChannelWidth::k160, HeGuardInterval::k3_2us, static_cast<uint8_t>(mcs)),
          0);
      EXPECT_EQ(
          VhtRate(static_cast<uint8_t>(streams), ChannelWidth::k160, GuardInterval::k0_4us, static_cast<uint8_t>(mcs)),
          0);
    }
    if (mcs >= 12) {
      EXPECT_EQ(HeRate(4, ChannelWidth::k160, HeGuardInterval::k0_8us, static_cast<uint8_t>(mcs)), 0);
    }
    if (mcs >= 10) {
      EXPECT_EQ(VhtRate(4, ChannelWidth::k160, GuardInterval::k0_4us, static_cast<uint8_t>(mcs)), 0);
    }
  }
}

}  // namespace
}  // namespace vexa::test
