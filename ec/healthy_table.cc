#include "ec/healthy_table.h"

#include "frame/architecture.h"
#include "frame/log.h"

namespace vexa {

std::optional<uint32_t> ReadTableNumber(uint8_t group, uint8_t low_offset, uint8_t length) noexcept {
  uint32_t number = 0;
  for (uint8_t i = length; i-- > 0;) {
    const std::optional<uint8_t> byte = ReadTableByte(group, static_cast<uint8_t>(low_offset + i));
    if (!byte) return std::nullopt;
    number = number << 8 | *byte;
  }
  return number;
}

bool OnFirmwareRoute(const char* export_name) {
  if (!IsArchitectureARM64()) return false;
  LogInfo("[%s] ARM64: using WMImethods.", export_name);
  return true;
}

}  // namespace vexa
