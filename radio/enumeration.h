// Enumerations of the system, filled in by drivers.
#ifndef VEXA_RADIO_ENUMERATION_H_
#define VEXA_RADIO_ENUMERATION_H_

#include <cstdint>
#include <cstring>

namespace vexa {

// The number that stands there, which need not be one that the enumeration can hold.
template <typename Enumeration>
[[nodiscard]] uint32_t NumberIn(const Enumeration& field) noexcept {
  uint32_t number = 0;
  static_assert(sizeof field == sizeof number);
  std::memcpy(&number, &field, sizeof number);
  return number;
}

}  // namespace vexa

#endif  // VEXA_RADIO_ENUMERATION_H_
