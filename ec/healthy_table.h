// Exchanges with the healthy table and the EC information registers.
#ifndef VEXA_EC_HEALTHY_TABLE_H_
#define VEXA_EC_HEALTHY_TABLE_H_

#include <cstdint>
#include <optional>

#include "ec/catalogue.h"
#include "frame/ec_command.h"
#include "vexa/base.h"

namespace vexa {

inline constexpr uint8_t kVersionRegister = 0x50;
inline constexpr uint8_t kProjectRegister = 0x51;

// One exchange each; nothing when it failed.
[[nodiscard]] inline std::optional<uint8_t> ReadInfoRegister(uint8_t number) noexcept {
  return ReadEc(kEcInfoRead, {number});
}
[[nodiscard]] inline std::optional<uint8_t> ReadTableByte(uint8_t group, uint8_t offset) noexcept {
  return ReadEc(kEcTableAccess, {group, offset, 0});
}
[[nodiscard]] inline bool WriteTableByte(uint8_t group, uint8_t offset, uint8_t value) noexcept {
  return WriteEc(kEcTableAccess, {static_cast<uint8_t>(group | kGroupWrite), offset, value});
}

// A little-endian number of `length` bytes, at most 4, read from the highest offset down; nothing after the first
// failure.
[[nodiscard]] std::optional<uint32_t> ReadTableNumber(uint8_t group, uint8_t low_offset, uint8_t length) noexcept;

[[nodiscard]] inline std::optional<uint16_t> ReadTableWord(uint8_t group, uint8_t low_offset) noexcept {
  return ReadTableNumber(group, low_offset, 2).transform([](uint32_t word) { return static_cast<uint16_t>(word); });
}

// The table's version on the driver route; VEXA_NO_ANSWER when it can't be read.
[[nodiscard]] inline uint32_t ReadTableVersion() noexcept {
  return ReadInfoRegister(kVersionRegister)
      .transform([](uint8_t version) { return uint32_t{version}; })
      .value_or(VEXA_NO_ANSWER);
}

// Whether a version stands for a table that can be read.
constexpr bool HasTable(uint32_t version) { return version != 0 && version != VEXA_NO_ANSWER; }

// Whether the EC has a table. If not, logs `failure_line`, completed by the version.
[[nodiscard]] bool PassesTableGate(const char* failure_line);

// Logs `prefix` "[name] ARM64: using WMImethods." and answers true when the firmware route serves this machine.
[[nodiscard]] bool OnFirmwareRoute(const char* export_name, const char* prefix = "");

}  // namespace vexa

#endif  // VEXA_EC_HEALTHY_TABLE_H_
