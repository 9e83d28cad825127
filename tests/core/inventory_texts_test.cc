// What the inventory makes of texts, and that a text can't leave its place in a query.
#include "inventory/texts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vexa {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(InventoryTexts, PiecesAndBlanks) {
  EXPECT_THAT(Pieces(L"", L';'), IsEmpty());
  EXPECT_THAT(Pieces(L"a", L';'), ElementsAre(L"a"));
  EXPECT_THAT(Pieces(L"a;;b;", L';'), ElementsAre(L"a", L"", L"b", L""));
  EXPECT_THAT(Pieces(L";", L';'), ElementsAre(L"", L""));
  EXPECT_EQ(Trimmed(L" \t a b \r\n"), L"a b");
  EXPECT_EQ(Trimmed(std::wstring_view(L"\0a\0", 3)), L"a");
  EXPECT_EQ(Trimmed(L"  "), L"");
}

// What a query's reader takes a literal's characters for: a backslash takes the next character as it is.
std::optional<std::wstring> ReadBack(const std::wstring& literal) {
  std::wstring text;
  for (size_t i = 0; i < literal.size(); ++i) {
    if (literal[i] == L'\'' || literal[i] == L'"') return std::nullopt;
    if (literal[i] == L'\\' && ++i == literal.size()) return std::nullopt;
    text += literal[i];
  }
  return text;
}

TEST(InventoryTexts, LiteralsStandForTheirText) {
  EXPECT_EQ(QueryLiteral(L"\\\\?\\Volume{a}\\"), L"\\\\\\\\?\\\\Volume{a}\\\\");
  EXPECT_EQ(QueryLiteral(L"it's \"x\""), L"it\\'s \\\"x\\\"");
  EXPECT_EQ(QueryPattern(L"50%_[x]^-"), L"50[%][_][[]x]^-");
  // Every text of four of these characters.
  constexpr std::wstring_view kCharacters = L"\\'\"%_[]a ";
  const size_t count = kCharacters.size();
  for (size_t i = 0; i < count * count * count * count; ++i) {
    const std::wstring text = {kCharacters[i % count], kCharacters[i / count % count],
                               kCharacters[i / count / count % count], kCharacters[i / count / count / count]};
    EXPECT_EQ(ReadBack(QueryLiteral(text)), text);
    EXPECT_TRUE(ReadBack(QueryPattern(text)));
  }
}

TEST(InventoryTexts, CounterNames) {
  EXPECT_EQ(CounterName(L"Intel(R) Wi-Fi 6E AX211 160MHz #2"), L"Intel[R] Wi-Fi 6E AX211 160MHz _2");
  EXPECT_EQ(CounterName(L"a/b\\c"), L"a_b_c");
}

TEST(InventoryTexts, Loads) {
  EXPECT_EQ(SumOfLoads(L"0"), 0u);
  EXPECT_EQ(SumOfLoads(L"1,a;2,b;97,c"), 100u);
  EXPECT_EQ(SumOfLoads(L"1,a;2,b;96,c"), 99u);
  EXPECT_EQ(SumOfLoads(L"99999999999999999999999,a;1,b"), 100u);
  EXPECT_EQ(SumOfLoads(L"x;;-5,a;,;7,b"), 7u);
}

TEST(InventoryTexts, ChassisForms) {
  for (uint32_t type = 0; type < 300; ++type) {
    const bool notebook = type == 10 || type == 30 || type == 31 || type == 32;
    const bool desktop = type == 3 || type == 13 || type == 35;
    EXPECT_STREQ(ChassisForm(type), notebook ? L"Notebook" : desktop ? L"Desktop" : L"unknown") << type;
  }
}

}  // namespace
}  // namespace vexa
