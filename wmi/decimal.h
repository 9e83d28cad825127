// Numbers from and to decimal text. Pure.
#ifndef VEXA_WMI_DECIMAL_H_
#define VEXA_WMI_DECIMAL_H_

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "frame/line.h"

namespace vexa {

template <std::integral Number>
std::wstring WideDecimal(Number number) {
  const std::string text = NumberText(number);
  return std::wstring(text.begin(), text.end());
}

// The number at the beginning of a text, behind blanks and a sign, as the C library's conversion takes it; whatever
// follows it is ignored. Throws for a text without digits and for a number beyond 32 bits: a long of this system has
// 32 bits, and here it has them everywhere.
inline int32_t ParseLong(std::wstring_view text) {
  size_t at = 0;
  while (at < text.size() && (text[at] == L' ' || (text[at] >= L'\t' && text[at] <= L'\r'))) ++at;
  const bool negative = at < text.size() && text[at] == L'-';
  if (at < text.size() && (text[at] == L'-' || text[at] == L'+')) ++at;
  int64_t number = 0;
  bool digits = false;
  for (; at < text.size() && text[at] >= L'0' && text[at] <= L'9'; ++at) {
    digits = true;
    number = number * 10 + (text[at] - L'0');
    if (number > int64_t{1} + INT32_MAX) throw std::out_of_range("stol argument out of range");
  }
  if (!digits) throw std::invalid_argument("invalid stol argument");
  number = negative ? -number : number;
  if (number > INT32_MAX) throw std::out_of_range("stol argument out of range");
  return static_cast<int32_t>(number);
}

}  // namespace vexa

#endif  // VEXA_WMI_DECIMAL_H_
