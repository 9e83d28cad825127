#include "client/library.h"

#include <utility>

#include "client/machine.h"
#include "client/text.h"

namespace vexahealth {
namespace {

std::string WhyNotLoaded(const std::wstring& path, DWORD error) {
  const std::string file = WideToUtf8(path);
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_MOD_NOT_FOUND:
      if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) return file + " is missing";
      return file + " can't be loaded: a library that it needs is missing (error " + std::to_string(error) + ")";
    case ERROR_BAD_EXE_FORMAT: return file + " can't be loaded: it is damaged or made for another machine (error 193)";
    case ERROR_PROC_NOT_FOUND: return file + " can't be loaded: a library that it needs is too old (error 127)";
    case ERROR_ACCESS_DENIED: return file + " can't be loaded: access is denied (error 5)";
    default: return file + " can't be loaded (error " + std::to_string(error) + ")";
  }
}

}  // namespace

std::expected<vexa::Library, std::string> LoadVexaLibrary(const std::wstring& path) {
  auto library = vexa::Library::Load(path);
  if (!library) return std::unexpected(WhyNotLoaded(path, library.error().code));
  for (const char* name : {"GetIoDllVersion", "ShutdownWinIo", "InitializeWinIo"}) {
    if (library->Find(name) != nullptr) continue;
    return std::unexpected(WideToUtf8(path) + " does not export " + name + ": it is another library or a damaged one");
  }
  const uint32_t version = *library->GetIoDllVersion();
  if (version >> 16 != VEXA_IO_DLL_VERSION >> 16) {
    return std::unexpected(WideToUtf8(path) + Printf(" has interface version %u.%u, this client needs %u.x",
                                                     version >> 16, version & 0xFFFF, VEXA_IO_DLL_VERSION >> 16));
  }
  return std::move(*library);
}

}  // namespace vexahealth
