// Texts that exports return by value.
#ifndef VEXA_FRAME_TEXT_VALUE_H_
#define VEXA_FRAME_TEXT_VALUE_H_

#include <cstring>
#include <string_view>

#include "vexa/base.h"

namespace vexa {

// Cut to what the value holds.
inline VexaText TextValue(std::string_view text) noexcept {
  VexaText value{};
  text = text.substr(0, sizeof value.text - 1);
  std::memcpy(value.text, text.data(), text.size());
  return value;
}

}  // namespace vexa

#endif  // VEXA_FRAME_TEXT_VALUE_H_
