// What each reader takes from every type of VARIANT.
#include "wmi/variant_value.h"

#include "tests/support/automation_ledger.h"
#include "tests/support/shell_test.h"
#include "tests/support/wmi_value.h"
#include "wmi/session.h"

namespace vexa::test {
namespace {

class VariantValue : public ShellTest {
 protected:
  template <typename Read>
  auto Of(const WmiValue& value, Read read) {
    Variant variant;
    Store(value, variant.put());
    return read(variant.get());
  }
  std::optional<int32_t> Member(const WmiValue& value) { return Of(value, IntegerMember); }
  std::optional<uint32_t> Numeric(const WmiValue& value) { return Of(value, NumberOf); }
  std::optional<std::wstring> PlainText(const WmiValue& value) { return Of(value, TextOf); }
  std::optional<std::wstring> Converted(const WmiValue& value) { return Of(value, ConvertedTextOf); }

  AutomationLedger ledger_;
};

WmiValue Date(double days) {
  WmiValue date = Real64(days);
  date.type = VT_DATE;
  return date;
}

constexpr std::nullopt_t kNo = std::nullopt;

TEST_F(VariantValue, OfEveryType) {
  // clang-format off: side by side
  const struct {
    WmiValue value;
    std::optional<int32_t> member;
    std::optional<uint32_t> number;
    std::optional<std::wstring> converted;
  } values[] = {
      {Number(VT_I1, -1), 255, 0xFFFFFFFF, L"-1"}, {Number(VT_I1, -128), 128, 0xFFFFFF80, L"-128"},
      {Number(VT_I1, 127), 127, 127, L"127"}, {Number(VT_UI1, 255), 255, 255, L"255"},
      {Number(VT_I2, -2), 65534, 0xFFFFFFFE, L"-2"}, {Number(VT_I2, -32768), 32768, 0xFFFF8000, L"-32768"},
      {Number(VT_UI2, 65535), 65535, 65535, L"65535"}, {Number(VT_I4, -1), -1, 0xFFFFFFFF, L"-1"},
      {Number(VT_I4, INT32_MIN), INT32_MIN, 0x80000000, L"-2147483648"}, {Number(VT_INT, -7), -7, 0xFFFFFFF9, L"-7"},
      {Number(VT_UI4, 0xFFFFFFFF), -1, 0xFFFFFFFF, L"4294967295"},
      {Number(VT_UINT, 0x80000000), INT32_MIN, 0x80000000, L"2147483648"}, {Number(VT_I8, -1), -1, 0xFFFFFFFF, L"-1"},
      {Number(VT_I8, INT64_MIN), 0, 0, L"-9223372036854775808"}, {Number(VT_I8, 0x100000002), 2, 2, L"4294967298"},
      {Number(VT_UI8, -1), -1, 0xFFFFFFFF, L"18446744073709551615"}, {Number(VT_UI8, 0), 0, 0, L"0"},
      {Number(VT_BOOL, -1), kNo, 1, L"true"}, {Number(VT_BOOL, 2), kNo, 1, L"true"},
      {Number(VT_BOOL, 0), kNo, 0, L"false"}, {Real32(0.1f), kNo, kNo, L"0.1"},
      {Real32(-1234567.0f), kNo, kNo, L"-1234567"}, {Real32(3), kNo, kNo, L"3"}, {Real64(0.1), kNo, kNo, L"0.1"},
      {Real64(3.0), kNo, kNo, L"3"}, {Real64(123456789012345.0), kNo, kNo, L"123456789012345"},
      // Neither a number nor a text.
      {Number(VT_EMPTY, 0), kNo, kNo, kNo}, {Number(VT_NULL, 0), kNo, kNo, kNo}, {Date(45000.5), kNo, kNo, kNo},
      {Number(VT_CY, 10000), kNo, kNo, kNo}, {Number(VT_ERROR, 5), kNo, kNo, kNo},
      {Number(VT_UNKNOWN, 0), kNo, kNo, kNo},
      {Number(VT_DISPATCH, 0), kNo, kNo, kNo}, {Number(VT_HRESULT, 5), kNo, kNo, kNo},
      // Arrays are their first number, and their texts joined.
      {Array(VT_UI1, {Number(VT_UI1, 200), Number(VT_UI1, 1)}), kNo, 200, L"200;1"},
      {Array(VT_I2, {Number(VT_I2, -5), Number(VT_I2, 6)}), kNo, 0xFFFFFFFB, L"-5;6"},
      {Array(VT_I4, {Number(VT_I4, 10), Number(VT_I4, -1), Number(VT_I4, 31)}), kNo, 10, L"10;-1;31"},
      {Array(VT_UI4, {Number(VT_UI4, 0xFFFFFFFF)}), kNo, 0xFFFFFFFF, L"4294967295"},
      {Array(VT_I8, {Number(VT_I8, 0x100000001)}), kNo, 1, L"4294967297"},
      {Array(VT_BOOL, {Number(VT_BOOL, -1), Number(VT_BOOL, 0)}), kNo, 1, L"true;false"},
      {Array(VT_R8, {Real64(0.5), Real64(2)}), kNo, kNo, L"0.5;2"}, {Texts({L"12", L"", L"c"}), kNo, 12, L"12;;c"},
      {Texts({L"a;b"}), kNo, kNo, L"a;b"}, {Array(VT_I4, {}), kNo, kNo, L""}, {Texts({}), kNo, kNo, L""},
      {Array(VT_VARIANT, {Number(VT_I4, 3), Text(L"x"), Number(VT_NULL, 0), Real64(1.5)}), kNo, 3, L"3;x;;1.5"},
      {Array(VT_VARIANT, {Array(VT_I4, {Number(VT_I4, 8), Number(VT_I4, 9)}), Texts({L"y", L"z"})}), kNo, 8,
       L"8;9;y;z"},
      {Array(VT_VARIANT, {Array(VT_VARIANT, {Array(VT_I4, {})})}), kNo, kNo, L""},
  };
  // clang-format on
  for (const auto& one : values) {
    SCOPED_TRACE(testing::Message() << "type " << one.value.type << " bits " << one.value.bits << " elements "
                                    << one.value.elements.size());
    EXPECT_EQ(Member(one.value), one.member);
    EXPECT_EQ(Numeric(one.value), one.number);
    EXPECT_EQ(Converted(one.value), one.converted);
    EXPECT_EQ(PlainText(one.value), kNo);
  }
}

TEST_F(VariantValue, TextsAreNumbersOnlyAsAWhole) {
  // clang-format off: side by side
  const struct {
    const wchar_t* text;
    std::optional<uint32_t> number;
  } texts[] = {
      {L"0", 0}, {L"007", 7}, {L"4294967295", 0xFFFFFFFF}, {L"1000204886016", 0xE0DB6000},  // 0xE8E0DB6000
      {L"", kNo}, {L" 1", kNo}, {L"1 ", kNo}, {L"-1", kNo}, {L"+1", kNo}, {L"1.0", kNo}, {L"0x10", kNo},
      {L"20240131000000.000000+000", kNo}, {L"\x0661", kNo}};  // a digit of another script
  // clang-format on
  for (const auto& text : texts) {
    EXPECT_EQ(Numeric(Text(text.text)), text.number) << Narrow(text.text);
    EXPECT_EQ(PlainText(Text(text.text)), text.text);
    EXPECT_EQ(Converted(Text(text.text)), text.text);
    EXPECT_EQ(Member(Text(text.text)), kNo);
  }
  // A text is as long as it says, zeros included; none at all is an empty one.
  const std::wstring zero(L"1\0002", 3);
  EXPECT_EQ(PlainText(Text(zero)), zero);
  EXPECT_EQ(Numeric(Text(zero)), kNo);
  VARIANT none{};
  none.vt = VT_BSTR;
  EXPECT_EQ(TextOf(none), L"");
  EXPECT_EQ(ConvertedTextOf(none), L"");
  EXPECT_EQ(NumberOf(none), kNo);
}

TEST_F(VariantValue, ArraysOfOtherShapes) {
  // Lower bound 3: indices are the array's own.
  SAFEARRAYBOUND bounds[] = {{.cElements = 2, .lLbound = 3}, {.cElements = 2, .lLbound = 0}};
  VARIANT value{};
  value.vt = VT_ARRAY | VT_I4;
  value.parray = SafeArrayCreate(VT_I4, 1, bounds);
  for (LONG i = 3; i < 5; ++i) SafeArrayPutElement(value.parray, &i, &i);
  EXPECT_EQ(NumberOf(value), 3u);
  EXPECT_EQ(ConvertedTextOf(value), L"3;4");
  SafeArrayDestroy(value.parray);
  // Two dimensions, and no array behind the type.
  value.parray = SafeArrayCreate(VT_I4, 2, bounds);
  EXPECT_EQ(NumberOf(value), std::nullopt);
  EXPECT_EQ(ConvertedTextOf(value), std::nullopt);
  SafeArrayDestroy(value.parray);
  value.parray = nullptr;
  EXPECT_EQ(NumberOf(value), std::nullopt);
  EXPECT_EQ(ConvertedTextOf(value), std::nullopt);
  value.vt = VT_ARRAY | VT_BSTR;
  EXPECT_EQ(TextElement(value, 0), std::nullopt);
  value.parray = SafeArrayCreate(VT_BSTR, 2, bounds);
  EXPECT_EQ(TextElement(value, 3), std::nullopt);
  SafeArrayDestroy(value.parray);
}

TEST_F(VariantValue, CharacterCodesUpToTheFirstZero) {
  const auto characters = [this](const WmiValue& value) {
    return Of(value, [](const VARIANT& variant) { return CharactersOf(variant); });
  };
  const auto codes = [](VARTYPE type, std::initializer_list<int> list) {
    std::vector<WmiValue> elements;
    for (const int code : list) elements.push_back(Number(type, code));
    return Array(type, elements);
  };
  for (const VARTYPE type : {VT_UI1, VT_I2, VT_UI2, VT_I4}) {
    EXPECT_EQ(characters(codes(type, {'L', 'P', ' ', 0, 0, 'x'})), L"LP ") << type;
  }
  EXPECT_EQ(characters(codes(VT_I4, {0xE9, 0x10041, -1})), L"\u00e9A\xFFFF");
  EXPECT_EQ(characters(codes(VT_I4, {})), L"");
  EXPECT_EQ(characters(codes(VT_I4, {0})), L"");
  EXPECT_EQ(characters(Text(L"text")), L"text");
  for (const WmiValue& value : {Texts({L"a"}), Array(VT_R8, {Real64(65)}), Number(VT_I4, 65), Number(VT_NULL, 0),
                                Array(VT_VARIANT, {Number(VT_I4, 65), Text(L"b")})}) {
    EXPECT_EQ(characters(value), std::nullopt) << value.type;
  }
}

TEST_F(VariantValue, OneElementOfAnArrayOfTexts) {
  const auto element = [this](const WmiValue& value, long index) {
    return Of(value, [index](const VARIANT& variant) { return TextElement(variant, index); });
  };
  const WmiValue texts = Texts({L"a", L"", L"c"});
  EXPECT_EQ(element(texts, 0), L"a");
  EXPECT_EQ(element(texts, 1), L"");
  EXPECT_EQ(element(texts, 2), L"c");
  for (const long index : {3L, -1L, LONG_MAX, LONG_MIN}) EXPECT_EQ(element(texts, index), std::nullopt) << index;
  EXPECT_EQ(element(Text(L"abc"), 0), std::nullopt);
  EXPECT_EQ(element(Array(VT_I4, {Number(VT_I4, 1)}), 0), std::nullopt);
  EXPECT_EQ(element(Array(VT_VARIANT, {Text(L"a")}), 0), std::nullopt);
  EXPECT_EQ(element(Number(VT_NULL, 0), 0), std::nullopt);
}

}  // namespace
}  // namespace vexa::test
