// The battery gauge behind the EC: block reads by the EC's SMBus pass-through.
#ifndef VEXA_EC_GAUGE_PASSTHROUGH_H_
#define VEXA_EC_GAUGE_PASSTHROUGH_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace vexa {

// Names by the Smart Battery Data standard (SBS 1.1); the status words as the common gauges have them.
enum class GaugeRegister : uint8_t {
  kManufacturerName = 0x20,
  kDeviceName = 0x21,
  kSafetyStatus = 0x51,
  kPermanentFailureStatus = 0x53,
};

inline constexpr size_t kMaxGaugeBlock = 32;  // of an SMBus block

struct GaugeBlock {
  std::array<uint8_t, kMaxGaugeBlock> bytes{};
  size_t size = 0;
};

// The register's value: one exchange for its length, one that selects it, one per byte. A longer value is cut.
// Nothing after the first exchange that failed. Driver route only.
[[nodiscard]] std::optional<GaugeBlock> ReadGaugeBlock(GaugeRegister gauge_register) noexcept;

// A block as text: up to its first zero byte.
[[nodiscard]] std::string BlockText(const GaugeBlock& block);

// A block as a number: little-endian, at most four bytes. Nothing for an empty block.
[[nodiscard]] std::optional<uint32_t> BlockNumber(const GaugeBlock& block) noexcept;

}  // namespace vexa

#endif  // VEXA_EC_GAUGE_PASSTHROUGH_H_
