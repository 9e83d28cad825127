#include "frame/architecture.h"

#include <windows.h>

#include <string>

#include "frame/log.h"
#include "frame/registry.h"

namespace vexa {
namespace {

constexpr wchar_t kConfigKey[] = L"SOFTWARE\\Vexa\\Config";
constexpr wchar_t kArchValue[] = L"Arch";
constexpr wchar_t kArm64[] = L"ARM64";
constexpr wchar_t kX64[] = L"x64";

// False when the system does not tell. Windows before 10 version 1511 lacks the function, so it is not in the import
// table; absent counts as failing.
bool NativeMachine(USHORT* machine) {
  using Function = BOOL(WINAPI*)(HANDLE, USHORT*, USHORT*);
  static const auto query =
      reinterpret_cast<Function>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "IsWow64Process2"));
  USHORT process_machine = 0;
  return query != nullptr && query(GetCurrentProcess(), &process_machine, machine);
}

std::wstring DetectArchitecture() {
  USHORT machine = 0;
  const bool is_arm64 = NativeMachine(&machine) ? machine == IMAGE_FILE_MACHINE_ARM64 : ProcessorIsArm64();
  return is_arm64 ? kArm64 : kX64;
}

}  // namespace

bool IsArchitectureARM64() {
  std::wstring architecture = ReadRegistryText(kConfigKey, kArchValue);
  if (architecture == kRegistryReadError) {
    LogInfo("[VexaWinDll][IsArchitectureARM64] cannot get REG_ARCHITECTURE key");
    architecture = DetectArchitecture();
    WriteRegistryText(kConfigKey, kArchValue, architecture);
  }
  return architecture == kArm64;
}

}  // namespace vexa
