// What becomes of values that callers put.
#include "cim.h"

#include <gtest/gtest.h>

#include <cmath>

#include "results.h"
#include "scenario/test_cases.h"

namespace firmware {
namespace {

std::string Shown(const Datum& datum) {
  switch (datum.vt) {
    case kVtBstr: return "text " + *datum.text;
    case kVtR4: return "r4 " + std::to_string(std::lround(datum.AsReal()));
    default:
      return (datum.vt == kVtUi1  ? "ui1 "
              : datum.vt == kVtI2 ? "i2 "
              : datum.vt == kVtI4 ? "i4 "
                                  : "bool ") +
             std::to_string(static_cast<int64_t>(datum.bits));
  }
}

TEST(CimValues, TextsBecomeTheTypesValue) {
  for (const std::string& line : scenario::LinesOfCase(TEST_FOLDER "/cim.txt", "texts")) {
    const size_t as = line.find("\" as "), arrow = line.find(" -> ");
    const std::optional<CimType> type = CimTypeFromName(line.substr(as + 5, arrow - as - 5));
    ASSERT_TRUE(type) << line;
    const std::expected<Datum, uint32_t> got = Convert(Datum::Text(line.substr(1, as - 1)), *type);
    EXPECT_EQ(got ? Shown(*got) : "mismatch", line.substr(arrow + 4)) << line;
    if (!got) EXPECT_EQ(got.error(), kTypeMismatch);
  }
}

TEST(CimValues, ASigned32BitValueCarriesUnsignedOnes) {
  EXPECT_EQ(*Convert(Datum::Integer(kVtI4, -1), {Cim::kUint32, false}), Datum::Integer(kVtI4, -1));
  EXPECT_FALSE(Convert(Datum::Integer(kVtI4, -1), {Cim::kUint8, false}).has_value());
  EXPECT_FALSE(Convert(Datum::Integer(kVtI4, 256), {Cim::kUint8, false}).has_value());
  EXPECT_EQ(*Convert(Datum::Integer(kVtUi8, -1), {Cim::kUint64, false}), Datum::Text("18446744073709551615"));
}

TEST(CimValues, NullStaysAndPointersDoNotFit) {
  EXPECT_EQ(*Convert(Datum{}, {Cim::kUint8, false}), Datum{});
  EXPECT_FALSE(Convert(Datum{.vt = kVtUnknown}, {Cim::kUint8, false}).has_value());
  EXPECT_FALSE(Convert(Datum{.vt = kVtEmpty}, {Cim::kString, false}).has_value());
  EXPECT_FALSE(Convert(Datum{.vt = kVtBstr}, {Cim::kString, false}).has_value());
}

TEST(CimValues, ArraysAreConvertedItemByItem) {
  const Datum texts{.vt = kVtArray | kVtBstr, .has_items = true, .items = {Datum::Text("1"), Datum::Text("2")}};
  const Datum numbers{
      .vt = kVtArray | kVtUi1, .has_items = true, .items = {Datum::Integer(kVtUi1, 1), Datum::Integer(kVtUi1, 2)}};
  EXPECT_EQ(*Convert(texts, {Cim::kUint8, true}), numbers);
  EXPECT_FALSE(Convert(Datum::Text("1"), {Cim::kUint8, true}).has_value());
  EXPECT_FALSE(Convert(texts, {Cim::kUint8, false}).has_value());
}

TEST(CimValues, DeliveryFollowsTheTypes) {
  const std::pair<const char*, int> expected[] = {
      {"sint8", 2},    {"uint8", 17},        {"sint16", 2},        {"uint16", 3},
      {"sint32", 3},   {"uint32", 3},        {"sint64", 8},        {"uint64", 8},
      {"real32", 4},   {"real64", 5},        {"boolean", 11},      {"string", 8},
      {"datetime", 8}, {"uint16[]", 0x2003}, {"uint64[]", 0x2008}, {"boolean[]", 0x200B},
  };
  for (const auto& [name, vt] : expected) {
    const std::optional<CimType> type = CimTypeFromName(name);
    ASSERT_TRUE(type) << name;
    EXPECT_EQ(DeliveredAs(*type), vt) << name;
    EXPECT_EQ(CimTypeName(*type), name);
  }
  EXPECT_FALSE(CimTypeFromName("int"));
  EXPECT_FALSE(CimTypeFromName("[]"));
  EXPECT_EQ(CimTypeFromName("uint32")->Code(), 19);
  EXPECT_EQ(CimTypeFromName("datetime[]")->Code(), 0x2000 + 101);
}

TEST(CimValues, UnsignedIsCutToTheType) {
  EXPECT_EQ(UnsignedOf(Datum::Integer(kVtI4, -1), Cim::kUint32), 0xFFFFFFFFu);
  EXPECT_EQ(UnsignedOf(Datum::Integer(kVtUi1, 255), Cim::kUint8), 255u);
  EXPECT_EQ(UnsignedOf(Datum{}, Cim::kUint8), std::nullopt);
}

}  // namespace
}  // namespace firmware
