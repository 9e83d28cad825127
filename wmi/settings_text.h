// Values of the settings as they are kept outside the firmware. Pure.
#ifndef VEXA_WMI_SETTINGS_TEXT_H_
#define VEXA_WMI_SETTINGS_TEXT_H_

#include <cstdint>
#include <optional>
#include <string_view>

namespace vexa {

// The charge limit that the hotkey utility keeps: 100, 80 or 60; 100 for every other text.
[[nodiscard]] constexpr uint32_t ChargeLimitOf(std::wstring_view text) {
  if (text == L"80") return 80;
  if (text == L"60") return 60;
  return 100;
}

// The quiet-fan mode that the hotkey utility keeps: 1, 2 or 3; 0 for every other text.
[[nodiscard]] constexpr uint32_t QuietFanModeOf(std::wstring_view text) {
  return text.size() == 1 && text[0] >= L'1' && text[0] <= L'3' ? static_cast<uint32_t>(text[0] - L'0') : 0;
}

// The first number of a setting file; nothing when there is none or it is beyond 32 bits.
[[nodiscard]] constexpr std::optional<uint32_t> FirstNumber(std::string_view text) {
  const size_t begin = text.find_first_of("0123456789");
  if (begin == std::string_view::npos) return std::nullopt;
  uint64_t number = 0;
  for (size_t i = begin; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
    number = number * 10 + static_cast<uint64_t>(text[i] - '0');
    if (number > UINT32_MAX) return std::nullopt;
  }
  return static_cast<uint32_t>(number);
}

}  // namespace vexa

#endif  // VEXA_WMI_SETTINGS_TEXT_H_
