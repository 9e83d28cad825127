// Typed reading of JSON objects; everything that does not fit is reported with its line.
#ifndef NOTEBOOK_SCENARIO_OBJECT_READER_H_
#define NOTEBOOK_SCENARIO_OBJECT_READER_H_

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "json_value.h"

namespace scenario {

// Smallest and largest value that a number may have.
struct Range {
  int64_t low;
  uint64_t high;
};

inline constexpr Range kByteRange{0, 0xFF};
inline constexpr Range kDwordRange{0, 0xFFFFFFFF};
inline constexpr Range kSignedDwordRange{INT32_MIN, 0xFFFFFFFF};
inline constexpr Range kQwordRange{INT64_MIN, UINT64_MAX};
inline constexpr Range kFailureRange{0xC0000000, 0xFFFFFFFF};  // NTSTATUS of severity "error"

// A number is a JSON integer or a text "0x...". Negative ones come as two's complement of 64 bits. `name` is
// how messages call the value.
std::optional<uint64_t> ReadNumber(const JsonValue& value, std::string_view name, Range range,
                                   Faults& faults);

// Bytes as pairs of hexadecimal digits, with blanks between pairs where it helps reading.
std::optional<std::vector<uint8_t>> ReadHex(const JsonValue& value, std::string_view name, Faults& faults);

// A text of printable ASCII characters.
std::optional<std::string> ReadText(const JsonValue& value, std::string_view name, Faults& faults);

// True when `value` is of that kind; reports it otherwise.
bool Expect(const JsonValue& value, std::string_view name, JsonValue::Kind kind, Faults& faults);

// The items of an array, or none after a report when it is no array or has more than `limit`.
const std::vector<JsonValue>& ReadArray(const JsonValue& value, std::string_view name, size_t limit,
                                        Faults& faults);

// One object with a fixed set of keys ("description" is always allowed). Unknown keys are reported at once.
class ObjectReader {
 public:
  ObjectReader(const JsonValue& value, std::string_view name, std::initializer_list<std::string_view> keys,
               Faults& faults);

  int line() const { return value_.line; }

  // The member, or null.
  const JsonValue* Find(std::string_view key) const;

  // The member; reports it when it is missing.
  const JsonValue* Require(std::string_view key) const;

  // The number; `fallback` when it is missing or bad.
  uint64_t Number(std::string_view key, Range range, uint64_t fallback) const;
  uint64_t RequireNumber(std::string_view key, Range range) const;
  bool Boolean(std::string_view key, bool fallback) const;

  // The items of an array member; none when it is missing.
  const std::vector<JsonValue>& Array(std::string_view key, size_t limit) const;

  // The one of `keys` that is there. Reports it when none is and `required`, or when there are several.
  std::string_view OneOf(std::initializer_list<std::string_view> keys, bool required) const;

 private:
  const JsonValue& value_;
  std::string name_;
  Faults& faults_;
};

// Which of the exchanges that match a rule it acts on, counted from 1: the "nth" only, all "from" the n-th on, or all.
struct Occurrences {
  uint64_t first = 1;
  uint64_t last = std::numeric_limits<uint64_t>::max();
};
Occurrences ReadOccurrences(const ObjectReader& row);

}  // namespace scenario

#endif  // NOTEBOOK_SCENARIO_OBJECT_READER_H_
