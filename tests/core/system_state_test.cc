// What is made of the system's state and of the EC's revision, without the system.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "ec/firmware_revision.h"
#include "system/texts.h"

namespace vexa::test {
namespace {

TEST(FirmwareRevision, ThreePairsOfDigitsAreKnownAndEveryOtherTextIsItself) {
  const std::string digits = "0123456789ABCDEF";
  int known = 0, unknown = 0;
  for (int word = 0; word < 0x10000; ++word) {
    const char text[] = {static_cast<char>(word >> 8), static_cast<char>(word & 0xFF), '\0'};
    const uint32_t answer = FirmwareRevisionWord(static_cast<uint8_t>(word >> 8), static_cast<uint8_t>(word & 0xFF));
    const bool both = digits.find(text[0]) != std::string::npos && digits.find(text[1]) != std::string::npos &&
                      text[0] != '\0' && text[1] != '\0';
    if (both && answer == 0x7FFF) {
      ++unknown;
    } else {
      EXPECT_EQ(answer, static_cast<uint32_t>(word));
      if (both) ++known;
    }
  }
  EXPECT_EQ(unknown, 253);
  EXPECT_EQ(known, 3);
  EXPECT_EQ(FirmwareRevisionWord('A', 'B'), 0x4142u);
  EXPECT_EQ(FirmwareRevisionWord('A', 'C'), 0x4143u);
  EXPECT_EQ(FirmwareRevisionWord('C', 'F'), 0x4346u);
  EXPECT_EQ(FirmwareRevisionWord('1', '2'), 0x7FFFu);
  EXPECT_EQ(FirmwareRevisionWord('a', 'b'), 0x6162u);
  EXPECT_EQ(FirmwareRevisionWord('G', '0'), 0x4730u);
}

TEST(PackageVersion, IsTheSecondPiece) {
  EXPECT_EQ(PackageVersion(L"VexaSystems.VexaCompanion_3.0.12.0_x64__v3x4p8k2m9q7t"), L"3.0.12.0");
  EXPECT_EQ(PackageVersion(L"a_4.1.0.0"), L"4.1.0.0");
  EXPECT_EQ(PackageVersion(L"a__b"), L"");
  EXPECT_EQ(PackageVersion(L"_1_"), L"1");
  EXPECT_EQ(PackageVersion(L"a_"), L"");
  EXPECT_EQ(PackageVersion(L"a"), std::nullopt);
  EXPECT_EQ(PackageVersion(L""), std::nullopt);
}

TEST(VolumePercent, IsCutToAWholeNumberBetweenItsEnds) {
  EXPECT_EQ(VolumePercent(0.339F), 33);
  EXPECT_EQ(VolumePercent(0.999999F), 99);
  EXPECT_EQ(VolumePercent(1.0F), 100);
  EXPECT_EQ(VolumePercent(0.0F), 0);
  EXPECT_EQ(VolumePercent(0.5F), 50);
  EXPECT_EQ(VolumePercent(-0.01F), 0);
  EXPECT_EQ(VolumePercent(1e30F), 100);
  EXPECT_EQ(VolumePercent(-std::numeric_limits<float>::infinity()), 0);
  EXPECT_EQ(VolumePercent(std::nanf("")), std::nullopt);
}

TEST(TimeText, EveryNumberHasItsPlaces) {
  EXPECT_STREQ(TimeText({2026, 2, 3, 9, 5, 0}).data(), "2026-02-03 09:05:00");
  EXPECT_STREQ(TimeText({1999, 12, 31, 23, 59, 58}).data(), "1999-12-31 23:59:58");
  EXPECT_STREQ(TimeText({30827, 10, 1, 0, 0, 0}).data(), "0827-10-01 00:00:00");
  EXPECT_EQ(TimeText({}).back(), '\0');
}

}  // namespace
}  // namespace vexa::test
