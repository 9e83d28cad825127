#include "frame/debug_log_folder.h"

#include <windows.h>

#include <exception>
#include <string>

#include "frame/log.h"

namespace vexa {
namespace {

bool IsFolder(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

}  // namespace

bool CreateDebugLogFolder() noexcept {
  try {
    const std::wstring folder = kDebugLogFolder;
    constexpr size_t kBehindDrive = 3;
    for (size_t end = folder.find(L'\\', kBehindDrive); end != std::wstring::npos; end = folder.find(L'\\', end + 1)) {
      const std::wstring level = folder.substr(0, end + 1);
      if (!IsFolder(level)) CreateDirectoryW(level.c_str(), nullptr);
    }
    return IsFolder(folder);
  } catch (const std::exception& error) {
    LogInfo("CreateDebugLogFolder exception:%s", error.what());
    return false;
  }
}

}  // namespace vexa
