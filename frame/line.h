// Builds the text of a line piece by piece. No formatting library: each costs more than the rest of this one.
#ifndef VEXA_FRAME_LINE_H_
#define VEXA_FRAME_LINE_H_

#include <charconv>
#include <concepts>
#include <string>
#include <string_view>

namespace vexa {

template <std::integral Number>
std::string NumberText(Number number, int base = 10) {
  char digits[24];
  const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, number, base);
  return std::string(digits, end.ptr);
}

// Lower-case hexadecimal without leading zeros and without a prefix.
template <std::unsigned_integral Number>
std::string HexText(Number number) {
  return NumberText(number, 16);
}

// The pieces one after the other; numbers in decimal.
template <typename Char, typename... Pieces>
std::basic_string<Char> LineOf(const Pieces&... pieces) {
  std::basic_string<Char> line;
  const auto append = [&line](const auto& piece) {
    if constexpr (std::integral<std::remove_cvref_t<decltype(piece)>>) {
      const std::string digits = NumberText(piece);
      line.append(digits.begin(), digits.end());
    } else {
      line += std::basic_string_view<Char>(piece);
    }
  };
  (append(pieces), ...);
  return line;
}

template <typename... Pieces>
std::string Line(const Pieces&... pieces) {
  return LineOf<char>(pieces...);
}

template <typename... Pieces>
std::wstring WideLine(const Pieces&... pieces) {
  return LineOf<wchar_t>(pieces...);
}

}  // namespace vexa

#endif  // VEXA_FRAME_LINE_H_
