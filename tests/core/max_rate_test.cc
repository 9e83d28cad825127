// The greatest rate of whole beacons. Expected numbers are those of the standard's tables for the highest MCS at the
// width in use, in Mbit/s, cut: HT by IEEE 802.11-2020 19.5, VHT by 21.5, HE by IEEE 802.11ax 27.5.
#include "radio/max_rate.h"

#include <gtest/gtest.h>

#include "tests/support/beacon.h"

namespace vexa::test {
namespace {

using namespace beacon;

uint32_t MaxRate(const ByteText& elements) {
  // A copy of exactly that size: the sanitizer sees a read behind it.
  const std::vector<uint8_t> bytes(elements.begin(), elements.end());
  return MaxRateMbps(bytes);
}

// Receive maps: so many streams at MCS 7, 8 or 9 (VHT), 7, 9 or 11 (HE).
constexpr uint16_t k1x7 = 0xFFFC, k4x7 = 0xFF00;
constexpr uint16_t k1x8 = 0xFFFD, k2x8 = 0xFFF5, k4x8 = 0xFF55;
constexpr uint16_t k1x9 = 0xFFFE, k2x9 = 0xFFFA, k3x9 = 0xFFEA, k4x9 = 0xFFAA, k8x9 = 0xAAAA;
constexpr uint16_t kNone = 0xFFFF;

const ByteText kHtTwo = Ht(kHt40, {0xFF, 0xFF});

struct Case {
  const char* name;
  ByteText elements;
  uint32_t mbps;
};

void Check(std::initializer_list<Case> cases) {
  for (const Case& c : cases) EXPECT_EQ(MaxRate(Ssid("home") + Rates() + c.elements), c.mbps) << c.name;
}

TEST(MaxRate, Ht) {
  Check({
      {"neither HT nor VHT nor HE", {}, 0},
      {"1 stream, 20 MHz, long", Ht(kHtLong20, {0xFF}) + Ht20(), 65},
      {"1 stream, 20 MHz, short", Ht(kHt20, {0xFF}) + Ht20(), 72},
      {"2 streams, 20 MHz, short", Ht(kHt20, {0xFF, 0xFF}) + Ht20(), 144},
      {"1 stream, 40 MHz, long", Ht(kHtLong40, {0xFF}) + Ht40(), 135},
      {"2 streams, 40 MHz above, short", kHtTwo + Ht40(), 300},
      {"2 streams, 40 MHz below, short", kHtTwo + HtOperation(0x07), 300},
      {"4 streams, 40 MHz, short", Ht(kHt40, {0xFF, 0xFF, 0xFF, 0xFF}) + Ht40(), 600},
      {"40 MHz supported, 20 in use", kHtTwo + Ht20(), 144},
      {"40 MHz in use, 20 supported", Ht(kHt20, {0xFF, 0xFF}) + Ht40(), 144},
      {"40 MHz allowed, no secondary channel", kHtTwo + HtOperation(0x04), 144},
      {"secondary channel, 40 MHz not allowed", kHtTwo + HtOperation(0x01), 144},
      {"reserved secondary channel", kHtTwo + HtOperation(0x06), 144},
      {"without HT Operation: the width supported", kHtTwo, 300},
      {"short interval of the other width", Ht(0x0022, {0xFF}) + Ht40(), 135},
      {"MCS 4 is the highest of 2 streams, 40 MHz, long", Ht(kHtLong40, {0x1F, 0x1F}) + Ht40(), 162},
      {"MCS 0 of 2 streams is less than MCS 7 of 1", Ht(kHtLong20, {0xFF, 0x01}) + Ht20(), 65},
      {"no receive MCS at all", Ht(kHt40, {}) + Ht40(), 0},
      {"a hole: streams 1 and 3", Ht(kHtLong20, {0xFF, 0x00, 0xFF}) + Ht20(), 195},
  });
}

TEST(MaxRate, Vht) {
  const ByteText ht = kHtTwo + Ht40();
  Check({
      {"1 stream, 80 MHz, short", ht + Vht(kVht80, k1x9) + VhtOperation(1), 433},
      {"2 streams, 80 MHz, short", ht + Vht(kVht80, k2x9) + VhtOperation(1), 866},
      {"2 streams, 80 MHz, long", ht + Vht(0, k2x9) + VhtOperation(1), 780},
      {"3 streams, 80 MHz, short", ht + Vht(kVht80, k3x9) + VhtOperation(1), 1300},
      {"4 streams, 80 MHz, MCS 7", ht + Vht(kVht80, k4x7) + VhtOperation(1), 1300},
      {"4 streams, 80 MHz, MCS 8", ht + Vht(kVht80, k4x8) + VhtOperation(1), 1560},
      {"8 streams count as 4", ht + Vht(kVht80, k8x9) + VhtOperation(1), 1733},
      {"160 MHz, deprecated width 2", ht + Vht(kVht160, k2x9) + VhtOperation(2, 50), 1733},
      {"80+80 MHz, deprecated width 3", ht + Vht(kVht80Plus80, k2x9) + VhtOperation(3, 42, 155), 1733},
      {"160 MHz by the second segment", ht + Vht(kVht160, k2x9) + VhtOperation(1, 42, 50), 1733},
      {"160 MHz, second segment below", ht + Vht(kVht160, k2x9) + VhtOperation(1, 58, 50), 1733},
      {"80+80 MHz by the second segment", ht + Vht(kVht80Plus80, k1x9) + VhtOperation(1, 155, 42), 866},
      {"reserved distance of the segments", ht + Vht(kVht160, k2x9) + VhtOperation(1, 42, 46), 866},
      {"160 MHz in use, 80 supported", ht + Vht(kVht80, k2x9) + VhtOperation(1, 42, 50), 866},
      {"reserved width set", ht + Vht(0x6C, k1x9) + VhtOperation(1, 42, 50), 433},
      {"160 MHz supported, 80 in use: the bit of 80", ht + Vht(0x44, k2x9) + VhtOperation(1), 780},
      {"160 MHz: the bit of 160", ht + Vht(0x24, k2x9) + VhtOperation(1, 42, 50), 1560},
      {"3 streams, 160 MHz, MCS 9 is not allowed", ht + Vht(kVht160, k3x9) + VhtOperation(2), 2340},
      {"4 streams, 160 MHz, short", ht + Vht(kVht160, k4x9) + VhtOperation(2), 3466},
      {"40 MHz by HT Operation, its short interval", ht + Vht(kVht80, k2x9) + VhtOperation(0), 400},
      {"40 MHz, no short interval in HT", Ht(kHtLong40, {0xFF}) + Ht40() + Vht(kVht160, k2x9) + VhtOperation(0), 360},
      {"20 MHz by HT Operation, MCS 9 is not allowed", Ht(kHt40, {0xFF}) + Ht20() + Vht(kVht80, k1x9) + VhtOperation(0),
       86},
      {"20 MHz, 3 streams have MCS 9", kHtTwo + Ht20() + Vht(kVht80, k3x9) + VhtOperation(0), 289},
      {"HT Operation of 20 MHz caps 80", kHtTwo + Ht20() + Vht(kVht80, k2x9) + VhtOperation(1), 173},
      {"without VHT Operation: the width supported", ht + Vht(kVht160, k2x9), 1733},
      {"without VHT Operation, HT of 20 MHz", kHtTwo + Ht20() + Vht(kVht160, k2x9), 173},
      {"no HT element at all, width 0: 40 MHz, long", Vht(kVht80, k1x9) + VhtOperation(0), 180},
      {"HT of 20 MHz without HT Operation, width 0", Ht(kHt20, {0xFF}) + Vht(kVht80, k1x8) + VhtOperation(0), 86},
      {"reserved width counts as no operation", ht + Vht(kVht80, k1x9) + VhtOperation(4), 433},
      {"no receive map: HT's rate", ht + Vht(kVht80, kNone) + VhtOperation(1), 300},
      {"a weaker map of more streams", ht + Vht(kVht80, 0xFFF2) + VhtOperation(1), 650},
      {"VHT Operation alone", VhtOperation(1), 0},
  });
}

TEST(MaxRate, He) {
  const ByteText ht = kHtTwo + Ht40();
  const ByteText vht80 = ht + Vht(kVht80, k2x9) + VhtOperation(1);
  const ByteText vht160 = ht + Vht(kVht160, k2x9) + VhtOperation(1, 42, 50);
  Check({
      {"2 streams, 80 MHz", vht80 + He(kHe80, {k2x9}), 1201},
      {"2 streams, 80 MHz, MCS 9", vht80 + He(kHe80, {k2x8}), 961},
      {"1 stream, 80 MHz, MCS 7: VHT has more", vht80 + He(kHe80, {k1x7}), 866},
      {"160 MHz has its own map", vht160 + He(kHe160, {k1x9, k2x9}), 2402},
      {"160 MHz with less than at 80", vht160 + He(kHe160, {k4x9, k1x7}), 1733},
      {"160 MHz supported, 80 in use", vht80 + He(kHe160, {k2x9, k4x9}), 1201},
      {"80+80 in use has the third map",
       ht + Vht(kVht80Plus80, k1x9) + VhtOperation(3, 42, 155) + He(kHe80Plus80, {k1x7, k4x9, k2x9}), 2402},
      {"80+80 in use, only 160 MHz supported",
       ht + Vht(kVht80Plus80, k1x9) + VhtOperation(3) + He(kHe160, {k1x7, k2x8}), 1922},
      {"160 in use, only 80+80 supported", vht160 + He(0x14, {k1x7, k2x9}), 2402},
      {"160 in use, 80 supported", vht160 + He(kHe80, {k2x9}), 1733},
      {"2.4 GHz, 20 MHz", Ht(kHt20, {0xFF, 0xFF}) + Ht20() + He(kHe20, {k2x9}), 287},
      {"2.4 GHz, 40 MHz", ht + He(kHe40, {k2x9}), 574},
      {"2.4 GHz, 40 MHz, HE only of 20", ht + He(kHe20, {k2x9}), 300},
      {"2.4 GHz, 40 MHz, bits of both bands", ht + He(kHe40 | kHe80, {k2x9}), 574},
      {"5 GHz without VHT Operation: the width supported", ht + Vht(kVht80, k1x7) + He(kHe160, {k1x7, k1x9}), 1201},
      {"HT Operation of 20 MHz caps HE", kHtTwo + Ht20() + Vht(kVht80, k1x7) + He(kHe80, {k1x9}), 144},
      {"6 GHz: no HT, no VHT", He(kHe160, {k2x9, k2x9}), 2402},
      {"6 GHz, 4 streams at 160 MHz", He(kHe160, {k4x9, k4x9}), 4804},
      {"6 GHz, 8 streams count as 4", He(kHe80, {k8x9}), 2402},
      {"20 MHz, MCS 7: not the odd entry of MCS 5", He(kHe20, {k1x7}), 86},
      {"2.4 GHz, HE alone, 40 MHz supported", He(kHe40, {k1x9}), 287},
      {"HE without a receive map", vht80 + He(kHe80, {kNone}), 866},
  });
}

TEST(MaxRate, ShortTruncatedDuplicatedAndWrapped) {
  const ByteText ht = kHtTwo + Ht40();
  const ByteText whole = ht + Vht(kVht80, k2x9) + VhtOperation(1) + He(kHe80, {k2x9});
  const auto shortened = [](const ByteText& element) {
    ByteText shorter = element.substr(0, element.size() - 1);
    shorter[1] = static_cast<char>(shorter[1] - 1);
    return shorter;
  };
  const auto lengthened = [](ByteText element) {
    element += '\x7F';
    element[1] = static_cast<char>(element[1] + 1);
    return element;
  };
  Check({
      {"HT Capabilities a byte short", shortened(kHtTwo) + Ht40(), 0},
      {"HT Operation a byte short: the width supported", kHtTwo + shortened(Ht20()), 300},
      {"VHT Capabilities a byte short", ht + shortened(Vht(kVht80, k2x9)) + VhtOperation(1), 300},
      {"VHT Operation a byte short", ht + Vht(kVht160, k2x9) + shortened(VhtOperation(1)), 1733},
      {"HE a byte short", ht + shortened(He(kHe40, {k2x9})), 300},
      {"HE without the map of 160 MHz that it promises", ht + He(kHe40 | 8, {k2x9}), 300},
      {"HE without the map of 80+80 MHz that it promises", ht + He(kHe40 | 0x18, {k2x9, k2x9}), 300},
      {"HE with the second of two maps a byte short", ht + shortened(He(kHe40 | 8, {k2x9, k2x9})), 300},
      {"a later edition's longer elements",
       lengthened(kHtTwo) + lengthened(Ht40()) + lengthened(Vht(kVht80, k2x9)) + lengthened(VhtOperation(1)) +
           lengthened(He(kHe80, {k2x9})),
       1201},
      {"extension element without an id", Element(255, {}) + whole, 1201},
      {"another extension with HE's bytes", ht + Element(255, "\x24" + He(kHe80, {k2x9}).substr(3)), 300},
      {"id 35 without extension", ht + Element(35, He(kHe80, {k2x9}).substr(3)), 300},
      {"empty elements in front", Element(45, {}) + Element(191, {}) + whole, 1201},
      {"the second HT Capabilities does not count", Ht(kHtLong20, {0xFF}) + kHtTwo + Ht20(), 65},
      {"the second VHT Operation does not count", ht + Vht(kVht160, k2x9) + VhtOperation(1) + VhtOperation(2), 866},
      {"the second HE does not count", ht + He(kHe40, {k1x7}) + He(kHe40, {k4x9}), 300},
      {"a first one that is too short does not count", shortened(kHtTwo) + Ht(kHtLong20, {0xFF}) + Ht20(), 65},
      {"VHT inside a vendor element does not count", ht + Vendor(Vht(kVht80, k4x9) + VhtOperation(1)), 300},
      {"HE inside a vendor element does not count", ht + Vendor(He(kHe40, {k4x9})), 300},
      {"the order does not matter", He(kHe80, {k2x9}) + VhtOperation(1) + Vht(kVht80, k2x9) + Ht40() + kHtTwo, 1201},
  });
  // Cut after every byte: an element counts from its last byte on, the ones before it whatever follows.
  const size_t ht_end = kHtTwo.size(), ht_operation_end = ht.size();
  const size_t vht_end = ht_operation_end + 14, vht_operation_end = vht_end + 7;
  ASSERT_EQ(whole.size(), vht_operation_end + 24);
  for (size_t size = 0; size <= whole.size(); ++size) {
    const uint32_t expected = size < ht_end         ? 0
                              : size < vht_end      ? 300  // 40 MHz, supported or in use
                              : size < whole.size() ? 866
                                                    : 1201;
    EXPECT_EQ(MaxRate(whole.substr(0, size)), expected) << size;
  }
}

TEST(ElementWalker, StepsAndEnds) {
  const uint8_t bytes[] = {7, 0, 9, 2, 0xAA, 0xBB, 11, 3, 1, 2};
  ElementWalker walker(bytes);
  const auto first = walker.Next();
  ASSERT_TRUE(first);
  EXPECT_EQ(first->id, 7);
  EXPECT_TRUE(first->body.empty());
  const auto second = walker.Next();
  ASSERT_TRUE(second);
  EXPECT_EQ(second->id, 9);
  EXPECT_EQ(second->body.data(), bytes + 4);
  EXPECT_EQ(second->body.size(), 2u);
  // Longer than what is left: the end, now and later.
  EXPECT_FALSE(walker.Next());
  EXPECT_FALSE(walker.Next());
}

}  // namespace
}  // namespace vexa::test
