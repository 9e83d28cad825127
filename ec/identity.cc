// The EC's identity, read once per machine and kept in the registry.
#include "vexa/identity.h"

#include <cstdint>
#include <optional>

#include "ec/firmware_revision.h"
#include "ec/healthy_table.h"
#include "frame/export_wall.h"
#include "frame/log.h"
#include "frame/registry.h"

namespace vexa {
namespace {

constexpr uint8_t kChipIdRegister = 0x10;
constexpr uint8_t kChipNameRegister = 0x12;  // and the three behind it
constexpr uint8_t kFirstRevisionRegister = 0x03;
constexpr uint8_t kSecondRevisionRegister = 0x04;
constexpr uint8_t kReportsRevision = 0x80;  // of the project information

std::optional<uint32_t> ReadChipId() { return ReadInfoRegister(kChipIdRegister); }

std::optional<uint32_t> ReadPackedChipName() {
  uint32_t packed = 0;
  for (uint8_t i = 0; i < sizeof packed; ++i) {
    const std::optional<uint8_t> character = ReadInfoRegister(static_cast<uint8_t>(kChipNameRegister + i));
    if (!character) return std::nullopt;
    packed = packed << 8 | *character;
  }
  return packed;
}

std::optional<uint32_t> ReadFirmwareRevision() {
  const std::optional<uint8_t> vendor = ReadInfoRegister(kProjectRegister);
  if (!vendor) return std::nullopt;
  LogInfo("Vendor BYTE = %x", *vendor);
  if (!(*vendor & kReportsRevision)) return VEXA_NO_FIRMWARE_REVISION;
  const std::optional<uint8_t> first = ReadInfoRegister(kFirstRevisionRegister);
  if (!first) return std::nullopt;
  const std::optional<uint8_t> second = ReadInfoRegister(kSecondRevisionRegister);
  if (!second) return std::nullopt;
  return FirmwareRevisionWord(*first, *second);
}

// The kept number, or the EC's, which is then kept. That it can't be stored changes nothing for this call.
uint32_t AnswerKept(const char* name, const wchar_t* value, std::optional<uint32_t> (*read)()) noexcept {
  return Guarded(name, uint32_t{VEXA_NO_ANSWER}, [&]() -> uint32_t {
    if (const std::optional<uint32_t> kept = ReadRegistryNumber(kAnalysisKey, value)) return *kept;
    const std::optional<uint32_t> fresh = read();
    if (!fresh) return VEXA_NO_ANSWER;
    WriteRegistryNumber(kAnalysisKey, value, *fresh);
    return *fresh;
  });
}

}  // namespace
}  // namespace vexa

uint32_t EC_ReadEcChipId() noexcept { return vexa::AnswerKept("EC_ReadEcChipId", L"EcChipId", vexa::ReadChipId); }

uint32_t EC_ReadEcChipName() noexcept {
  return vexa::AnswerKept("EC_ReadEcChipName", L"EcChipName", vexa::ReadPackedChipName);
}

uint32_t EC_ReadEcFwRev() noexcept {
  return vexa::AnswerKept("EC_ReadEcFwRev", L"EcFwRev", vexa::ReadFirmwareRevision);
}

uint32_t EC_ReadProjectInformation() noexcept {
  const std::optional<uint8_t> information = vexa::ReadInfoRegister(vexa::kProjectRegister);
  return information ? *information : VEXA_NO_ANSWER;
}
