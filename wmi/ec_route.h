// The EC through the firmware's ATD_STS class: the route of ARM64 machines.
//
// Every operation is one method call with its own connection: slow, and up to two waits of 5 seconds when the firmware
// hangs. Stateless. Any thread but one of a single-threaded apartment.
#ifndef VEXA_WMI_EC_ROUTE_H_
#define VEXA_WMI_EC_ROUTE_H_

#include <cstdint>
#include <string>

namespace vexa {

// Version of the EC's firmware as text; empty on failure.
std::wstring ATD_STS_ec_get_version() noexcept;

// The answer's text; empty on failure.
std::wstring ATD_STS_ec_read(uint8_t command_code, uint8_t param0) noexcept;

// Whether the firmware accepted the byte: 1 or 0.
uint32_t ATD_STS_ec_write(uint8_t command_code, uint8_t param0, uint8_t param1) noexcept;

// Gauge registers by the Smart Battery Data standard (SBS): `command_code` is the register, `param0` the length of its
// value in bytes (or, by index, the byte of a block). 0 also on failure.
uint32_t ATD_STS_battery_read_byte(uint8_t command_code, uint8_t param0) noexcept;
uint32_t ATD_STS_battery_read_by_index(uint8_t command_code, uint8_t param0) noexcept;
uint32_t ATD_STS_battery_write_byte(uint8_t command_code, uint8_t param0) noexcept;

}  // namespace vexa

#endif  // VEXA_WMI_EC_ROUTE_H_
