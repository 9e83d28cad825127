// Reads one catalogue row from the EC.
#ifndef VEXA_EC_TABLE_ROW_H_
#define VEXA_EC_TABLE_ROW_H_

#include <cstdint>

namespace vexa {

// Joins a byte read at step `step` to what the steps before it gave.
// Kept: shifts by 8 x step, not by 8, on every step. Right for one- and two-byte rows, and there are no longer ones.
constexpr uint32_t FoldTableByte(uint32_t accumulated, uint32_t step, uint8_t byte) {
  // Beyond four bytes a shift would leave the type's range; those bytes push the earlier ones out altogether.
  const uint32_t shifted = 8 * step < 32 ? accumulated << (8 * step) : 0;
  return shifted | byte;
}

// The offset that step `step` of a row reads: the highest address, and so the high byte, comes first.
constexpr uint8_t StepOffset(uint32_t offset, uint8_t length, uint32_t step) {
  return static_cast<uint8_t>(offset + length - 1 - step);
}

// Sends a row's exchanges, the arguments being the row's word taken apart; `value` is written when bit 7 of `group` is
// set. Returns the value, or VEXA_NO_ANSWER after the first exchange that failed.
// `failures` counts failures in a row over all rows that share it: beyond 3 nothing is sent any more.
uint32_t ReadEcTableValue(uint8_t command, uint8_t group, uint32_t offset, uint8_t length, uint8_t value,
                          uint8_t& failures) noexcept;

}  // namespace vexa

#endif  // VEXA_EC_TABLE_ROW_H_
