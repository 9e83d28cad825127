// A JSON document in which every value knows its line.
#ifndef NOTEBOOK_SCENARIO_JSON_VALUE_H_
#define NOTEBOOK_SCENARIO_JSON_VALUE_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "faults.h"

namespace scenario {

struct JsonValue {
  enum class Kind { kNull, kBoolean, kInteger, kFraction, kText, kArray, kObject };

  Kind kind = Kind::kNull;
  int line = 0;
  bool boolean = false;
  bool negative = false;           // kInteger: the sign of `magnitude`
  uint64_t magnitude = 0;          // kInteger
  double real = 0;                 // kFraction
  std::string text{};              // kText
  std::vector<JsonValue> items{};  // kArray, and the members of kObject in the order of the file
  std::string key{};               // of a member
  int key_line = 0;
};

// Parses a whole document. Syntax faults, keys given twice, nesting beyond kMaxDepth and objects beyond
// kMaxMembers are reported; the result is empty when the document cannot be used at all.
std::optional<JsonValue> ParseJson(std::string_view text, Faults& faults);

inline constexpr size_t kMaxDepth = 32;
inline constexpr size_t kMaxMembers = 1024;

// "a number", "an object", ... for messages.
std::string_view KindName(JsonValue::Kind kind);

}  // namespace scenario

#endif  // NOTEBOOK_SCENARIO_JSON_VALUE_H_
