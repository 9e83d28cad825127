// Records that come from the WLAN service and the vendors' libraries: lists, readings, names.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "radio/antenna_records.h"
#include "radio/bss_list.h"
#include "radio/wifi_names.h"
#include "tests/support/beacon.h"

namespace vexa::test {
namespace {

using namespace beacon;
using testing::ElementsAre;

constexpr MacAddress kHome = {0x02, 0x11, 0x22, 0x33, 0x44, 0x55};
constexpr MacAddress kCafe = {0x0A, 0xBC, 0xDE, 0xF0, 0x01, 0x02};

struct Point {
  ByteText ssid;
  uint32_t ssid_length;
  MacAddress bssid;
  int32_t rssi_dbm;
  uint32_t frequency_khz, offset, size;
};

// Of exactly the list's size, so that the sanitizer sees what is read behind it.
std::vector<uint8_t> List(uint32_t count, const std::vector<Point>& points, const ByteText& tail = {}) {
  ByteText list = Little(8 + points.size() * 360 + tail.size(), 4) + Little(count, 4);
  for (const Point& point : points) {
    ByteText ssid = point.ssid;
    ssid.resize(32);
    list += Little(point.ssid_length, 4) + ssid + Little(7, 4) +
            ByteText(reinterpret_cast<const char*>(point.bssid.data()), 6) + Zeros(2) + Little(1, 4) + Little(10, 4) +
            Little(static_cast<uint32_t>(point.rssi_dbm), 4) + Little(80, 4) + Zeros(28) +
            Little(point.frequency_khz, 4) + Zeros(256) + Little(point.offset, 4) + Little(point.size, 4);
  }
  list += tail;
  return {list.begin(), list.end()};
}

std::string Text(Bytes bytes) { return {bytes.begin(), bytes.end()}; }

TEST(BssList, FieldsOfEachEntry) {
  const auto bytes = List(2,
                          {{"home", 4, kHome, -55, 2'412'000, 720, 3},
                           {ByteText("\0\xFF\xFE", 3) + ByteText(29, 'x'), 32, kCafe, -200, 5'300'000, 363, 2}},
                          "abcde");
  const BssList list(bytes);
  ASSERT_EQ(list.size(), 2u);
  EXPECT_EQ(Text(list[0].ssid), "home");
  EXPECT_EQ(list[0].bssid, kHome);
  EXPECT_EQ(list[0].rssi_dbm, -55);
  EXPECT_EQ(list[0].frequency_khz, 2'412'000u);
  EXPECT_EQ(Text(list[0].elements), "abc");
  EXPECT_EQ(list[1].ssid.size(), 32u);
  EXPECT_EQ(list[1].ssid[1], 0xFF);
  EXPECT_EQ(list[1].rssi_dbm, -200);
  EXPECT_EQ(Text(list[1].elements), "de");
}

TEST(BssList, CountsThatLie) {
  const Point point{"home", 4, kHome, -55, 2'412'000, 360, 0};
  for (const uint32_t count : {3u, 0x7FFFFFFFu, 0xFFFFFFFFu})
    EXPECT_EQ(BssList(List(count, {point, point})).size(), 2u);
  EXPECT_EQ(BssList(List(1, {point, point})).size(), 1u);
  EXPECT_EQ(BssList(List(0, {point})).size(), 0u);
  // Cut after every byte: an entry counts from its last byte on.
  const auto whole = List(2, {point, point});
  for (size_t size = 0; size <= whole.size(); ++size) {
    const std::vector<uint8_t> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(BssList(cut).size(), size < 368 ? 0u : size < 728 ? 1u : 2u) << size;
  }
}

TEST(BssList, OffsetsAndSizesThatLie) {
  // clang-format off: side by side
  const struct {
    uint32_t offset, size;
    const char* elements;
  } places[] = {
      {360, 3, "abc"}, {360, 4, "abc"}, {360, 0xFFFFFFFF, "abc"}, {361, 2, "bc"}, {363, 0, ""}, {363, 1, ""},
      {364, 0, ""}, {364, 1, ""}, {0xFFFFFFFF, 1, ""}, {0xFFFFFFFF, 0xFFFFFFFF, ""}, {0xFFFFFF00, 0x200, ""},
      {359, 3, ""}, {0, 3, ""},
  };
  // clang-format on
  for (const auto& place : places) {
    const auto bytes = List(1, {{"home", 4, kHome, -55, 2'412'000, place.offset, place.size}}, "abc");
    EXPECT_EQ(Text(BssList(bytes)[0].elements), place.elements) << place.offset << " " << place.size;
  }
  for (const uint32_t length : {33u, 0xFFFFFFFFu}) {
    EXPECT_EQ(BssList(List(1, {{ByteText(32, 'n'), length, kHome, 0, 0, 0, 0}}))[0].ssid.size(), 32u);
  }
}

TEST(BssList, FindsTheFirstWithNameAndAddress) {
  const auto bytes = List(5, {{"home", 4, kCafe, -1, 0, 0, 0},
                              {"cafe", 4, kHome, -2, 0, 0, 0},
                              {"homer", 5, kHome, -3, 0, 0, 0},
                              {"home", 4, kHome, -4, 0, 0, 0},
                              {"home", 4, kHome, -5, 0, 0, 0}});
  const BssList list(bytes);
  const auto name = [](std::string_view text) {
    return Bytes(reinterpret_cast<const uint8_t*>(text.data()), text.size());
  };
  EXPECT_EQ(list.Find(name("home"), kHome)->rssi_dbm, -4);
  EXPECT_EQ(list.Find(name("home"), kCafe)->rssi_dbm, -1);
  EXPECT_FALSE(list.Find(name("hom"), kHome));
  EXPECT_FALSE(list.Find(name(""), kHome));
  EXPECT_FALSE(list.Find(name("cafe"), kCafe));
}

std::vector<uint8_t> ToVector(const ByteText& text) { return {text.begin(), text.end()}; }

std::string Show(const AntennaReadings& readings) {
  const auto text = [](const std::optional<int32_t>& dbm) { return dbm ? std::to_string(*dbm) : "none"; };
  return text(readings.main_dbm) + ":" + text(readings.aux_dbm);
}

TEST(AntennaRecords, AdapterList) {
  const AdapterId wanted = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
  const ByteText id(wanted.begin(), wanted.end());
  const auto holds = [&](const ByteText& list) { return AdapterListHolds(ToVector(list), wanted); };
  EXPECT_TRUE(holds(Little(1, 4) + id));
  EXPECT_TRUE(holds(Little(2, 4) + Zeros(16) + id));
  EXPECT_TRUE(holds(Little(0xFFFFFFFF, 4) + Zeros(16) + id));
  EXPECT_FALSE(holds(Little(1, 4) + Zeros(16) + id));
  EXPECT_FALSE(holds(Little(0, 4) + id));
  EXPECT_FALSE(holds(Little(1, 4) + id.substr(0, 15)));
  EXPECT_FALSE(holds(Little(1, 4) + '\x09' + id.substr(1)));
  for (size_t size = 0; size <= 4; ++size) EXPECT_FALSE(holds(Little(1, 4).substr(0, size)));
}

TEST(AntennaRecords, BssStatisticsOfEveryLength) {
  const ByteText address(kHome.begin(), kHome.end());
  const auto dbm = [](int number) { return Little(static_cast<uint32_t>(number), 4); };
  const ByteText record = address + Little(2, 2) + dbm(-52) + dbm(-58);
  for (size_t size = 0; size <= record.size(); ++size) {
    const char* expected = size < 12 ? "none:none" : size < 16 ? "-52:none" : "-52:-58";
    EXPECT_EQ(Show(ReadBssStatistics(ToVector(record.substr(0, size)), kHome)), expected) << size;
  }
  EXPECT_EQ(Show(ReadBssStatistics(ToVector(record), kCafe)), "none:none");
  EXPECT_EQ(Show(ReadBssStatistics(ToVector(address + Little(1, 2) + dbm(-52) + dbm(-58)), kHome)), "-52:none");
  EXPECT_EQ(Show(ReadBssStatistics(ToVector(address + Little(0, 2) + dbm(-52) + dbm(-58)), kHome)), "none:none");
  EXPECT_EQ(Show(ReadBssStatistics(ToVector(address + Little(0xFFFF, 2) + dbm(0) + dbm(-58)), kHome)), "none:-58");
}

TEST(AntennaRecords, StatisticsOidOfEveryLengthAndRange) {
  const auto dbm = [](int number) { return Little(static_cast<uint32_t>(number), 4); };
  const ByteText record = dbm(-52) + dbm(-58) + Zeros(248);
  for (size_t size = 0; size <= record.size(); ++size) {
    const char* expected = size < 4 ? "none:none" : size < 8 ? "-52:none" : "-52:-58";
    EXPECT_EQ(Show(ReadStatisticsOid(ToVector(record.substr(0, size)))), expected) << size;
  }
  const struct {
    int main, aux;
    const char* shown;
  } ranges[] = {
      {-1, -127, "-1:-127"}, {0, -128, "none:none"}, {1, INT32_MIN, "none:none"}, {INT32_MAX, -100, "none:-100"}};
  for (const auto& range : ranges) {
    EXPECT_EQ(Show(ReadStatisticsOid(ToVector(dbm(range.main) + dbm(range.aux)))), range.shown);
  }
}

TEST(WifiNames, PhyModesAndAddressPrefix) {
  std::vector<std::string> names;
  for (uint32_t type = 0; type <= 12; ++type) names.emplace_back(PhyModeName(type));
  EXPECT_THAT(names, ElementsAre("Other", "FHSS", "DHSS", "IR baseband", "OFDM", "HRDSSS", "ERP", "802.11n", "802.11ac",
                                 "802.11ad", "802.11ax", "802.11be", "Other"));
  EXPECT_STREQ(PhyModeName(0x80000000), "Other");
  EXPECT_STREQ(PhyModeName(0xFFFFFFFF), "Other");
  EXPECT_EQ(MacPrefix({0x00, 0x11, 0x22, 0x33, 0x44, 0x55}), "00:11:22");
  EXPECT_EQ(MacPrefix(kCafe), "0A:BC:DE");
}

}  // namespace
}  // namespace vexa::test
