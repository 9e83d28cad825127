// VexaWinIO64.dll, loaded from the client's own folder.
#ifndef CLIENT_LIBRARY_H_
#define CLIENT_LIBRARY_H_

#include <expected>
#include <string>

#include "vexa/vexa.hpp"

namespace vexahealth {

inline constexpr wchar_t kLibraryFile[] = L"VexaWinIO64.dll";

// Loads the file at this absolute path. A library that can't be started, can't tell its version or has another major
// version counts as none. On failure: what to tell the user, in UTF-8.
[[nodiscard]] std::expected<vexa::Library, std::string> LoadVexaLibrary(const std::wstring& path);

}  // namespace vexahealth

#endif  // CLIENT_LIBRARY_H_
