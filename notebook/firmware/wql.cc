#include "wql.h"

#include <algorithm>
#include <cstdlib>

#include "names.h"
#include "wql_tokens.h"

namespace firmware {
namespace {

constexpr int kMaxNesting = 64;

class Parser {
 public:
  explicit Parser(std::vector<Token> tokens) : tokens_(std::move(tokens)) {}

  std::optional<Query> ReadQuery() {
    Query query;
    if (!TakeWord("select") || !ReadColumns(query.columns) || !TakeWord("from") || !ReadName(query.class_name)) {
      return std::nullopt;
    }
    if (TakeWord("where")) {
      query.condition = ReadOr();
      if (!query.condition) return std::nullopt;
    }
    if (Now().kind != Token::Kind::kEnd) return std::nullopt;
    return query;
  }

 private:
  const Token& Now() const { return tokens_[at_]; }
  void Advance() {
    if (at_ + 1 < tokens_.size()) ++at_;
  }

  bool TakeWord(std::string_view word) {
    if (Now().kind != Token::Kind::kName || !SameName(Now().text, word)) return false;
    Advance();
    return true;
  }

  bool TakeSymbol(std::string_view symbol) {
    if (Now().kind != Token::Kind::kSymbol || Now().text != symbol) return false;
    Advance();
    return true;
  }

  bool ReadName(std::string& name) {
    if (Now().kind != Token::Kind::kName) return false;
    name = Now().text;
    Advance();
    return true;
  }

  bool ReadColumns(std::vector<std::string>& columns) {
    if (TakeSymbol("*")) return true;
    do {
      if (!ReadName(columns.emplace_back())) return false;
    } while (TakeSymbol(","));
    return true;
  }

  std::optional<Condition> ReadJoined(Condition::Kind kind, std::string_view word,
                                      std::optional<Condition> (Parser::*read)()) {
    Condition joined{.kind = kind};
    do {
      std::optional<Condition> part = (this->*read)();
      if (!part) return std::nullopt;
      joined.parts.push_back(*std::move(part));
    } while (TakeWord(word));
    if (joined.parts.size() == 1) return std::move(joined.parts.front());
    return joined;
  }

  std::optional<Condition> ReadOr() { return ReadJoined(Condition::Kind::kOr, "or", &Parser::ReadAnd); }
  std::optional<Condition> ReadAnd() { return ReadJoined(Condition::Kind::kAnd, "and", &Parser::ReadSingle); }

  std::optional<Condition> ReadSingle() {
    if (++nesting_ > kMaxNesting) return std::nullopt;
    std::optional<Condition> condition;
    if (TakeWord("not")) {
      if (std::optional<Condition> inner = ReadSingle()) condition = Not(*std::move(inner));
    } else if (TakeSymbol("(")) {
      condition = ReadOr();
      if (!TakeSymbol(")")) condition.reset();
    } else {
      condition = ReadComparison();
    }
    --nesting_;
    return condition;
  }

  static Condition Not(Condition inner) {
    Condition negated{.kind = Condition::Kind::kNot};
    negated.parts.push_back(std::move(inner));
    return negated;
  }

  std::optional<Condition> ReadComparison() {
    Condition condition;
    if (!ReadName(condition.property)) return std::nullopt;
    if (TakeWord("is")) {
      const bool negated = TakeWord("not");
      if (!TakeWord("null")) return std::nullopt;
      condition.comparison = Comparison::kIsNull;
      return negated ? Not(std::move(condition)) : condition;
    }
    const bool negated = TakeWord("not");
    if (negated || (Now().kind == Token::Kind::kName && SameName(Now().text, "like"))) {
      condition.comparison = Comparison::kLike;
      if (!TakeWord("like") || Now().kind != Token::Kind::kText) return std::nullopt;
    } else if (!ReadOperator(condition.comparison)) {
      return std::nullopt;
    }
    if (!ReadLiteral(condition.literal)) return std::nullopt;
    return negated ? Not(std::move(condition)) : condition;
  }

  bool ReadOperator(Comparison& comparison) {
    static constexpr std::pair<std::string_view, Comparison> kOperators[] = {
        {"=", Comparison::kEqual},      {"!=", Comparison::kNotEqual}, {"<>", Comparison::kNotEqual},
        {"<=", Comparison::kLessEqual}, {"<", Comparison::kLess},      {">=", Comparison::kGreaterEqual},
        {">", Comparison::kGreater},
    };
    for (const auto& [symbol, meaning] : kOperators) {
      if (!TakeSymbol(symbol)) continue;
      comparison = meaning;
      return true;
    }
    return false;
  }

  bool ReadLiteral(Datum& literal) {
    const Token token = Now();
    Advance();
    switch (token.kind) {
      case Token::Kind::kText:
      case Token::Kind::kNumber: literal = Datum::Text(token.text); return true;
      case Token::Kind::kName:
        if (SameName(token.text, "null")) return true;
        literal = Datum::Integer(kVtBool, SameName(token.text, "true") ? 1 : 0);
        return SameName(token.text, "true") || SameName(token.text, "false");
      default: return false;
    }
  }

  std::vector<Token> tokens_;
  size_t at_ = 0;
  int nesting_ = 0;
};

}  // namespace

std::optional<Query> ParseQuery(std::string_view text) {
  std::optional<std::vector<Token>> tokens = ReadTokens(text);
  if (!tokens) return std::nullopt;
  return Parser(*std::move(tokens)).ReadQuery();
}

void CollectProperties(const Condition& condition, std::vector<std::string>& names) {
  if (condition.kind == Condition::Kind::kComparison) names.push_back(condition.property);
  for (const Condition& part : condition.parts) CollectProperties(part, names);
}

}  // namespace firmware
