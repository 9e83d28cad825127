// Texts that exports copy into a caller's buffer.
#ifndef VEXA_EC_TEXT_BUFFER_H_
#define VEXA_EC_TEXT_BUFFER_H_

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

#include "frame/export_wall.h"

namespace vexa {

// The body of an export that fills `buffer`: empties it, runs `read` and copies its text with the terminator.
// `read` must keep to the length that the export's capacity constant promises. Returns 1 when there was a text, 0 when
// not; a null buffer is 0 and reads nothing.
template <typename Read>
uint32_t FillText(const char* export_name, char* buffer, Read&& read) noexcept {
  if (buffer == nullptr) return 0;
  buffer[0] = '\0';
  return Guarded(export_name, 0u, [&]() -> uint32_t {
    const std::optional<std::string> text = read();
    if (!text) return 0;
    std::memcpy(buffer, text->c_str(), text->size() + 1);
    return 1;
  });
}

}  // namespace vexa

#endif  // VEXA_EC_TEXT_BUFFER_H_
