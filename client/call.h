// Calls one export as its row says.
#ifndef CLIENT_CALL_H_
#define CLIENT_CALL_H_

#include <string>
#include <string_view>

#include "client/reading.h"

namespace vexahealth {

// Turns a text in the system's active code page into UTF-8.
using TextDecoder = std::string (*)(std::string_view);

// Turns a wide text into UTF-8.
using WideDecoder = std::string (*)(std::wstring_view);

// The flag for exports that use COM: they initialise it for the call. The client itself leaves COM alone.
inline constexpr uint32_t kInitializeCom = 1;

// Form::kMissingExport when `function` is null. Each call takes the decoder of its own signature only.
[[nodiscard]] Answer Call(const Row& row, AnyExport function, TextDecoder decode, WideDecoder decode_wide);

}  // namespace vexahealth

#endif  // CLIENT_CALL_H_
