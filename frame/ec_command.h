// EC commands over the kernel driver.
#ifndef VEXA_FRAME_EC_COMMAND_H_
#define VEXA_FRAME_EC_COMMAND_H_

#include <cstddef>
#include <cstdint>
#include <optional>

#include "frame/driver_protocol.h"

namespace vexa {

// I/O status of an EC command. Any other value is the driver's own.
inline constexpr uint32_t kEcSuccess = 0;
inline constexpr uint32_t VEXAIO_STATUS_NO_INITIALIZED = 1;  // refused here: no request was sent
inline constexpr uint32_t VEXAIO_STATUS_INVALID_DATANUM = 2;
inline constexpr uint32_t kEcRequestFailed = 0x7FFFFFFF;  // the device request itself failed

// Sends one EC command: one device request, no retry, and no allocation while nobody traces.
// `data_list` holds `data_count` bytes, at most kMaxEcData, and may be null for none. `read_flag` is 1 when the command
// returns a byte. Returns the result byte, which is valid only when the status is 0, but is handed on with any driver
// status. Any thread; the driver serialises.
uint8_t RwEcCmd(uint8_t data_count, uint8_t command, const uint8_t* data_list, uint8_t read_flag,
                uint32_t* io_status) noexcept;

// The same for data of a known size: the byte, or nothing for any status but 0.
template <size_t kCount>
[[nodiscard]] std::optional<uint8_t> ReadEc(uint8_t command, const uint8_t (&data)[kCount]) noexcept {
  static_assert(kCount <= kMaxEcData);
  uint32_t status = kEcSuccess;
  const uint8_t value = RwEcCmd(kCount, command, data, 1, &status);
  return status == kEcSuccess ? std::optional(value) : std::nullopt;
}

// A command without an answer; returns whether the EC accepted it.
template <size_t kCount>
[[nodiscard]] bool WriteEc(uint8_t command, const uint8_t (&data)[kCount]) noexcept {
  static_assert(kCount <= kMaxEcData);
  uint32_t status = kEcSuccess;
  RwEcCmd(kCount, command, data, 0, &status);
  return status == kEcSuccess;
}

}  // namespace vexa

#endif  // VEXA_FRAME_EC_COMMAND_H_
