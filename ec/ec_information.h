// Texts of the EC information registers.
#ifndef VEXA_EC_EC_INFORMATION_H_
#define VEXA_EC_EC_INFORMATION_H_

#include <optional>
#include <string>

namespace vexa {

// Firmware revision with the project name, up to its first zero character, at most 48 characters. Logs its failure.
// For the EC log snapshot; driver route only.
[[nodiscard]] std::optional<std::string> ReadFirmwareRevisionWithProjectName();

}  // namespace vexa

#endif  // VEXA_EC_EC_INFORMATION_H_
