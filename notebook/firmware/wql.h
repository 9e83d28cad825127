// WQL queries for rows of a class.
#ifndef NOTEBOOK_FIRMWARE_WQL_H_
#define NOTEBOOK_FIRMWARE_WQL_H_

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model.h"

namespace firmware {

enum class Comparison { kEqual, kNotEqual, kLess, kLessEqual, kGreater, kGreaterEqual, kLike, kIsNull };

// A comparison of a property with a literal, or several conditions joined.
struct Condition {
  enum class Kind { kComparison, kAnd, kOr, kNot };

  Kind kind = Kind::kComparison;
  std::string property{};
  Comparison comparison = Comparison::kEqual;
  Datum literal{};  // a text, a decimal number as a text, a truth value or null
  std::vector<Condition> parts{};
};

struct Query {
  std::vector<std::string> columns{};  // empty for "*"
  std::string class_name{};
  std::optional<Condition> condition{};
};

// Nothing when the text is no "select ... from ... [where ...]".
std::optional<Query> ParseQuery(std::string_view text);

// The properties that the condition names.
void CollectProperties(const Condition& condition, std::vector<std::string>& names);

// Whether a row of the class meets the condition. Properties that the class does not have are null. Comparisons with
// null are never met.
bool Meets(const Condition& condition, const ClassShape& shape, const Row& row);

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_WQL_H_
