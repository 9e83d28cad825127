#include "client/library.h"

#include <windows.h>

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

AnyExport Resolve(const std::shared_ptr<void>& module, const char* name) {
  return reinterpret_cast<AnyExport>(GetProcAddress(static_cast<HMODULE>(module.get()), name));
}

template <typename Declared>
bool ResolveNamed(const std::shared_ptr<void>& module, const char* name, Declared& function) {
  function = reinterpret_cast<Declared>(Resolve(module, name));
  return function != nullptr;
}

}  // namespace

std::expected<Library, std::string> LoadVexaLibrary(const std::wstring& path) {
  const HMODULE module =
      LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (module == nullptr) return std::unexpected(WhyNotLoaded(path, GetLastError()));
  Library library;
  library.module = std::shared_ptr<void>(module, [](void* handle) { FreeLibrary(static_cast<HMODULE>(handle)); });

  const char* lacking = nullptr;
  if (!ResolveNamed(library.module, "InitializeWinIo", library.initialize)) lacking = "InitializeWinIo";
  if (!ResolveNamed(library.module, "ShutdownWinIo", library.shutdown)) lacking = "ShutdownWinIo";
  if (!ResolveNamed(library.module, "GetIoDllVersion", library.interface_version)) lacking = "GetIoDllVersion";
  if (lacking != nullptr) {
    return std::unexpected(WideToUtf8(path) + " does not export " + lacking +
                           ": it is another library or a damaged one");
  }
  const uint32_t version = library.interface_version();
  if (version >> 16 != VEXA_IO_DLL_VERSION >> 16) {
    return std::unexpected(WideToUtf8(path) + Printf(" has interface version %u.%u, this client needs %u.x",
                                                     version >> 16, version & 0xFFFF, VEXA_IO_DLL_VERSION >> 16));
  }
  library.resolve = [module = library.module](const char* name) { return Resolve(module, name); };
  return library;
}

}  // namespace vexahealth
