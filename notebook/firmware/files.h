// Files, registry values and texts of the server's surroundings. Texts are UTF-8 inside the server.
#ifndef NOTEBOOK_FIRMWARE_FILES_H_
#define NOTEBOOK_FIRMWARE_FILES_H_

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace firmware {

std::string Narrow(std::wstring_view text);
std::wstring Wide(std::string_view text);

std::optional<std::string> ReadWhole(const std::wstring& path);

// Replaces the file in one step, so that nobody sees half of it.
bool WriteWhole(const std::wstring& path, std::string_view text);

bool AppendTo(const std::wstring& path, std::string_view text);

// Changes whenever the file is written; empty when there is none.
std::string FileStamp(const std::wstring& path);

// A text of a key below HKEY_LOCAL_MACHINE. `value` null: the key's default value.
std::optional<std::wstring> ReadRegistry(const wchar_t* key, const wchar_t* value);
LSTATUS WriteRegistry(const wchar_t* key, const wchar_t* value, const std::wstring& text);

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_FILES_H_
