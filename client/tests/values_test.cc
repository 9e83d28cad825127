#include "client/values.h"

#include <gtest/gtest.h>

namespace vexahealth {
namespace {

std::string Friendly(std::string_view key, uint32_t answer) {
  const Row& row = kRows[RowIndex(key)];
  return FriendlyText({.row = &row, .status = Status::kOk, .value = ValueFrom(row.kind, answer), .note = {}});
}

TEST(DateText, UnpacksDaysThatTheCalendarHas) {
  const std::pair<uint32_t, std::optional<std::string>> dates[] = {{0x5694, "2023-04-20"},  // 43 << 9 | 4 << 5 | 20
                                                                   {0x0021, "1980-01-01"},
                                                                   {0xFF9F, "2107-12-31"},
                                                                   {40 << 9 | 2 << 5 | 29, "2020-02-29"},
                                                                   {41 << 9 | 2 << 5 | 29, std::nullopt},
                                                                   {43 << 9 | 4 << 5 | 31, std::nullopt},
                                                                   {43 << 9 | 0 << 5 | 12, std::nullopt},   // month 0
                                                                   {43 << 9 | 13 << 5 | 12, std::nullopt},  // month 13
                                                                   {0xFFFF, std::nullopt},
                                                                   {0, std::nullopt}};
  for (const auto& [packed, text] : dates) {
    EXPECT_EQ(DateText(packed), text) << packed;
    EXPECT_EQ(ValueFrom(Kind::kDate, packed), text ? Value(*text) : Value(int64_t{packed}));
    EXPECT_EQ(NoteOn(Kind::kDate, packed).empty(), text.has_value());
  }
}

TEST(CelsiusText, RoundsToOneDecimalAroundZero) {
  EXPECT_EQ(CelsiusText(2982), "25.1");   // 25.05
  EXPECT_EQ(CelsiusText(2732), "0.1");    // 0.05
  EXPECT_EQ(CelsiusText(2731), "-0.1");   // -0.05
  EXPECT_EQ(CelsiusText(2631), "-10.1");  // -10.05
  EXPECT_EQ(CelsiusText(0), "-273.2");
}

TEST(InRange, HoldsEachExportToItsContract) {
  EXPECT_TRUE(InRange(Kind::kMilliamps, 0xFFFF8000));
  EXPECT_TRUE(InRange(Kind::kMilliamps, 0x7FFF));
  EXPECT_FALSE(InRange(Kind::kMilliamps, 0x8000));
  EXPECT_FALSE(InRange(Kind::kMilliamps, 0xFFFF7FFF));
  EXPECT_TRUE(InRange(Kind::kPercent, 100));
  EXPECT_FALSE(InRange(Kind::kPercent, 101));
  EXPECT_FALSE(InRange(Kind::kFlag, 2));
  EXPECT_FALSE(InRange(Kind::kHex8, 0x100));
  EXPECT_TRUE(InRange(Kind::kMillivolts, 0xFFFF));
  EXPECT_FALSE(InRange(Kind::kMillivolts, 0x10000));
  EXPECT_TRUE(InRange(Kind::kHex32, 0xFFFFFFFF));
}

TEST(FriendlyText, SaysUnitsAndDirections) {
  EXPECT_EQ(Friendly("battery.voltage", 11405), "11.405 V");
  EXPECT_EQ(Friendly("battery.cell_voltage_1", 65), "0.065 V");
  EXPECT_EQ(Friendly("battery.current", 0xFFFFFB2E), "-1234 mA, discharging");
  EXPECT_EQ(Friendly("battery.current", 1500), "+1500 mA, charging");
  EXPECT_EQ(Friendly("battery.current", 0), "0 mA");
  EXPECT_EQ(Friendly("battery.charging_current", 3000), "3000 mA");  // asked for, not flowing
  EXPECT_EQ(Friendly("battery.temperature", 2982), "25.1 °C (298.2 K)");
  EXPECT_EQ(Friendly("battery.rsoc", 87), "87 %");
  EXPECT_EQ(Friendly("battery.manufacture_date", 0xFFFF), "0xffff");
  EXPECT_EQ(Friendly("battery.fully_charged", 1), "yes");
  EXPECT_EQ(Friendly("library.dll_version", 0x00010001), "1.1");
  EXPECT_EQ(Friendly("driver.version", 0x10002), "0x00010002");
}

TEST(HasZeroByte, FindsOnlyWholeItems) {
  EXPECT_TRUE(HasZeroByte("0x0"));
  EXPECT_TRUE(HasZeroByte("0x1,0x0,0x2"));
  EXPECT_TRUE(HasZeroByte("0x1,0x0"));
  EXPECT_FALSE(HasZeroByte("0x10,0xa0"));
  EXPECT_FALSE(HasZeroByte(""));
}

}  // namespace
}  // namespace vexahealth
