// ACPI methods of the firmware through the device \\.\OBXACPI, which each call opens and closes for itself.
#ifndef VEXA_FRAME_ACPI_CHANNEL_H_
#define VEXA_FRAME_ACPI_CHANNEL_H_

#include <cstddef>
#include <cstdint>
#include <span>

namespace vexa {

// Every method returns 1 when the request succeeded, 0 when the device can't be opened or the request failed; an answer
// of less than 4 bytes is the result 0. Any thread.

// DSTS with the caller's value.
uint32_t AcpiDsts(uint32_t argument, uint32_t* result);
// DSTS with a fixed first argument and the caller's value.
uint32_t AcpiDstsWithValue(uint32_t value, uint32_t* result);
// DEVS with a fixed first argument and the caller's value.
uint32_t AcpiDevs(uint32_t value, uint32_t* result);

// Any method. `name` has four characters; `arguments` are sent as they are. Copies as many result bytes as both the
// answer and `result` hold; `copied` receives their number.
uint32_t AcpiMethod(const char (&name)[5], std::span<const std::byte> arguments, std::span<std::byte> result,
                    size_t* copied);

}  // namespace vexa

#endif  // VEXA_FRAME_ACPI_CHANNEL_H_
