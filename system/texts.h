// Texts and numbers of the system's state. Pure.
#ifndef VEXA_SYSTEM_TEXTS_H_
#define VEXA_SYSTEM_TEXTS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "vexa/system.h"

namespace vexa {

// The second of the pieces that "_" parts: of a package's full name (name, version, architecture, resource, publisher)
// the version. Nothing when there are fewer than two pieces.
constexpr std::optional<std::wstring_view> PackageVersion(std::wstring_view full_name) {
  const size_t end_of_name = full_name.find(L'_');
  if (end_of_name == std::wstring_view::npos) return std::nullopt;
  const std::wstring_view rest = full_name.substr(end_of_name + 1);
  return rest.substr(0, rest.find(L'_'));
}

// Percent of a scalar between 0 and 1, cut to a whole number; nothing when the scalar is no number. Beyond the range:
// its nearer end.
constexpr std::optional<int32_t> VolumePercent(float scalar) {
  if (scalar != scalar) return std::nullopt;
  if (scalar <= 0.0F) return 0;
  return scalar >= 1.0F ? 100 : static_cast<int32_t>(scalar * 100.0);
}

struct CalendarTime {
  int year, month, day, hour, minute, second;
};

// "2026-02-03 09:05:00" with its terminator. Every number keeps to its places: a year beyond 9999 shows its last four.
constexpr std::array<char, VEXA_LOCAL_TIME_CAPACITY> TimeText(const CalendarTime& time) {
  std::array<char, VEXA_LOCAL_TIME_CAPACITY> text{"0000-00-00 00:00:00"};
  const auto put = [&text](int last_place, int places, int number) {
    for (int i = 0; i < places; ++i, number /= 10) text[last_place - i] = static_cast<char>('0' + number % 10);
  };
  put(3, 4, time.year);
  put(6, 2, time.month);
  put(9, 2, time.day);
  put(12, 2, time.hour);
  put(15, 2, time.minute);
  put(18, 2, time.second);
  return text;
}

}  // namespace vexa

#endif  // VEXA_SYSTEM_TEXTS_H_
