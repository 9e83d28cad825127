#include "files.h"

#include <cstdio>
#include <memory>

namespace firmware {
namespace {

constexpr LONGLONG kMaxFileSize = 16 << 20;
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

struct CloseFile {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const {
    if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
  }
};
using FileHandle = std::unique_ptr<void, CloseFile>;

bool WriteTo(HANDLE file, std::string_view text) {
  DWORD written = 0;
  return WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) && written == text.size();
}

}  // namespace

std::string Narrow(std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), length, narrow.data(), size, nullptr, nullptr);
  return narrow;
}

std::wstring Wide(std::string_view text) {
  const int length = static_cast<int>(text.size());
  const int size = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
  std::wstring wide(static_cast<size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), size);
  return wide;
}

std::optional<std::string> ReadWhole(const std::wstring& path) {
  const FileHandle file(CreateFileW(path.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
  LARGE_INTEGER size{};
  if (file.get() == INVALID_HANDLE_VALUE || !GetFileSizeEx(file.get(), &size) || size.QuadPart > kMaxFileSize) {
    return std::nullopt;
  }
  std::string text(static_cast<size_t>(size.QuadPart), '\0');
  DWORD read = 0;
  if (!ReadFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &read, nullptr)) return std::nullopt;
  text.resize(read);
  return text;
}

bool WriteWhole(const std::wstring& path, std::string_view text) {
  const std::wstring fresh = path + L".new";
  {
    const FileHandle file(CreateFileW(fresh.c_str(), GENERIC_WRITE, kShareAll, nullptr, CREATE_ALWAYS, 0, nullptr));
    if (file.get() == INVALID_HANDLE_VALUE || !WriteTo(file.get(), text)) return false;
  }
  return MoveFileExW(fresh.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
}

bool AppendTo(const std::wstring& path, std::string_view text) {
  const FileHandle file(CreateFileW(path.c_str(), FILE_APPEND_DATA, kShareAll, nullptr, OPEN_ALWAYS, 0, nullptr));
  return file.get() != INVALID_HANDLE_VALUE && WriteTo(file.get(), text);
}

std::string FileStamp(const std::wstring& path) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) return "";
  char text[64];
  std::snprintf(text, sizeof(text), "%08lx%08lx-%lu", data.ftLastWriteTime.dwHighDateTime,
                data.ftLastWriteTime.dwLowDateTime, data.nFileSizeLow);
  return text;
}

std::optional<std::wstring> ReadRegistry(const wchar_t* key, const wchar_t* value) {
  DWORD bytes = 0;
  if (RegGetValueW(HKEY_LOCAL_MACHINE, key, value, RRF_RT_REG_SZ, nullptr, nullptr, &bytes) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  std::wstring text(bytes / sizeof(wchar_t) + 1, L'\0');
  bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  if (RegGetValueW(HKEY_LOCAL_MACHINE, key, value, RRF_RT_REG_SZ, nullptr, text.data(), &bytes) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  text.resize(wcslen(text.c_str()));
  return text;
}

LSTATUS WriteRegistry(const wchar_t* key, const wchar_t* value, const std::wstring& text) {
  const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
  return RegSetKeyValueW(HKEY_LOCAL_MACHINE, key, value, REG_SZ, text.c_str(), bytes);
}

}  // namespace firmware
