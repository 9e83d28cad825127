// The few registry values of the library, all under HKEY_LOCAL_MACHINE.
#ifndef VEXA_FRAME_REGISTRY_H_
#define VEXA_FRAME_REGISTRY_H_

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>

namespace vexa {

// What ReadRegistryText answers for a value that can't be read. A value that holds this very text counts as missing.
inline constexpr wchar_t kRegistryReadError[] = L"ERROR_READREG";

// Where the library keeps what it learned about the machine.
inline constexpr wchar_t kAnalysisKey[] = L"SOFTWARE\\Vexa\\Vexa System Control Interface\\VexaSystemAnalysis";

// The REG_SZ value, up to its first zero character; kRegistryReadError when the key or the value is missing or the
// value has another type.
[[nodiscard]] std::wstring ReadRegistryText(const wchar_t* key, const wchar_t* value);

// The same of an open key; nothing when the value is missing or has another type.
[[nodiscard]] std::optional<std::wstring> ReadTextValue(HKEY key, const wchar_t* value);

// Whether the key can be opened for reading.
[[nodiscard]] bool RegistryKeyOpens(const wchar_t* key);

// Stores a REG_SZ value, its length counted with the terminator; creates the key when it can't be opened.
// Returns whether it was stored.
bool WriteRegistryText(const wchar_t* key, const wchar_t* value, const std::wstring& text);

// The REG_DWORD value, or the number in a REG_SZ that holds decimal digits and nothing else; nothing when the key or
// the value is missing, or the value is neither.
[[nodiscard]] std::optional<uint32_t> ReadRegistryNumber(const wchar_t* key, const wchar_t* value);

// Stores a REG_DWORD value as WriteRegistryText does.
bool WriteRegistryNumber(const wchar_t* key, const wchar_t* value, uint32_t number);

}  // namespace vexa

#endif  // VEXA_FRAME_REGISTRY_H_
