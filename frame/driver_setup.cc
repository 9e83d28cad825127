#include "frame/driver_setup.h"

#include <windows.h>

#include <shlwapi.h>

#include <string>

#include "frame/driver_path.h"
#include "frame/driver_service.h"
#include "frame/handles.h"
#include "frame/log.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace vexa {
namespace {

constexpr DWORD kPauseAfterRemovalMs = 50;

// Cuts the file name off a path of at most MAX_PATH characters; logs its own failure.
bool StripFileName(wchar_t* path) {
  if (PathRemoveFileSpecW(path) == TRUE) return true;
  LogCritical(L"ERROR: PathRemoveFileSpecW(\"%s\") failed. Error code=0x%08x", path, GetLastError());
  return false;
}

// The folder of this library's file; empty on failure, which is logged.
std::wstring ModuleFolder() {
  wchar_t path[MAX_PATH] = {};
  const DWORD length = GetModuleFileNameW(reinterpret_cast<HMODULE>(&__ImageBase), path, MAX_PATH);
  // A path that fills the buffer was cut, and a cut path names another folder.
  if (length == 0 || length >= MAX_PATH) {
    LogCritical(L"ERROR: Failed to get current module path. Error code=0x%08x", GetLastError());
    return {};
  }
  return StripFileName(path) ? path : std::wstring();
}

enum class RegisteredPath { kSame, kDifferent, kUnusable };

// Compares the service's registered folder with the expected one, without regard to case: the case of a module's path
// depends on how its process loaded it.
RegisteredPath CompareRegisteredPath(const std::wstring& expected_folder) {
  wchar_t registered[kDriverPathCapacity] = {};
  if (GetDriverPath(registered) != 1) {
    LogInfo(L"WARNING: Failed to get driver [%s] path\n", kServiceName);
    registered[0] = L'\0';
  } else if (!StripFileName(registered)) {
    return RegisteredPath::kUnusable;
  }
  LogInfo(L"A [%s]", registered);
  LogInfo(L"B [%s]", expected_folder.c_str());
  const std::wstring_view folder = WithoutTrailingBackslash(registered);
  const bool same = CompareStringOrdinal(folder.data(), static_cast<int>(folder.size()), expected_folder.c_str(), -1,
                                         TRUE) == CSTR_EQUAL;
  return same ? RegisteredPath::kSame : RegisteredPath::kDifferent;
}

// Removes the old service, if any, and creates it with the new path. The caller holds the mutex.
bool Reinstall(const std::wstring& driver_path) {
  LogInfo(L"Attempt to remove driver [%s]", kServiceName);
  RemoveDriverService();
  Sleep(kPauseAfterRemovalMs);
  LogInfo(L"Attempt to install driver [%s] with path [%s]", kServiceName, driver_path.c_str());
  if (CreateDriverService(driver_path) != 1) {
    LogCritical(L"ERROR: Failed to install driver [%s]", kServiceName);
    return false;
  }
  LogCritical(L"Successfully install driver [%s]", kServiceName);
  return true;
}

DriverSetup InstallAndStart(const std::wstring& module_folder, const std::wstring& expected_folder) {
  const std::wstring driver_file = module_folder + kDriverFileName;
  const KernelHandle mutex(CreateMutexW(nullptr, TRUE, kServiceMutexName));
  const DWORD error = GetLastError();
  if (!mutex) {
    LogCritical("[EnsureIoDriverRunning] Create mutex failed. Error code=0x%08x", static_cast<unsigned>(error));
    return DriverSetup::kNoMutex;
  }
  if (error == ERROR_ALREADY_EXISTS) {
    LogCritical("EnsureIoDriverRunning() has been called by other thread. Wait for the thread finished.");
    const DWORD wait = WaitForSingleObject(mutex.get(), kEnsureWaitMs);
    if (wait == WAIT_OBJECT_0) {
      LogInfo("EnsureIoDriverRunning() is finished by other thread. Wait for the thread finished.");
    } else if (wait == WAIT_TIMEOUT) {
      // Kept: 5000 ms, and a message that says 3 seconds.
      LogInfo("WARNING: EnsureIoDriverRunning() has been executing for over 3 seconds. No more waiting.");
      return DriverSetup::kFailed;
    }
  }

  if (GetFileAttributesW(driver_file.c_str()) == INVALID_FILE_ATTRIBUTES) {
    LogCritical(L"Driver file [%s] not found.", driver_file.c_str());
  } else if (!Reinstall(expected_folder + kDriverFileName)) {
    return DriverSetup::kFailed;
  }
  return StartWinIoDriverEx(1) == 1 ? DriverSetup::kRunning : DriverSetup::kFailed;
}

}  // namespace

DriverSetup EnsureIoDriverRunning() {
  const std::wstring module_folder = ModuleFolder();
  if (module_folder.empty()) return DriverSetup::kFailed;
  const std::wstring expected_folder = ServiceFolder(module_folder);

  if (!DriverServiceExists()) {
    LogInfo(L"Driver [%s] does NOT exist\n", kServiceName);
    return InstallAndStart(module_folder, expected_folder);
  }
  LogInfo(L"Driver [%s] Exists\n", kServiceName);
  switch (CompareRegisteredPath(expected_folder)) {
    case RegisteredPath::kUnusable: return DriverSetup::kFailed;
    case RegisteredPath::kSame: return StartWinIoDriverEx(0) == 1 ? DriverSetup::kRunning : DriverSetup::kFailed;
    case RegisteredPath::kDifferent: break;
  }
  LogInfo(L"Driver path is NOT latest.");
  return InstallAndStart(module_folder, expected_folder);
}

}  // namespace vexa
