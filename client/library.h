// VexaWinIO64.dll, loaded from the client's own folder.
#ifndef CLIENT_LIBRARY_H_
#define CLIENT_LIBRARY_H_

#include <expected>
#include <memory>
#include <string>

#include "client/catalogue.h"
#include "vexa/vexa.h"

namespace vexahealth {

inline constexpr wchar_t kLibraryFile[] = L"VexaWinIO64.dll";

// The loaded library. The named exports are always there.
struct Library {
  std::shared_ptr<void> module;  // freed with the last copy of it and of `resolve`
  decltype(&InitializeWinIo) initialize = nullptr;
  decltype(&ShutdownWinIo) shutdown = nullptr;
  decltype(&GetIoDllVersion) interface_version = nullptr;
  Resolver resolve;
};

// Loads the file at this absolute path and resolves its exports. Its own dependencies come from its folder
// and the system's, never from the current folder or the PATH. On failure: what to tell the user, in UTF-8.
[[nodiscard]] std::expected<Library, std::string> LoadVexaLibrary(const std::wstring& path);

}  // namespace vexahealth

#endif  // CLIENT_LIBRARY_H_
