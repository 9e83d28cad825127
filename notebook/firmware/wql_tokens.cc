#include "wql_tokens.h"

#include <cctype>

namespace firmware {
namespace {

bool IsNamePart(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// A text in quotes of either kind. A backslash before a quote or another backslash takes that character as it is.
std::optional<Token> ReadQuoted(std::string_view text, size_t& at) {
  const char quote = text[at++];
  Token token{Token::Kind::kText};
  for (; at < text.size(); ++at) {
    if (text[at] == quote) {
      ++at;
      return token;
    }
    const bool escape = text[at] == '\\' && at + 1 < text.size();
    if (escape && (text[at + 1] == '\\' || text[at + 1] == '"' || text[at + 1] == '\'')) ++at;
    token.text += text[at];
  }
  return std::nullopt;
}

Token ReadWord(std::string_view text, size_t& at) {
  const size_t first = at;
  while (at < text.size() && IsNamePart(text[at])) ++at;
  return {Token::Kind::kName, std::string(text.substr(first, at - first))};
}

Token ReadNumber(std::string_view text, size_t& at) {
  const size_t first = at++;
  while (at < text.size() && (IsDigit(text[at]) || text[at] == '.')) ++at;
  return {Token::Kind::kNumber, std::string(text.substr(first, at - first))};
}

std::optional<Token> ReadSymbol(std::string_view text, size_t& at) {
  for (std::string_view symbol : {"<=", ">=", "<>", "!=", "<", ">", "=", "*", ",", "(", ")"}) {
    if (!text.substr(at).starts_with(symbol)) continue;
    at += symbol.size();
    return Token{Token::Kind::kSymbol, std::string(symbol)};
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::vector<Token>> ReadTokens(std::string_view text) {
  std::vector<Token> tokens;
  for (size_t at = 0; at < text.size();) {
    const char c = text[at];
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
      ++at;
      continue;
    }
    std::optional<Token> token;
    if (c == '"' || c == '\'') {
      token = ReadQuoted(text, at);
    } else if (IsDigit(c) || (c == '-' && at + 1 < text.size() && IsDigit(text[at + 1]))) {
      token = ReadNumber(text, at);
    } else if (IsNamePart(c)) {
      token = ReadWord(text, at);
    } else {
      token = ReadSymbol(text, at);
    }
    if (!token) return std::nullopt;
    tokens.push_back(*std::move(token));
  }
  tokens.emplace_back();
  return tokens;
}

}  // namespace firmware
