#include "client/text.h"

#include <gtest/gtest.h>

#include <array>

namespace vexahealth {
namespace {

TEST(EscapeForTerminal, NothingThatSteersATerminalGetsThrough) {
  EXPECT_EQ(EscapeForTerminal("\x1b[2J\x1b]0;pwned\a"), "\\x1b[2J\\x1b]0;pwned\\x07");
  EXPECT_EQ(EscapeForTerminal("a\r\nb\tc\x7f"), "a\\x0d\\x0ab\\x09c\\x7f");
  EXPECT_EQ(EscapeForTerminal("\u009b31m"), "\\x9b31m");            // CSI as one character
  EXPECT_EQ(EscapeForTerminal("abc\u202edef"), "abc\\u{202e}def");  // right-to-left override
  EXPECT_EQ(EscapeForTerminal("\u2066x\u2069"), "\\u{2066}x\\u{2069}");
  EXPECT_EQ(EscapeForTerminal("\u2028\u200b\ufeff"), "\\u{2028}\\u{200b}\\u{feff}");
}

TEST(EscapeForTerminal, EveryControlCharacterIsReplaced) {
  for (int code = 0; code < 0x20; ++code) {
    const std::string text(1, static_cast<char>(code));
    EXPECT_EQ(EscapeForTerminal(text), Printf("\\x%02x", static_cast<unsigned>(code)));
  }
}

TEST(EscapeForTerminal, ADeviceCanNotFakeAnEscape) {
  EXPECT_EQ(EscapeForTerminal("\\x1b"), "\\\\x1b");
  EXPECT_EQ(EscapeForTerminal("C:\\x\x1b", Backslash::kKeep), "C:\\x\\x1b");
}

TEST(EscapeForTerminal, OrdinaryTextStays) {
  EXPECT_EQ(EscapeForTerminal("GB-4/78 100% é 電池"), "GB-4/78 100% é 電池");
}

TEST(WellFormedUtf8, ReplacesWhatIsNotUtf8) {
  EXPECT_EQ(WellFormedUtf8("ok é 電 😀"), "ok é 電 😀");
  EXPECT_EQ(WellFormedUtf8("a\xff"
                           "b"),
            "a\ufffdb");
  EXPECT_EQ(WellFormedUtf8("\xe9t\xe9"), "\ufffdt\ufffd");                    // Latin-1
  EXPECT_EQ(WellFormedUtf8("\xc0\xaf"), "\ufffd\ufffd");                      // overlong slash
  EXPECT_EQ(WellFormedUtf8("\xe0\x80\xaf"), "\ufffd\ufffd\ufffd");            // overlong in three bytes
  EXPECT_EQ(WellFormedUtf8("\xed\xa0\x80"), "\ufffd\ufffd\ufffd");            // surrogate
  EXPECT_EQ(WellFormedUtf8("\xf4\x90\x80\x80"), "\ufffd\ufffd\ufffd\ufffd");  // above the last character
  EXPECT_EQ(WellFormedUtf8("x\xe2\x82"), "x\ufffd\ufffd");                    // cut at the end
}

TEST(DisplayWidth, CountsColumns) {
  EXPECT_EQ(DisplayWidth(""), 0u);
  EXPECT_EQ(DisplayWidth("25.0 °C"), 7u);
  EXPECT_EQ(DisplayWidth("電池"), 4u);
  EXPECT_EQ(DisplayWidth("e\u0301"), 1u);  // combining accent
  EXPECT_EQ(DisplayWidth("\xff"), 1u);
  for (size_t columns = 0; columns < 6; ++columns) {
    EXPECT_EQ(FirstColumns("a電e\u0301\xff", columns),
              std::string_view("a電e\u0301\xff").substr(0, std::array<size_t, 6>{0, 1, 1, 4, 7, 8}[columns]));
  }
}

TEST(Printf, CutsInsteadOfOverflowing) {
  EXPECT_EQ(Printf("%s", std::string(300, 'x').c_str()), std::string(255, 'x'));
}

}  // namespace
}  // namespace vexahealth
