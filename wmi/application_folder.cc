#include "wmi/application_folder.h"

#include <windows.h>

#include <algorithm>
#include <cwchar>

#include "frame/export_wall.h"
#include "frame/handles.h"
#include "frame/line.h"
#include "frame/log.h"
#include "frame/registry.h"
#include "vexa/settings.h"
#include "wmi/query_engine.h"
#include "wmi/settings_text.h"

namespace vexa {
namespace {

// The registry value's name; empty when nobody is signed in.
std::wstring SignedInUser(uint32_t com_flag) {
  std::wstring user;
  ReadWMIPropStr(user, L"ROOT\\CIMV2", L"select * from win32_ComputerSystem", L"UserName", com_flag);
  return user;
}

std::wstring StoredPath(uint32_t com_flag) { return ReadRegistryText(kAnalysisKey, SignedInUser(com_flag).c_str()); }

uint32_t SetPath(const wchar_t* path, uint32_t com_flag) {
  const std::wstring user = SignedInUser(com_flag);
  const bool stored = WriteRegistryText(kAnalysisKey, user.c_str(), path);
  LogBuilt(TraceLevel::kVerbose, [&] {
    return WideLine(L"[WMISetAppPath] WriteRegString ", path, L" to ", user, stored ? L" Success" : L" Fail");
  });
  return stored ? 1 : 0;
}

uint32_t GetPath(wchar_t* buffer, uint32_t com_flag) {
  const std::wstring path = StoredPath(com_flag);
  const size_t length = std::min<size_t>(path.size(), VEXA_APP_PATH_CAPACITY - 1);
  std::wmemcpy(buffer, path.c_str(), length);
  buffer[length] = L'\0';
  if (path == kRegistryReadError) return 0;
  LogBuilt(TraceLevel::kVerbose, [&] { return WideLine(L"[WMIGetAppPath] App path is ", path); });
  return 1;
}

}  // namespace

std::optional<std::wstring> ApplicationFolder(uint32_t com_flag) {
  std::wstring path = StoredPath(com_flag);
  return path == kRegistryReadError ? std::nullopt : std::optional(std::move(path));
}

bool FolderExists(const std::optional<std::wstring>& folder) {
  const DWORD attributes = folder ? GetFileAttributesW(folder->c_str()) : INVALID_FILE_ATTRIBUTES;
  LogBuilt(TraceLevel::kVerbose, [=] { return Line("[DirectoryExists] attribs = ", attributes); });
  const bool exists = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  LogInfo(exists ? "[WMICheckAppExist] App exist!" : "[WMICheckAppExist] App not exist!");
  return exists;
}

std::optional<uint32_t> ReadNumberFile(const std::wstring& path) {
  const DeviceHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  char text[64];
  DWORD size = 0;
  if (!file || !ReadFile(file.get(), text, sizeof text, &size, nullptr)) return std::nullopt;
  return FirstNumber(std::string_view(text, size));
}

bool WriteNumberFile(const std::wstring& path, int32_t number) {
  const DeviceHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return false;
  const std::string text = NumberText(number);
  DWORD written = 0;
  return WriteFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr) &&
         written == text.size();
}

}  // namespace vexa

uint32_t WMISetAppPath(const wchar_t* path, uint32_t com_flag) noexcept {
  if (path == nullptr) return 0;
  return vexa::Guarded("WMISetAppPath", 0u, [=] { return vexa::SetPath(path, com_flag); });
}

uint32_t WMIGetAppPath(wchar_t* path, uint32_t com_flag) noexcept {
  if (path == nullptr) return 0;
  path[0] = L'\0';
  return vexa::Guarded("WMIGetAppPath", 0u, [=] { return vexa::GetPath(path, com_flag); });
}

uint32_t WMICheckAppExist(uint32_t com_flag) noexcept {
  return vexa::Guarded("WMICheckAppExist", 0u,
                       [=] { return vexa::FolderExists(vexa::ApplicationFolder(com_flag)) ? 1u : 0u; });
}
