#include "ec/healthy_table.h"

#include "frame/architecture.h"
#include "frame/line.h"
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

bool PassesTableGate(const char* failure_line) {
  const uint32_t version = ReadTableVersion();
  if (HasTable(version)) return true;
  LogBuilt(TraceLevel::kVerbose, [&] { return Line(failure_line, version); });
  return false;
}

bool OnFirmwareRoute(const char* export_name, const char* prefix) {
  if (!IsArchitectureARM64()) return false;
  LogInfo("%s[%s] ARM64: using WMImethods.", prefix, export_name);
  return true;
}

}  // namespace vexa
