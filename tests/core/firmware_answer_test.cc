// The firmware's answers as text, and numbers from decimal text.
#include "wmi/firmware_answer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "wmi/decimal.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;

TEST(AnswerNumber, WholeNumbersOfThirtyOneBitsOnly) {
  EXPECT_EQ(AnswerNumber(L"0"), 0);
  EXPECT_EQ(AnswerNumber(L"255"), 255);
  EXPECT_EQ(AnswerNumber(L"2147483646"), 2147483646);
  EXPECT_EQ(AnswerNumber(L"2147483647"), 2147483647);
  // clang-format off: side by side
  for (const wchar_t* text : {
           L"", L" ", L"-1", L"-0", L"2147483648", L"4294967295", L"4294967296", L"18446744073709551616",
           L"99999999999999999999999999", L"007", L"00", L"+1", L"1.0", L"1.5", L"1e3", L"1e999", L"0x10", L"abc",
           L"12abc", L"1 2", L"1,2", L"[1]", L"[", L"{\"a\":1}", L"\"12\"", L"\"", L"true", L"null", L"\x0661",
           L"1\x00e9", L"NaN"}) {
    // clang-format on
    EXPECT_EQ(AnswerNumber(text), std::nullopt) << testing::PrintToString(std::wstring(text));
  }
  // Half a character, and a nesting deeper than any stack.
  EXPECT_EQ(AnswerNumber(std::wstring(1, static_cast<wchar_t>(0xD800))), std::nullopt);
  EXPECT_EQ(AnswerNumber(std::wstring(100000, L'[')), std::nullopt);
  EXPECT_EQ(AnswerNumber(std::wstring(100000, L'9')), std::nullopt);
}

TEST(ParseLong, TakesTheNumberAtTheBeginning) {
  EXPECT_EQ(ParseLong(L"0"), 0);
  EXPECT_EQ(ParseLong(L"1179735"), 1179735);
  EXPECT_EQ(ParseLong(L"  \t\r\n\v\f+12abc"), 12);
  EXPECT_EQ(ParseLong(L"-007.5"), -7);
  EXPECT_EQ(ParseLong(L"0x10"), 0);
  EXPECT_EQ(ParseLong(L"-0"), 0);
  EXPECT_EQ(ParseLong(L"2147483647"), 2147483647);
  EXPECT_EQ(ParseLong(L"-2147483648"), INT32_MIN);
  EXPECT_EQ(ParseLong(L"000000000000000000000000000001"), 1);
}

// What a conversion throws; "" when it does not.
std::string Thrown(std::wstring_view text) {
  try {
    (void)ParseLong(text);
    return "";
  } catch (const std::invalid_argument& error) {
    return std::string("invalid: ") + error.what();
  } catch (const std::out_of_range& error) {
    return std::string("range: ") + error.what();
  }
}

TEST(ParseLong, TextsThatAreNoNumberOrBeyondThirtyTwoBits) {
  for (const wchar_t* text : {L"", L"   ", L"-", L"+", L"--1", L"+-1", L"- 1", L"abc", L"a1", L"\x0661", L"\u00a01"}) {
    EXPECT_EQ(Thrown(text), "invalid: invalid stol argument") << testing::PrintToString(std::wstring(text));
  }
  for (const wchar_t* text : {L"2147483648", L"-2147483649", L"4294967295", L"9223372036854775808",
                              L"18446744073709551617", L"-99999999999999999999999"}) {
    EXPECT_EQ(Thrown(text), "range: stol argument out of range") << testing::PrintToString(std::wstring(text));
  }
}

TEST(WideDecimal, OfEveryWidth) {
  EXPECT_EQ(WideDecimal(uint8_t{0}), L"0");
  EXPECT_EQ(WideDecimal(uint8_t{255}), L"255");
  EXPECT_EQ(WideDecimal(int32_t{-1}), L"-1");
  EXPECT_EQ(WideDecimal(uint32_t{0xFFFFFFFF}), L"4294967295");
  EXPECT_EQ(WideDecimal(INT64_MIN), L"-9223372036854775808");
  EXPECT_EQ(WideDecimal(UINT64_MAX), L"18446744073709551615");
}

TEST(SplitVersion, AtEveryDot) {
  EXPECT_THAT(SplitVersion("K7720MBT.361"), ElementsAre("K7720MBT", "361"));
  EXPECT_THAT(SplitVersion("a.b.c"), ElementsAre("a", "b", "c"));
  EXPECT_THAT(SplitVersion("nodot"), ElementsAre("nodot"));
  EXPECT_THAT(SplitVersion(""), ElementsAre(""));
  EXPECT_THAT(SplitVersion("."), ElementsAre("", ""));
  EXPECT_THAT(SplitVersion("..x."), ElementsAre("", "", "x", ""));
  EXPECT_EQ(SplitVersion(std::string(400, '.')).size(), 401u);
}

TEST(WriteRule, OlderFirmwareOfTwoModels) {
  for (const char* version : {"K7720MBT.360", "K7720MBT.312", "K7720MBT.0", "K7720MBT.-5", "K7720MB.312", "K7720MB.0",
                              "K7720MBT.360.7", "K7720MB.312beta"}) {
    EXPECT_TRUE(FollowsOlderWriteRule(SplitVersion(version))) << version;
  }
  for (const char* version : {"K7720MBT.361", "K7720MBT.362", "K7720MBT.2147483647", "K7720MB.313", "K7720MB.360",
                              "K7720MB", "K7720MB.", "K7720MB.x", "K7720MB..312", "K7720MBT.4294967296", "K7720.1",
                              "k7720mb.1", " K7720MB.1", "K7720MBT ", "X.K7720MB.1", "", "."}) {
    EXPECT_FALSE(FollowsOlderWriteRule(SplitVersion(version))) << version;
  }
  EXPECT_FALSE(FollowsOlderWriteRule({}));
  EXPECT_FALSE(FollowsOlderWriteRule(SplitVersion("K7720MB." + std::string(400, '3'))));
}

TEST(WriteRule, OlderRefusesMinusOneAndNewerTakesZero) {
  const struct {
    const wchar_t* answer;
    bool older, newer;
  } answers[] = {
      {L"0", true, true},           {L"", true, false},   {L"1", true, false},  {L"4294967295", false, false},
      {L"4294967294", true, false}, {L"-1", true, false}, {L"00", true, false}, {L" 0", true, false}};
  for (const auto& answer : answers) {
    EXPECT_EQ(WriteAccepted(answer.answer, true), answer.older) << testing::PrintToString(std::wstring(answer.answer));
    EXPECT_EQ(WriteAccepted(answer.answer, false), answer.newer) << testing::PrintToString(std::wstring(answer.answer));
  }
}

}  // namespace
}  // namespace vexa::test
