#include "vexa/lifecycle.h"

#include <windows.h>

#include "frame/architecture.h"
#include "frame/driver_channel.h"
#include "frame/driver_service.h"
#include "frame/driver_setup.h"
#include "frame/export_wall.h"
#include "frame/library_state.h"
#include "frame/log.h"

namespace vexa {

LibraryState g_library;

namespace {

constexpr wchar_t kDevice[] = L"\\\\.\\VexaSAIO";

HANDLE OpenDevice() {
  const auto open = [](DWORD share) {
    return CreateFileW(kDevice, GENERIC_READ | GENERIC_WRITE, share, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                       nullptr);
  };
  const HANDLE exclusive = open(0);
  return exclusive != INVALID_HANDLE_VALUE ? exclusive : open(FILE_SHARE_READ | FILE_SHARE_WRITE);
}

bool MakeReady() {
  if (g_library.references != 0 || g_library.initialised || IsArchitectureARM64()) return true;
  if (EnsureIoDriverRunning() == DriverSetup::kFailed) return false;
  const HANDLE device = OpenDevice();
  if (device == INVALID_HANDLE_VALUE) return false;
  g_library.driver = device;
  return true;
}

uint32_t Initialize() {
  LogInfo("InitializeWinIo() Enter [%d]", g_library.references);
  if (!MakeReady()) return 0;
  g_library.initialised = true;
  ++g_library.references;
  LogInfo("InitializeWinIo() Exit [%d]", g_library.references);
  return 1;
}

void Shutdown() {
  LogInfo("ShutdownWinIo() Enter [%d]", g_library.references);
  if (g_library.initialised && --g_library.references == 0) {
    if (g_library.driver != INVALID_HANDLE_VALUE && !IsArchitectureARM64()) CloseHandle(g_library.driver);
    g_library.initialised = false;
  }
  LogInfo("ShutdownWinIo() Exit [%d]", g_library.references);
}

}  // namespace
}  // namespace vexa

uint32_t InitializeWinIo() noexcept { return vexa::Guarded("InitializeWinIo", 0u, vexa::Initialize); }

void ShutdownWinIo() noexcept {
  vexa::Guarded("ShutdownWinIo", 0, [] {
    vexa::Shutdown();
    return 0;
  });
}

uint32_t GetDriverVersion() noexcept {
  return vexa::Guarded("GetDriverVersion", 0u,
                       [] { return vexa::IsArchitectureARM64() ? 0u : vexa::ReadDriverVersion(); });
}

uint32_t GetRefCount() noexcept {
  return vexa::Guarded("GetRefCount", 0u,
                       [] { return vexa::IsArchitectureARM64() ? 0u : vexa::ReadDriverReferenceCount(); });
}

uint32_t GetIoDllVersion() noexcept { return VEXA_IO_DLL_VERSION; }

uint32_t StopWinIoDriver(uint32_t holds_mutex) noexcept {
  return vexa::Guarded("StopWinIoDriver", 0u, [=] { return vexa::StopWinIoDriverEx(holds_mutex); });
}

uint32_t wmiadd(uint32_t x) noexcept { return x + 1; }
