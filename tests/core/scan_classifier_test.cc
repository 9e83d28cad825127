// Access points by frequency and signal strength, and the texts that tell of them.
#include "radio/scan_classifier.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace vexa::test {
namespace {

// Where one access point at -55 dBm is counted: "count group rssi".
std::string Place(uint32_t frequency_khz) {
  ScanClassifier classifier;
  classifier.Add(frequency_khz, -55);
  std::string count, group, rssi;
  const auto look = [&](const auto& band, const char* name) {
    if (band.count == 1) count += name;
    EXPECT_LE(band.count, 1);
    for (const NamedCount& entry : band.groups) {
      if (entry.count == 1) group += entry.name;
    }
    if (band.rssi.Text().find("\"-50~-60\":\"1\"") != std::string::npos) rssi += name;
  };
  look(classifier.band_2_4ghz(), "2.4");
  look(classifier.band_5ghz(), "5");
  look(classifier.band_6ghz(), "6");
  return count + " " + group + " " + rssi;
}

TEST(ScanClassifier, EveryBoundaryFrequency) {
  // clang-format off: side by side
  const struct {
    uint32_t khz;
    const char* place;
  } boundaries[] = {
      {0, "2.4 others 2.4"}, {2'411'999, "2.4 others 2.4"}, {2'412'000, "2.4 ch1 2.4"}, {2'412'999, "2.4 ch1 2.4"},
      {2'413'000, "2.4 others 2.4"}, {2'422'000, "2.4 others 2.4"}, {2'436'999, "2.4 others 2.4"},
      {2'437'000, "2.4 ch6 2.4"}, {2'437'999, "2.4 ch6 2.4"}, {2'438'000, "2.4 others 2.4"},
      {2'461'999, "2.4 others 2.4"}, {2'462'000, "2.4 ch11 2.4"}, {2'462'999, "2.4 ch11 2.4"},
      {2'463'000, "2.4 others 2.4"}, {5'000'999, "2.4 others 2.4"}, {5'001'000, "  5"}, {5'150'999, "  5"},
      {5'151'000, "5 band1 5"}, {5'249'999, "5 band1 5"}, {5'250'000, "  5"}, {5'250'999, "  5"},
      {5'251'000, "5 band2 5"}, {5'300'000, "5 band2 5"}, {5'349'999, "5 band2 5"}, {5'350'000, "  5"},
      {5'400'000, "  5"}, {5'470'999, "  5"}, {5'471'000, "5 band3 5"}, {5'724'999, "5 band3 5"}, {5'725'000, "  5"},
      {5'725'999, "  5"}, {5'726'000, "5 band4 5"}, {5'849'999, "5 band4 5"}, {5'850'000, "  5"}, {5'850'999, "  5"},
      {5'851'000, "  6"}, {5'900'000, "  6"}, {5'925'999, "  6"}, {5'926'000, "6 nuii5 6"}, {6'424'999, "6 nuii5 6"},
      {6'425'000, "  6"}, {6'425'999, "  6"}, {6'426'000, "6 nuii6 6"}, {6'524'999, "6 nuii6 6"}, {6'525'000, "  6"},
      {6'525'999, "  6"}, {6'526'000, "6 nuii7 6"}, {6'874'999, "6 nuii7 6"}, {6'875'000, "  6"}, {6'875'999, "  6"},
      {6'876'000, "6 nuii8 6"}, {7'124'998, "6 nuii8 6"}, {7'124'999, "6 nuii8 6"}, {7'125'000, "  6"},
      {0xFFFFFFFF, "  6"},
  };
  // clang-format on
  for (const auto& boundary : boundaries) EXPECT_EQ(Place(boundary.khz), boundary.place) << boundary.khz;
}

// From -5 to -105 dBm, one character each: the digit of the bucket's first ten, or "." for none.
constexpr std::string_view kBuckets =
    "......"      // -5 to -10
    "111111111."  // -11 to -20
    "222222222."
    "333333333."
    "444444444."
    "555555555."
    "666666666."
    "777777777."
    "888888888."
    "999999999."  // -91 to -100
    ".....";      // to -105
static_assert(kBuckets.size() == 101);

TEST(ScanClassifier, EverySignalStrength) {
  constexpr std::string_view kEmpty =
      R"({"-10~-20":"0","-20~-30":"0","-30~-40":"0","-40~-50":"0","-50~-60":"0","-60~-70":"0","-70~-80":"0",)"
      R"("-80~-90":"0","-90~-100":"0"})";
  for (int dbm = -5; dbm >= -105; --dbm) {
    RssiBuckets buckets;
    buckets.Add(dbm);
    std::string expected(kEmpty);
    const char digit = kBuckets[static_cast<size_t>(-5 - dbm)];
    if (digit != '.') {
      const std::string key = std::string("\"-") + digit + "0~";
      expected[expected.find("\"0\"", expected.find(key)) + 1] = '1';
    }
    EXPECT_EQ(buckets.Text(), expected) << dbm;
  }
  for (const int32_t dbm : {0, 1, 55, INT32_MAX, INT32_MIN, INT32_MIN + 1, -1000, -111}) {
    RssiBuckets buckets;
    buckets.Add(dbm);
    EXPECT_EQ(buckets.Text(), kEmpty) << dbm;
  }
}

TEST(ScanClassifier, WholePictureAsText) {
  ScanClassifier classifier;
  const struct {
    uint32_t khz;
    int32_t dbm;
  } access_points[] = {{2'412'000, -41},  {2'412'000, -42}, {2'412'000, -50}, {2'437'000, -99},
                       {2'437'000, -100}, {2'484'000, -11}, {5'180'000, -61}, {5'400'000, -62},
                       {5'745'000, -63},  {6'115'000, -71}, {7'115'000, -20}};
  for (const auto& point : access_points) classifier.Add(point.khz, point.dbm);
  EXPECT_EQ(classifier.band_2_4ghz().count, 6);
  EXPECT_EQ(CountText(classifier.band_2_4ghz().groups), R"({"ch1":"3","ch11":"0","ch6":"2","others":"1"})");
  EXPECT_EQ(classifier.band_2_4ghz().rssi.Text(),
            R"({"-10~-20":"1","-20~-30":"0","-30~-40":"0","-40~-50":"2","-50~-60":"0","-60~-70":"0","-70~-80":"0",)"
            R"("-80~-90":"0","-90~-100":"1"})");
  EXPECT_EQ(classifier.band_5ghz().count, 2);
  EXPECT_EQ(CountText(classifier.band_5ghz().groups), R"({"band1":"1","band2":"0","band3":"0","band4":"1"})");
  EXPECT_NE(classifier.band_5ghz().rssi.Text().find(R"("-60~-70":"3")"), std::string::npos);
  EXPECT_EQ(classifier.band_6ghz().count, 2);
  EXPECT_EQ(CountText(classifier.band_6ghz().groups), R"({"nuii5":"1","nuii6":"0","nuii7":"0","nuii8":"1"})");
  EXPECT_NE(classifier.band_6ghz().rssi.Text().find(R"("-70~-80":"1","-80~-90":"0")"), std::string::npos);
}

}  // namespace
}  // namespace vexa::test
