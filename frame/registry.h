// The few registry values of the library, all under HKEY_LOCAL_MACHINE.
#ifndef VEXA_FRAME_REGISTRY_H_
#define VEXA_FRAME_REGISTRY_H_

#include <string>

namespace vexa {

// What ReadRegistryText answers for a value that can't be read. A value that holds this very text counts as missing.
inline constexpr wchar_t kRegistryReadError[] = L"ERROR_READREG";

// The REG_SZ value, up to its first zero character; kRegistryReadError when the key or the value is missing or the
// value has another type.
[[nodiscard]] std::wstring ReadRegistryText(const wchar_t* key, const wchar_t* value);

// Whether the key can be opened for reading.
[[nodiscard]] bool RegistryKeyOpens(const wchar_t* key);

// Stores a REG_SZ value, its length counted with the terminator; creates the key when it can't be opened.
// Returns whether it was stored.
bool WriteRegistryText(const wchar_t* key, const wchar_t* value, const std::wstring& text);

}  // namespace vexa

#endif  // VEXA_FRAME_REGISTRY_H_
