// The words of a WQL query.
#ifndef NOTEBOOK_FIRMWARE_WQL_TOKENS_H_
#define NOTEBOOK_FIRMWARE_WQL_TOKENS_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace firmware {

struct Token {
  enum class Kind { kName, kNumber, kText, kSymbol, kEnd };

  Kind kind = Kind::kEnd;
  std::string text{};
};

// The last token is kEnd. Nothing when a text has no end or a character belongs nowhere.
std::optional<std::vector<Token>> ReadTokens(std::string_view text);

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_WQL_TOKENS_H_
