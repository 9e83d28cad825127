// The part number of the PD controller.
#include <algorithm>
#include <cstdint>
#include <optional>

#include "ec/adapter_gate.h"
#include "ec/healthy_table.h"
#include "frame/export_wall.h"
#include "vexa/adapter.h"

namespace vexa {
namespace {

constexpr char kName[] = "Adapter_Read_PD_IC_PN";
constexpr uint8_t kLengthOffset = 0x01;
constexpr uint8_t kTextOffset = 0x02;
constexpr uint32_t kMaxLength = VEXA_PD_IC_PN_CAPACITY - 1;

static_assert(kTextOffset + kMaxLength <= 0x100, "the text lies within its group");

// Nothing when an exchange failed.
std::optional<VexaPdIcPartNumber> ReadPartNumber() noexcept {
  const std::optional<uint8_t> length = ReadTableByte(kPdControllerGroup, kLengthOffset);
  if (!length) return std::nullopt;
  VexaPdIcPartNumber part{.told_length = *length, .length = std::min<uint32_t>(*length, kMaxLength), .text = {}};
  for (uint32_t i = 0; i < part.length; ++i) {
    const std::optional<uint8_t> byte = ReadTableByte(kPdControllerGroup, static_cast<uint8_t>(kTextOffset + i));
    if (!byte) return std::nullopt;
    part.text[i] = static_cast<char>(*byte);
  }
  return part;
}

}  // namespace
}  // namespace vexa

uint32_t Adapter_Read_PD_IC_PN(VexaPdIcPartNumber* record) noexcept {
  using namespace vexa;
  if (record == nullptr) return 0;
  *record = {};
  return Guarded(kName, 0u, [record]() -> uint32_t {
    if (!IsAtLeast(ReadAndLogVersion(kName), kAdapterVersion)) return 0;
    const std::optional<VexaPdIcPartNumber> part = ReadPartNumber();
    if (!part) return 0;
    *record = *part;
    return 1;
  });
}
