// Tablet mode, local time and S mode.
#include <windows.h>

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

#include "frame/ec_command.h"
#include "frame/export_wall.h"
#include "frame/handles.h"
#include "frame/log.h"
#include "system/texts.h"
#include "vexa/identity.h"
#include "vexa/system.h"

namespace vexa {
namespace {

constexpr uint8_t kTabletModeCommand = 0x8E;

// What WldpQueryWindowsLockdownMode answers.
constexpr int kLockdownTrial = 1;
constexpr int kLockdownLocked = 2;
using QueryLockdownMode = HRESULT(WINAPI*)(int* mode);

uint32_t ReadTabletMode() {
  if (EC_ReadEcFwRev() == VEXA_NO_FIRMWARE_REVISION) {
    LogInfo("[System_Read_TabletMode] This model is ODM, bypass cmd = 0x8E");
    return 0;
  }
  const std::optional<uint8_t> mode = ReadEc(kTabletModeCommand, {0x33, 0x00});
  return mode ? *mode : VEXA_NO_ANSWER;
}

// By its full path, so that no file of this name beside the program is taken. The last error tells why it is empty.
LoadedLibrary LoadLockdownPolicy() {
  wchar_t folder[MAX_PATH];
  const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
  if (length >= MAX_PATH) SetLastError(ERROR_INSUFFICIENT_BUFFER);
  if (length == 0 || length >= MAX_PATH) return {};
  const std::wstring path = std::wstring(folder, length) + L"\\wldp.dll";
  return LoadedLibrary(LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
}

uint32_t CheckSMode() {
  const LoadedLibrary policy = LoadLockdownPolicy();
  if (!policy) {
    LogInfo("[System_Check_S_Mode] Load Dll Error, error = %lu", GetLastError());
    return 0;
  }
  LogInfo("[System_Check_S_Mode] Load Dll Success\n");
  const auto query = reinterpret_cast<QueryLockdownMode>(
      reinterpret_cast<void*>(GetProcAddress(policy.get(), "WldpQueryWindowsLockdownMode")));
  uint32_t answer = 0;
  int mode = 0;
  if (query == nullptr || FAILED(query(&mode))) {
    LogInfo("[System_Check_S_Mode] QueryWindowsMode Fail\n");
  } else {
    answer = mode == kLockdownTrial || mode == kLockdownLocked ? 1 : 0;
  }
  LogInfo("[System_Check_S_Mode] result = %u", answer);
  return answer;
}

}  // namespace
}  // namespace vexa

uint32_t System_Read_TabletMode() noexcept {
  return vexa::Guarded("System_Read_TabletMode", uint32_t{VEXA_NO_ANSWER}, vexa::ReadTabletMode);
}

uint32_t System_Read_LocalTime(char* text) noexcept {
  if (text == nullptr) return 0;
  SYSTEMTIME now{};
  GetLocalTime(&now);
  const auto line = vexa::TimeText({now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond});
  std::memcpy(text, line.data(), line.size());
  return static_cast<uint32_t>(line.size() - 1);
}

uint32_t System_Check_S_Mode() noexcept { return vexa::Guarded("System_Check_S_Mode", 0u, vexa::CheckSMode); }
