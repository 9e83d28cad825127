#include "client/machine.h"

#include <windows.h>

#include <algorithm>
#include <atomic>

#include "client/text.h"

namespace vexahealth {
namespace {

constexpr size_t kLongestPath = 32768;  // wide characters that Windows allows in a path, terminator included

// Sets the console's output code page to UTF-8 and gives the former one back: it outlives this process.
class Utf8Console {
 public:
  Utf8Console() : former_(GetConsoleOutputCP()) {
    if (former_ != 0) SetConsoleOutputCP(CP_UTF8);
  }
  ~Utf8Console() {
    if (former_ != 0) SetConsoleOutputCP(former_);
  }
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;

 private:
  UINT former_;
};

std::atomic<HANDLE> g_interrupted = nullptr;

BOOL WINAPI OnInterrupt(DWORD) {
  const HANDLE event = g_interrupted;
  if (event == nullptr) return FALSE;
  SetEvent(event);
  return TRUE;
}

bool WriteAll(HANDLE handle, std::string_view text) {
  while (!text.empty()) {
    DWORD written = 0;
    const auto length = static_cast<DWORD>(std::min<size_t>(text.size(), 1 << 15));
    if (!WriteFile(handle, text.data(), length, &written, nullptr) || written == 0) return false;
    text.remove_prefix(written);
  }
  return true;
}

bool WriteTo(DWORD stream, std::string_view text) {
  const HANDLE handle = GetStdHandle(stream);
  if (handle == nullptr || handle == INVALID_HANDLE_VALUE) return false;
  const Utf8Console console;
  return WriteAll(handle, text);
}

}  // namespace

std::optional<std::wstring> OwnFolder() {
  std::wstring path(kLongestPath, L'\0');
  const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  if (length == 0 || length >= path.size()) return std::nullopt;
  path.resize(length);
  const size_t slash = path.find_last_of(L'\\');
  if (slash == std::wstring::npos) return std::nullopt;
  path.resize(slash + 1);
  return path;
}

std::wstring Utf8ToWide(std::string_view text) {
  if (text.empty()) return {};
  const int size = static_cast<int>(text.size());
  const int needed = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<size_t>(std::max(needed, 0)), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), needed);
  return wide;
}

std::string WideToUtf8(std::wstring_view text) {
  if (text.empty()) return {};
  const int size = static_cast<int>(text.size());
  const int needed = WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<size_t>(std::max(needed, 0)), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), size, utf8.data(), needed, nullptr, nullptr);
  return utf8;
}

std::string ActiveCodePageToUtf8(std::string_view text) {
  if (text.empty()) return {};
  const int size = static_cast<int>(text.size());
  const int needed = MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<size_t>(std::max(needed, 0)), L'\0');
  MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), needed);
  return WideToUtf8(wide);
}

Route ReadRoute() {
  wchar_t text[16] = {};
  DWORD size = sizeof text;
  const LSTATUS status =
      RegGetValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Vexa\\Config", L"Arch", RRF_RT_REG_SZ, nullptr, text, &size);
  if (status != ERROR_SUCCESS) return Route::kUnknown;
  if (std::wstring_view(text) == L"ARM64") return Route::kFirmware;
  return Route::kDriver;
}

PowerLine ReadPowerLine() {
  SYSTEM_POWER_STATUS status{};
  if (!GetSystemPowerStatus(&status)) return PowerLine::kUnknown;
  switch (status.ACLineStatus) {
    case AC_LINE_OFFLINE: return PowerLine::kOffline;
    case AC_LINE_ONLINE: return PowerLine::kOnline;
    default: return PowerLine::kUnknown;
  }
}

std::string NowUtc() {
  SYSTEMTIME now{};
  GetSystemTime(&now);
  return Printf("%04u-%02u-%02uT%02u:%02u:%02u.%03uZ", now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute,
                now.wSecond, now.wMilliseconds);
}

uint64_t ClockMs() { return GetTickCount64(); }

std::optional<TerminalSize> OutputTerminal() {
  const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD mode = 0;
  if (!GetConsoleMode(output, &mode)) return std::nullopt;
  CONSOLE_SCREEN_BUFFER_INFO info{};
  const bool known = GetConsoleScreenBufferInfo(output, &info) != 0;
  SetConsoleMode(output, mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
  if (!known) return TerminalSize{.rows = 25, .columns = 80};
  return TerminalSize{.rows = static_cast<size_t>(info.srWindow.Bottom - info.srWindow.Top + 1),
                      .columns = static_cast<size_t>(info.srWindow.Right - info.srWindow.Left + 1)};
}

bool ErrorIsTerminal() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

bool WaitInterrupted(uint32_t timeout_ms) {
  static const HANDLE interrupted = [] {
    const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    SetConsoleCtrlHandler(OnInterrupt, TRUE);
    return event;
  }();
  g_interrupted = interrupted;
  return WaitForSingleObject(interrupted, timeout_ms) == WAIT_OBJECT_0;
}

bool WriteOutput(std::string_view text) { return WriteTo(STD_OUTPUT_HANDLE, text); }

void WriteError(std::string_view text) { WriteTo(STD_ERROR_HANDLE, text); }

bool WriteFileAt(std::string_view path, std::string_view text) {
  const std::wstring target = Utf8ToWide(path);
  const std::wstring fresh = target + L".new";
  const HANDLE file =
      CreateFileW(fresh.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const bool written = WriteAll(file, text);
  const bool closed = CloseHandle(file) != 0;
  if (written && closed && MoveFileExW(fresh.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING)) return true;
  DeleteFileW(fresh.c_str());
  return false;
}

}  // namespace vexahealth
