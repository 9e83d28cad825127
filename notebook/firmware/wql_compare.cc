// Which rows meet a condition.
#include <algorithm>
#include <compare>

#include "names.h"
#include "wql.h"

namespace firmware {
namespace {

// One element of a pattern at `at`: advances it and tells whether `c` fits. "[a-f]" and "[^a-f]" are sets.
bool FitsElement(std::string_view pattern, size_t& at, char c) {
  if (pattern[at] == '_') return ++at, true;
  const size_t close = pattern[at] == '[' ? pattern.find(']', at + 2) : std::string_view::npos;
  if (close == std::string_view::npos) return UpperLetter(pattern[at++]) == c;
  std::string_view set = pattern.substr(at + 1, close - at - 1);
  at = close + 1;
  const bool negated = set.size() > 1 && set.starts_with('^');
  if (negated) set.remove_prefix(1);
  bool found = false;
  for (size_t i = 0; i < set.size(); ++i) {
    const bool range = i + 2 < set.size() && (set[i + 1] == '-' || set[i + 1] == '=');
    const char low = UpperLetter(set[i]);
    const char high = range ? UpperLetter(set[i + 2]) : low;
    found |= low <= c && c <= high;
    if (range) i += 2;
  }
  return found != negated;
}

// The last "%" that was passed is tried again one character further whenever the rest does not fit.
bool Like(std::string_view text, std::string_view pattern) {
  size_t at = 0;
  size_t position = 0;
  size_t star = std::string_view::npos;
  size_t star_position = 0;
  while (position < text.size()) {
    if (at < pattern.size() && pattern[at] == '%') {
      star = ++at;
      star_position = position;
    } else if (at < pattern.size() && FitsElement(pattern, at, UpperLetter(text[position]))) {
      ++position;
    } else if (star != std::string_view::npos) {
      at = star;
      position = ++star_position;
    } else {
      return false;
    }
  }
  return std::ranges::all_of(pattern.substr(at), [](char c) { return c == '%'; });
}

// The order of a property's value and a literal that has been converted to its type.
std::partial_ordering Order(const Datum& value, const Datum& literal, Cim base) {
  if (const std::optional<IntegerRange> range = RangeOf(base)) {
    const uint64_t a = UnsignedOf(value, base).value_or(0);
    const uint64_t b = UnsignedOf(literal, base).value_or(0);
    if (range->low == 0) return a <=> b;
    const uint64_t sign = range->high + 1;
    return (a ^ sign) <=> (b ^ sign);
  }
  if (base == Cim::kReal32 || base == Cim::kReal64) return value.AsReal() <=> literal.AsReal();
  if (base == Cim::kBoolean) return value.bits <=> literal.bits;
  return UpperCase(*value.text) <=> UpperCase(*literal.text);
}

bool Holds(Comparison comparison, std::partial_ordering order) {
  switch (comparison) {
    case Comparison::kEqual: return order == 0;
    case Comparison::kNotEqual: return order != 0;
    case Comparison::kLess: return order < 0;
    case Comparison::kLessEqual: return order <= 0;
    case Comparison::kGreater: return order > 0;
    case Comparison::kGreaterEqual: return order >= 0;
    default: return false;
  }
}

bool Compares(const Condition& condition, const ClassShape& shape, const Row& row) {
  const auto property =
      std::ranges::find_if(shape.properties, [&](const Property& p) { return SameName(p.name, condition.property); });
  const bool known = property != shape.properties.end();
  const Datum value = known ? row[static_cast<size_t>(property - shape.properties.begin())] : Datum{};
  if (condition.comparison == Comparison::kIsNull) return value.vt == kVtNull;
  if (!known || value.vt != DeliveredAs(property->type) || property->type.array) return false;
  if (value.vt == kVtBstr && !value.text) return false;
  if (condition.comparison == Comparison::kLike) {
    return value.vt == kVtBstr && Like(*value.text, *condition.literal.text);
  }
  const std::expected<Datum, uint32_t> literal = Convert(condition.literal, property->type);
  if (!literal || literal->vt == kVtNull) return false;
  return Holds(condition.comparison, Order(value, *literal, property->type.base));
}

}  // namespace

bool Meets(const Condition& condition, const ClassShape& shape, const Row& row) {
  const auto meets = [&](const Condition& part) { return Meets(part, shape, row); };
  switch (condition.kind) {
    case Condition::Kind::kAnd: return std::ranges::all_of(condition.parts, meets);
    case Condition::Kind::kOr: return std::ranges::any_of(condition.parts, meets);
    case Condition::Kind::kNot: return !meets(condition.parts.front());
    case Condition::Kind::kComparison: return Compares(condition, shape, row);
  }
  return false;
}

}  // namespace firmware
