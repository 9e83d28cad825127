// Counts as the text of one JSON object.
#ifndef VEXA_RADIO_COUNT_TEXT_H_
#define VEXA_RADIO_COUNT_TEXT_H_

#include <cstdint>
#include <span>
#include <string>

namespace vexa {

struct NamedCount {
  const char* name;  // ASCII
  int32_t count;
};

// {"name":"count",...}: the counts as decimal texts, keys in ascending order, no blanks.
[[nodiscard]] std::string CountText(std::span<const NamedCount> counts);

}  // namespace vexa

#endif  // VEXA_RADIO_COUNT_TEXT_H_
