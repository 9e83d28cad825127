// Texts from outside: checked, made harmless, measured.
#ifndef CLIENT_TEXT_H_
#define CLIENT_TEXT_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace vexahealth {

[[gnu::format(printf, 1, 2)]] std::string Printf(const char* format, ...);

// The same text with U+FFFD for every byte that is not part of well-formed UTF-8.
std::string WellFormedUtf8(std::string_view text);

enum class Backslash { kDouble, kKeep };

// The text with everything replaced that could steer a terminal or reorder the line: control characters (C0,
// DEL, C1), line and paragraph separators, invisible and bidirectional formatting characters become \x1b or
// \u{202e}. A doubled backslash keeps the result unambiguous; paths keep theirs single.
std::string EscapeForTerminal(std::string_view text, Backslash backslash = Backslash::kDouble);

// Columns that the text takes on a terminal: 0 for combining marks, 2 for East Asian wide characters and
// emoji.
size_t DisplayWidth(std::string_view text);

// What of the text fits into so many columns.
std::string_view FirstColumns(std::string_view text, size_t columns);

}  // namespace vexahealth

#endif  // CLIENT_TEXT_H_
