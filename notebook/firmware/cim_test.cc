// What becomes of values that callers put.
#include "cim.h"

#include <gtest/gtest.h>

#include "results.h"

namespace firmware {
namespace {

constexpr auto kNo = std::nullopt;

const struct {
  const char* text;
  Cim type;
  std::optional<Datum> result;  // nothing: a mismatch
} kTexts[] = {
    {"0", Cim::kUint8, Datum::Integer(kVtUi1, 0)},
    {"255", Cim::kUint8, Datum::Integer(kVtUi1, 255)},
    {"256", Cim::kUint8, kNo},
    {"-1", Cim::kUint8, kNo},
    {"", Cim::kUint8, kNo},
    {"abc", Cim::kUint8, kNo},
    {"12x", Cim::kUint8, kNo},
    {"0x10", Cim::kUint8, kNo},
    {"1.5", Cim::kUint8, kNo},
    {"--1", Cim::kSint8, kNo},
    {" 7 ", Cim::kUint8, Datum::Integer(kVtUi1, 7)},
    {"-0", Cim::kUint8, Datum::Integer(kVtUi1, 0)},
    {"-128", Cim::kSint8, Datum::Integer(kVtI2, -128)},
    {"-129", Cim::kSint8, kNo},
    {"128", Cim::kSint8, kNo},
    {"65535", Cim::kUint16, Datum::Integer(kVtI4, 65535)},
    {"65536", Cim::kUint16, kNo},
    {"1179735", Cim::kUint32, Datum::Integer(kVtI4, 1179735)},
    {"4294967295", Cim::kUint32, Datum::Integer(kVtI4, -1)},
    {"4294967296", Cim::kUint32, kNo},
    {"-2147483648", Cim::kSint32, Datum::Integer(kVtI4, INT32_MIN)},
    {"2147483648", Cim::kSint32, kNo},
    {"18446744073709551615", Cim::kUint64, Datum::Text("18446744073709551615")},
    {"18446744073709551616", Cim::kUint64, kNo},
    {"-9223372036854775808", Cim::kSint64, Datum::Text("-9223372036854775808")},
    {"9223372036854775808", Cim::kSint64, kNo},
    {"TRUE", Cim::kBoolean, Datum::Integer(kVtBool, 1)},
    {"false", Cim::kBoolean, Datum::Integer(kVtBool, 0)},
    {"yes", Cim::kBoolean, kNo},
    {"3", Cim::kReal32, Datum::Real(kVtR4, 3)},
    {"any text", Cim::kString, Datum::Text("any text")},
};

TEST(CimValues, TextsBecomeTheTypesValue) {
  for (const auto& [text, type, result] : kTexts) {
    const std::expected<Datum, uint32_t> got = Convert(Datum::Text(text), {type, false});
    EXPECT_EQ(got.has_value(), result.has_value()) << text;
    if (got) EXPECT_EQ(*got, result) << text << " gave " << static_cast<int64_t>(got->bits) << " of type " << got->vt;
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
