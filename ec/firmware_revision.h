// The word that stands for the EC's firmware revision. Pure.
#ifndef VEXA_EC_FIRMWARE_REVISION_H_
#define VEXA_EC_FIRMWARE_REVISION_H_

#include <cstdint>

#include "vexa/identity.h"

namespace vexa {

constexpr bool IsRevisionDigit(uint8_t character) {
  return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'F');
}

// Kept: of two hexadecimal digits three texts are known, all others are one value; every other text is itself. Callers
// tell machines apart by exactly these words.
constexpr uint32_t FirmwareRevisionWord(uint8_t first, uint8_t second) {
  const uint32_t word = uint32_t{first} << 8 | second;
  if (!IsRevisionDigit(first) || !IsRevisionDigit(second)) return word;
  const bool known = word == 0x4142 || word == 0x4143 || word == 0x4346;  // "AB", "AC", "CF"
  return known ? word : VEXA_UNKNOWN_FIRMWARE_REVISION;
}

}  // namespace vexa

#endif  // VEXA_EC_FIRMWARE_REVISION_H_
