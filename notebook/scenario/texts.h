// Message texts from pieces.
#ifndef NOTEBOOK_SCENARIO_TEXTS_H_
#define NOTEBOOK_SCENARIO_TEXTS_H_

#include <concepts>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace scenario {

inline void AppendPiece(std::string& text, std::string_view piece) { text += piece; }
inline void AppendPiece(std::string& text, std::integral auto piece) { text += std::to_string(piece); }

template <typename... Pieces>
std::string Concat(const Pieces&... pieces) {
  std::string text;
  (AppendPiece(text, pieces), ...);
  return text;
}

// "0x" and at least `digits` digits.
inline std::string Hex(uint64_t value, int digits = 2) {
  char text[24];
  std::snprintf(text, sizeof(text), "0x%0*llx", digits, static_cast<unsigned long long>(value));
  return text;
}

}  // namespace scenario

#endif  // NOTEBOOK_SCENARIO_TEXTS_H_
