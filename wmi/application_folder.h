// The application folder of the signed-in user, and the number files in it.
#ifndef VEXA_WMI_APPLICATION_FOLDER_H_
#define VEXA_WMI_APPLICATION_FOLDER_H_

#include <cstdint>
#include <optional>
#include <string>

namespace vexa {

// The stored path; nothing when there is none.
[[nodiscard]] std::optional<std::wstring> ApplicationFolder(uint32_t com_flag);

// Whether there is one, and it is a folder that exists. Logs.
[[nodiscard]] bool FolderExists(const std::optional<std::wstring>& folder);

// One decimal number per file. Reading takes the first number; nothing when the file or a number is missing.
[[nodiscard]] std::optional<uint32_t> ReadNumberFile(const std::wstring& path);
[[nodiscard]] bool WriteNumberFile(const std::wstring& path, int32_t number);

}  // namespace vexa

#endif  // VEXA_WMI_APPLICATION_FOLDER_H_
