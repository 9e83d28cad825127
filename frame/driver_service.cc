#include "frame/driver_service.h"

#include <windows.h>

#include <cwchar>

#include "frame/handles.h"
#include "frame/log.h"

namespace vexa {
namespace {

ServiceHandle OpenManager() {
  ServiceHandle manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
  if (!manager) LogCritical(L"ERROR: Failed to open service control manager. Error code=0x%08lx", GetLastError());
  return manager;
}

// Both handles of an opened service; false when either can't be opened, which is logged.
struct OpenedService {
  explicit OpenedService(DWORD access) : manager(OpenManager()) {
    if (!manager) return;
    service = ServiceHandle(OpenServiceW(manager.get(), kServiceName, access));
    if (!service) {
      LogCritical(L"ERROR: Failed to get handle of service [%s]. Error code=0x%08lx", kServiceName, GetLastError());
    }
  }
  explicit operator bool() const { return static_cast<bool>(service); }

  ServiceHandle manager;
  ServiceHandle service;
};

enum class MutexWait { kTaken, kCannotCreate, kTimedOut };

// What differs between the two routines that wait for the mutex.
struct MutexRules {
  uint32_t wait_ms;
  const char* create_failed;
  const char* waiting;
  const char* finished;
};

constexpr MutexRules kStartRules = {
    kStartWaitMs,
    "[StartWinIoDriverEx] Create mutex failed. Error code=0x%08x",
    "[StartWinIoDriverEx] has been called by other thread. Wait for the thread finished.",
    "[StartWinIoDriverEx] is finished by other thread. Wait for the thread finished.",
};
constexpr MutexRules kStopRules = {
    kStopWaitMs,
    "[StopWinIoDriverEx] Create mutex failed. Error code=0x%08x",
    "[StopWinIoDriverEx] has been called by other thread. Wait for the thread finished.",
    "[StopWinIoDriverEx] is finished by other thread. Wait for the thread finished.",
};

// Takes the mutex under which services are started and stopped; `mutex` owns the handle for as long as it is needed.
// An abandoned mutex is taken like any other.
MutexWait TakeServiceMutex(const MutexRules& rules, KernelHandle& mutex) {
  mutex = KernelHandle(CreateMutexW(nullptr, TRUE, kServiceMutexName));
  const DWORD error = GetLastError();
  if (!mutex) {
    LogInfo(rules.create_failed, error);
    return MutexWait::kCannotCreate;
  }
  if (error != ERROR_ALREADY_EXISTS) return MutexWait::kTaken;

  LogText(TraceLevel::kVerbose, rules.waiting);
  const DWORD wait = WaitForSingleObject(mutex.get(), rules.wait_ms);
  if (wait == WAIT_OBJECT_0) {
    LogText(TraceLevel::kVerbose, rules.finished);
  } else if (wait == WAIT_TIMEOUT) {
    // Kept: the start routine names the stop routine here too.
    LogInfo("WARNING: [StopWinIoDriverEx] has been executing for over %u ms. No more waiting.", rules.wait_ms);
    return MutexWait::kTimedOut;
  }
  return MutexWait::kTaken;
}

// Polls while the service is in the pending state; returns the number of polls.
int PollWhile(SC_HANDLE service, DWORD pending_state, int limit, SERVICE_STATUS& status) {
  int polls = 0;
  do {
    Sleep(1);
    QueryServiceStatus(service, &status);
    ++polls;
  } while (status.dwCurrentState == pending_state && polls < limit);
  return polls;
}

// The configuration in memory of its own size; empty on failure, with the error left for GetLastError.
LocalMemory QueryConfiguration(SC_HANDLE service) {
  DWORD size = 0;
  if (QueryServiceConfigW(service, nullptr, 0, &size) || GetLastError() != ERROR_INSUFFICIENT_BUFFER) return {};
  LocalMemory memory(LocalAlloc(LPTR, size));
  if (memory && !QueryServiceConfigW(service, static_cast<QUERY_SERVICE_CONFIGW*>(memory.get()), size, &size)) {
    const DWORD error = GetLastError();
    memory = {};
    SetLastError(error);
  }
  return memory;
}

// Logs its own failure.
LocalMemory QueryConfigurationLogged(SC_HANDLE service) {
  LocalMemory configuration = QueryConfiguration(service);
  if (!configuration) {
    LogCritical(L"ERROR: Failed to query configuration of service [%s]. Error code=0x%08lx", kServiceName,
                GetLastError());
  }
  return configuration;
}

}  // namespace

bool DriverServiceExists() {
  const ServiceHandle manager = OpenManager();
  if (!manager) return false;
  const ServiceHandle service(OpenServiceW(manager.get(), kServiceName, SERVICE_ALL_ACCESS));
  return service || GetLastError() != ERROR_SERVICE_DOES_NOT_EXIST;
}

uint32_t StartWinIoDriverEx(uint32_t holds_mutex) {
  const OpenedService opened(SERVICE_QUERY_STATUS | SERVICE_START);
  if (!opened) return 0;
  SERVICE_STATUS status{};
  if (!QueryServiceStatus(opened.service.get(), &status)) {
    // Kept: the text names a start control although the query failed.
    LogCritical(L"ERROR: Failed to send start control to service [%s]. Error code=0x%08x", kServiceName,
                GetLastError());
    return 0;
  }
  if (status.dwCurrentState == SERVICE_RUNNING) {
    LogInfo(L"Service [%s] is already running.", kServiceName);
    return 1;
  }

  KernelHandle mutex;
  if (holds_mutex == 0) {
    switch (TakeServiceMutex(kStartRules, mutex)) {
      case MutexWait::kCannotCreate: return 1;
      case MutexWait::kTimedOut: return 0;
      case MutexWait::kTaken: break;
    }
  }

  if (!StartServiceW(opened.service.get(), 0, nullptr)) {
    const DWORD error = GetLastError();
    if (error == ERROR_SERVICE_ALREADY_RUNNING) {
      LogInfo(L"Service [%s] is already running.", kServiceName);
      return 1;
    }
    LogCritical(L"ERROR: Failed to send start control to service [%s]. Error code=0x%08x", kServiceName, error);
    return 0;
  }
  LogInfo(L"Service [%s] StartService successfully.", kServiceName);
  LogInfo(L"Starting service [%s].", kServiceName);

  const int polls = PollWhile(opened.service.get(), SERVICE_START_PENDING, kStartPollLimit, status);
  if (polls >= kStartPollLimit) {
    LogInfo(L"WARNING: Service [%s] starting timeout [%d ms] exceeds. Spent [%d ms].", kServiceName, kStartPollLimit,
            polls);
  }
  if (status.dwCurrentState != SERVICE_RUNNING) {
    LogCritical(L"ERROR: Failed to start service [%s].", kServiceName);
    return 0;
  }
  LogInfo(L"Successfully start service [%s].", kServiceName);
  return 1;
}

uint32_t StopWinIoDriverEx(uint32_t holds_mutex) {
  const OpenedService opened(SERVICE_QUERY_STATUS | SERVICE_STOP);
  if (!opened) return 0;
  SERVICE_STATUS status{};
  if (!QueryServiceStatus(opened.service.get(), &status)) {
    LogCritical(L"ERROR: Failed to query status of service [%s]. Error code=0x%08lx", kServiceName, GetLastError());
    return 0;
  }
  if (status.dwCurrentState == SERVICE_STOPPED) {
    LogInfo(L"Service [%s] is not running.", kServiceName);
    return 1;
  }

  KernelHandle mutex;
  if (holds_mutex == 0) {
    switch (TakeServiceMutex(kStopRules, mutex)) {
      case MutexWait::kCannotCreate: return 1;
      case MutexWait::kTimedOut: return 0;
      case MutexWait::kTaken: break;
    }
  }

  if (!ControlService(opened.service.get(), SERVICE_CONTROL_STOP, &status)) {
    LogCritical(L"ERROR: Failed to send control [SERVICE_CONTROL_STOP] to service [%s]. Error code=0x%08lx",
                kServiceName, GetLastError());
    return 0;
  }
  LogInfo(L"Stopping service [%s].", kServiceName);

  const int polls = PollWhile(opened.service.get(), SERVICE_STOP_PENDING, kStopPollLimit, status);
  if (polls >= kStopPollLimit) {
    LogInfo(L"WARNING: Service [%s] stopping timeout [%d ms] exceeds. Spent [%d ms].", kServiceName, kStopPollLimit,
            polls);
  }
  if (status.dwCurrentState != SERVICE_STOPPED) {
    LogCritical(L"ERROR: Failed to stop service [%s].", kServiceName);
    return 0;
  }
  LogInfo(L"Successful to stop service [%s].", kServiceName);
  return 1;
}

uint32_t CreateDriverService(const std::wstring& driver_path) {
  const ServiceHandle manager = OpenManager();
  if (!manager) return 0;
  const ServiceHandle service(CreateServiceW(manager.get(), kServiceName, kServiceName, SERVICE_ALL_ACCESS,
                                             SERVICE_KERNEL_DRIVER, SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL,
                                             driver_path.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr));
  if (!service) {
    LogCritical(L"ERROR: Failed to create service [%s]. Error code=0x%08lx", kServiceName, GetLastError());
    return 0;
  }
  return 1;
}

void RemoveDriverService() {
  if (StopWinIoDriverEx(1) != 1) return;
  const OpenedService opened(SERVICE_ALL_ACCESS);
  if (!opened || !QueryConfigurationLogged(opened.service.get())) return;
  if (DeleteService(opened.service.get())) {
    LogCritical(L"Successfully to delete service [%s].", kServiceName);
  } else {
    LogCritical(L"ERROR: Failed to delete service [%s]. Error code=0x%08lx", kServiceName, GetLastError());
  }
}

uint32_t GetDriverPath(wchar_t* path) {
  const OpenedService opened(SERVICE_QUERY_CONFIG);
  if (!opened) return 0;
  const LocalMemory configuration = QueryConfigurationLogged(opened.service.get());
  if (!configuration) return 0;
  const wchar_t* binary_path = static_cast<const QUERY_SERVICE_CONFIGW*>(configuration.get())->lpBinaryPathName;
  const size_t length = std::wcslen(binary_path) + 1;
  if (length > kDriverPathCapacity) {
    LogCritical(L"ERROR: Buffer size [%d] is not enough for the length [%d] of service [%s] path.",
                static_cast<int>(kDriverPathCapacity), static_cast<int>(length), kServiceName);
    return 0;
  }
  std::wmemcpy(path, binary_path, length);
  return 1;
}

uint32_t ChangeDriverPath(const wchar_t* driver_path) {
  const OpenedService opened(SERVICE_CHANGE_CONFIG);
  if (!opened) return 0;
  if (!ChangeServiceConfigW(opened.service.get(), SERVICE_NO_CHANGE, SERVICE_NO_CHANGE, SERVICE_NO_CHANGE, driver_path,
                            nullptr, nullptr, nullptr, nullptr, nullptr, nullptr)) {
    LogCritical(L"ERROR: Failed to change binary path of service [%s] to [%s]. Error code=0x%08lx", kServiceName,
                driver_path, GetLastError());
    return 0;
  }
  LogInfo(L"Successfully change binary path of service [%s] to [%s]. Error code=0x%08lx", kServiceName, driver_path,
          static_cast<DWORD>(ERROR_SUCCESS));
  return 1;
}

uint32_t ChangeDriverStartType(uint32_t start_type) {
  const OpenedService opened(SERVICE_CHANGE_CONFIG);
  if (!opened) return 0;
  if (!ChangeServiceConfigW(opened.service.get(), SERVICE_NO_CHANGE, start_type, SERVICE_NO_CHANGE, nullptr, nullptr,
                            nullptr, nullptr, nullptr, nullptr, nullptr)) {
    LogCritical(L"ERROR: Failed to change start type of service [%s] to [%d]. Error code=0x%08lx", kServiceName,
                start_type, GetLastError());
    return 0;
  }
  // Kept: the wording of the binary path, also for the start type.
  LogInfo(L"Successfully change binary path of service [%s] to [%d]. Error code=0x%08lx", kServiceName, start_type,
          static_cast<DWORD>(ERROR_SUCCESS));
  return 1;
}

}  // namespace vexa
