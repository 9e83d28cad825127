// Words put together by hand from the bit tables of the USB Power Delivery standard (revision 3.2, section 6.4.1).
#include "client/power_object.h"

#include <gtest/gtest.h>

namespace vexahealth {
namespace {

struct Vector {
  const char* what;
  uint32_t word;
  Supply supply;
  int min_millivolts;
  int max_millivolts;
  std::optional<int> max_milliamps;
  std::optional<int> max_milliwatts;
  const char* text;
};

// Each word is written as the sum of its fields, so that the layout can be read off.
const Vector kVectors[] = {
    // Fixed: 31-30 = 0, 19-10 voltage / 50 mV, 9-0 current / 10 mA.
    {"5 V, 3 A: 100 and 300", (100u << 10) | 300u, Supply::kFixed, 5000, 5000, 3000, 15000, "fixed 5 V, 3 A, 15 W"},
    {"20 V, 3.25 A: 400 and 325", (400u << 10) | 325u, Supply::kFixed, 20000, 20000, 3250, 65000,
     "fixed 20 V, 3.25 A, 65 W"},
    {"28 V, 5 A with every flag and both peak bits set", 0x3FF00000u | (560u << 10) | 500u, Supply::kFixed, 28000,
     28000, 5000, 140000, "fixed 28 V, 5 A, 140 W"},
    {"all fields full", (1023u << 10) | 1023u, Supply::kFixed, 51150, 51150, 10230, 523264,
     "fixed 51.15 V, 10.23 A, 523.264 W"},
    {"no current", 100u << 10, Supply::kFixed, 5000, 5000, 0, 0, "fixed 5 V, 0 A, 0 W"},

    // Battery: 31-30 = 1, 29-20 largest, 19-10 least voltage / 50 mV, 9-0 power / 250 mW.
    {"10 to 16.8 V, 45 W", (1u << 30) | (336u << 20) | (200u << 10) | 180u, Supply::kBattery, 10000, 16800,
     std::nullopt, 45000, "battery 10-16.8 V, 45 W"},

    // Variable: 31-30 = 2, 29-20 largest, 19-10 least voltage / 50 mV, 9-0 current / 10 mA.
    {"5 to 20 V, 2.5 A", (2u << 30) | (400u << 20) | (100u << 10) | 250u, Supply::kVariable, 5000, 20000, 2500, 50000,
     "variable 5-20 V, 2.5 A, 50 W"},

    // PPS: 31-28 = 12, 27 power limited, 24-17 largest, 15-8 least voltage / 100 mV, 6-0 current / 50 mA.
    {"3.3 to 21 V, 3 A", 0xC0000000u | (210u << 17) | (33u << 8) | 60u, Supply::kProgrammable, 3300, 21000, 3000, 63000,
     "pps 3.3-21 V, 3 A, 63 W"},
    {"the same, power limited, reserved bits set", 0xC8000000u | (1u << 16) | (210u << 17) | (33u << 8) | 0x80u | 60u,
     Supply::kProgrammable, 3300, 21000, 3000, 63000, "pps 3.3-21 V, 3 A, 63 W"},
    {"5 to 11 V, 6.35 A: the field full", 0xC0000000u | (110u << 17) | (50u << 8) | 127u, Supply::kProgrammable, 5000,
     11000, 6350, 69850, "pps 5-11 V, 6.35 A, 69.85 W"},

    // AVS of the extended range: 31-28 = 13, 27-26 peak, 25-17 largest, 15-8 least voltage / 100 mV, 7-0 watts.
    {"15 to 28 V, 140 W", 0xD0000000u | (280u << 17) | (150u << 8) | 140u, Supply::kAdjustableEpr, 15000, 28000,
     std::nullopt, 140000, "epr_avs 15-28 V, 140 W"},
    {"15 to 48 V, 240 W: nine bits of voltage", 0xDC000000u | (480u << 17) | (150u << 8) | 240u, Supply::kAdjustableEpr,
     15000, 48000, std::nullopt, 240000, "epr_avs 15-48 V, 240 W"},

    // AVS of the standard range: 31-28 = 14, 19-10 current for 9 to 15 V, 9-0 for 15 to 20 V, both / 10 mA.
    {"3 A up to 15 V, 2.25 A up to 20 V", 0xE0000000u | (300u << 10) | 225u, Supply::kAdjustableSpr, 9000, 20000, 3000,
     45000, "spr_avs 9-20 V, 3 A, 45 W"},
    {"3 A up to 15 V, and no further", 0xE0000000u | (300u << 10), Supply::kAdjustableSpr, 9000, 15000, 3000, 45000,
     "spr_avs 9-15 V, 3 A, 45 W"},
    {"5 A both ways", 0xE0000000u | (500u << 10) | 500u, Supply::kAdjustableSpr, 9000, 20000, 5000, 100000,
     "spr_avs 9-20 V, 5 A, 100 W"},

    {"the fourth augmented kind", 0xF0000000u | 12345u, Supply::kReserved, 0, 0, std::nullopt, std::nullopt,
     "reserved"},
    {"all ones", 0xFFFFFFFFu, Supply::kReserved, 0, 0, std::nullopt, std::nullopt, "reserved"},
};

TEST(PowerObject, WordsOfEveryKind) {
  for (const Vector& vector : kVectors) {
    const PowerObject object = DecodePowerObject(vector.word);
    EXPECT_EQ(object.supply, vector.supply) << vector.what;
    EXPECT_EQ(object.min_millivolts, vector.min_millivolts) << vector.what;
    EXPECT_EQ(object.max_millivolts, vector.max_millivolts) << vector.what;
    EXPECT_EQ(object.max_milliamps, vector.max_milliamps) << vector.what;
    EXPECT_EQ(object.max_milliwatts, vector.max_milliwatts) << vector.what;
    EXPECT_EQ(PowerObjectText(vector.word), vector.text) << vector.what;
  }
}

TEST(PowerObject, KnownWords) {
  // Words as chargers send them, in plain hexadecimal: 5 V 3 A (with dual-role flags), 9 V 3 A, 20 V 5 A, PPS to 11 V.
  EXPECT_EQ(PowerObjectText(0x0801912C), "fixed 5 V, 3 A, 15 W");
  EXPECT_EQ(PowerObjectText(0x0002D12C), "fixed 9 V, 3 A, 27 W");
  EXPECT_EQ(PowerObjectText(0x000641F4), "fixed 20 V, 5 A, 100 W");
  EXPECT_EQ(PowerObjectText(0xC0DC213C), "pps 3.3-11 V, 3 A, 33 W");
  EXPECT_EQ(PowerObjectText(0xC9A42164), "pps 3.3-21 V, 5 A, 105 W");
  EXPECT_EQ(PowerObjectText(0xE004B1F4), "spr_avs 9-20 V, 5 A, 100 W");
  EXPECT_EQ(PowerObjectText(0), "none");
}

}  // namespace
}  // namespace vexahealth
