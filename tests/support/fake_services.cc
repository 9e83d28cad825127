#include "tests/support/fake_services.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <cwchar>

namespace vexa::test {
namespace {

FakeServices* g_services = nullptr;

constexpr bool kManager = true;
constexpr bool kService = false;
wchar_t g_no_text[] = L"";

BOOL Fail(DWORD error) {
  SetLastError(error);
  return FALSE;
}

}  // namespace

struct FakeServicesHook {
  static SC_HANDLE WINAPI OpenManager(LPCWSTR machine, LPCWSTR database, DWORD access) {
    const std::string text = Narrow(machine) + " " + Narrow(database) + " " + Hex(access);
    return g_services->script_.Fails("OpenSCManagerW", text) ? nullptr : g_services->NewHandle(kManager, access);
  }

  static SC_HANDLE WINAPI OpenNamed(SC_HANDLE manager, LPCWSTR name, DWORD access) {
    if (g_services->script_.Fails("OpenServiceW", Narrow(name) + " " + Hex(access))) return nullptr;
    if (!g_services->MayUse(manager, kManager, SC_MANAGER_CONNECT)) return nullptr;
    if (!g_services->service.exists || std::wcscmp(name, L"VexaSAIO") != 0) {
      Fail(ERROR_SERVICE_DOES_NOT_EXIST);
      return nullptr;
    }
    return g_services->NewHandle(kService, access);
  }

  static BOOL WINAPI Close(SC_HANDLE handle) {
    g_services->Close(handle);
    SetLastError(ERROR_SUCCESS);
    return TRUE;
  }

  static BOOL WINAPI QueryStatus(SC_HANDLE handle, LPSERVICE_STATUS status) {
    if (g_services->script_.Fails("QueryServiceStatus")) return FALSE;
    if (!g_services->MayUse(handle, kService, SERVICE_QUERY_STATUS)) return FALSE;
    g_services->FillStatus(status);
    return TRUE;
  }

  static BOOL WINAPI QueryConfig(SC_HANDLE handle, LPQUERY_SERVICE_CONFIGW config, DWORD size, LPDWORD needed) {
    if (g_services->script_.Fails("QueryServiceConfigW", size == 0 ? "0" : "sized")) return FALSE;
    if (!g_services->MayUse(handle, kService, SERVICE_QUERY_CONFIG)) return FALSE;
    const std::wstring& path = g_services->service.binary_path;
    const auto path_size = static_cast<DWORD>((path.size() + 1) * sizeof(wchar_t));
    *needed = sizeof(QUERY_SERVICE_CONFIGW) + path_size;
    if (size < *needed) return Fail(ERROR_INSUFFICIENT_BUFFER);
    *config = {.dwServiceType = SERVICE_KERNEL_DRIVER,
               .dwStartType = g_services->service.start_type,
               .dwErrorControl = SERVICE_ERROR_NORMAL,
               .lpBinaryPathName = reinterpret_cast<wchar_t*>(config + 1),
               .lpLoadOrderGroup = g_no_text,
               .lpDependencies = g_no_text,
               .lpServiceStartName = g_no_text,
               .lpDisplayName = g_no_text};
    std::memcpy(config->lpBinaryPathName, path.c_str(), path_size);
    return TRUE;
  }

  static BOOL WINAPI Start(SC_HANDLE handle, DWORD count, LPCWSTR*) {
    if (g_services->script_.Fails("StartServiceW", std::to_string(count))) return FALSE;
    if (!g_services->MayUse(handle, kService, SERVICE_START)) return FALSE;
    FakeService& service = g_services->service;
    if (service.state == SERVICE_RUNNING) return Fail(ERROR_SERVICE_ALREADY_RUNNING);
    service.state = SERVICE_START_PENDING;
    service.pending_polls = service.start_polls;
    return TRUE;
  }

  static BOOL WINAPI Control(SC_HANDLE handle, DWORD control, LPSERVICE_STATUS status) {
    if (g_services->script_.Fails("ControlService", std::to_string(control))) return FALSE;
    if (!g_services->MayUse(handle, kService, SERVICE_STOP)) return FALSE;
    FakeService& service = g_services->service;
    if (service.state == SERVICE_STOPPED) return Fail(ERROR_SERVICE_NOT_ACTIVE);
    service.state = SERVICE_STOP_PENDING;
    service.pending_polls = service.stop_polls;
    *status = {.dwServiceType = SERVICE_KERNEL_DRIVER, .dwCurrentState = service.state};
    return TRUE;
  }

  static SC_HANDLE WINAPI Create(SC_HANDLE manager, LPCWSTR name, LPCWSTR display_name, DWORD access, DWORD type,
                                 DWORD start, DWORD error_control, LPCWSTR path, LPCWSTR group, LPDWORD tag,
                                 LPCWSTR dependencies, LPCWSTR account, LPCWSTR password) {
    const std::string text = Narrow(name) + " " + Narrow(display_name) + " " + Hex(access) + " type " + Hex(type) +
                             " start " + Hex(start) + " error " + Hex(error_control) + " path " + Narrow(path) + " " +
                             Narrow(group) + (tag ? " tag " : " null ") + Narrow(dependencies) + " " + Narrow(account) +
                             " " + Narrow(password);
    if (g_services->script_.Fails("CreateServiceW", text)) return nullptr;
    if (!g_services->MayUse(manager, kManager, SC_MANAGER_CREATE_SERVICE)) return nullptr;
    FakeService& service = g_services->service;
    if (service.exists) {
      Fail(service.marked_for_delete ? ERROR_SERVICE_MARKED_FOR_DELETE : ERROR_SERVICE_EXISTS);
      return nullptr;
    }
    service.exists = true;
    service.state = SERVICE_STOPPED;
    service.binary_path = path;
    service.start_type = start;
    return g_services->NewHandle(kService, access);
  }

  static BOOL WINAPI Delete(SC_HANDLE handle) {
    if (g_services->script_.Fails("DeleteService") || !g_services->MayUse(handle, kService, DELETE)) return FALSE;
    g_services->service.marked_for_delete = true;
    return TRUE;
  }

  static BOOL WINAPI Change(SC_HANDLE handle, DWORD type, DWORD start, DWORD error_control, LPCWSTR path, LPCWSTR group,
                            LPDWORD tag, LPCWSTR dependencies, LPCWSTR account, LPCWSTR password,
                            LPCWSTR display_name) {
    const std::string text = "type " + Hex(type) + " start " + Hex(start) + " error " + Hex(error_control) + " path " +
                             Narrow(path) + " " + Narrow(group) + (tag ? " tag " : " null ") + Narrow(dependencies) +
                             " " + Narrow(account) + " " + Narrow(password) + " " + Narrow(display_name);
    if (g_services->script_.Fails("ChangeServiceConfigW", text)) return FALSE;
    return g_services->MayUse(handle, kService, SERVICE_CHANGE_CONFIG);
  }

  static HLOCAL WINAPI Allocate(UINT flags, SIZE_T size) {
    if (g_services->script_.Fails("LocalAlloc")) return nullptr;
    const HLOCAL memory = g_services->allocate_.Original<HLOCAL WINAPI(UINT, SIZE_T)>()(flags, size);
    g_services->memory_.insert(memory);
    return memory;
  }

  static HLOCAL WINAPI Free(HLOCAL memory) {
    g_services->memory_.erase(memory);
    const HLOCAL result = g_services->free_.Original<HLOCAL WINAPI(HLOCAL)>()(memory);
    SetLastError(ERROR_SUCCESS);
    return result;
  }
};

FakeServices::FakeServices(CallScript& script)
    : script_(script), allocate_("LocalAlloc", FakeServicesHook::Allocate), free_("LocalFree", FakeServicesHook::Free) {
  g_services = this;
  Patch("OpenSCManagerW", FakeServicesHook::OpenManager);
  Patch("OpenServiceW", FakeServicesHook::OpenNamed);
  Patch("CloseServiceHandle", FakeServicesHook::Close);
  Patch("QueryServiceStatus", FakeServicesHook::QueryStatus);
  Patch("QueryServiceConfigW", FakeServicesHook::QueryConfig);
  Patch("StartServiceW", FakeServicesHook::Start);
  Patch("ControlService", FakeServicesHook::Control);
  Patch("CreateServiceW", FakeServicesHook::Create);
  Patch("DeleteService", FakeServicesHook::Delete);
  // No export needs it yet: it is not in the shipped library's table.
  if (FindImport(PatchedModule(), "ChangeServiceConfigW") != nullptr) {
    Patch("ChangeServiceConfigW", FakeServicesHook::Change);
  }
}

FakeServices::~FakeServices() {
  for (const auto& [handle, state] : handles_) {
    if (state.open) ADD_FAILURE() << "left open: " << (state.is_manager ? "service manager" : "service");
  }
  EXPECT_TRUE(memory_.empty()) << "memory left allocated";
  g_services = nullptr;
}

SC_HANDLE FakeServices::NewHandle(bool is_manager, DWORD access) {
  // Numbers are never used again, so that a closed handle is always known.
  const auto handle = reinterpret_cast<SC_HANDLE>(0x5C000 + 16 * handles_.size());
  handles_[handle] = {is_manager, access, true};
  return handle;
}

bool FakeServices::MayUse(SC_HANDLE handle, bool is_manager, DWORD right) {
  const auto known = handles_.find(handle);
  if (known == handles_.end() || !known->second.open || known->second.is_manager != is_manager) {
    ADD_FAILURE() << "call on a handle that is closed or of the wrong kind";
    return Fail(ERROR_INVALID_HANDLE);
  }
  return (known->second.access & right) == right || Fail(ERROR_ACCESS_DENIED);
}

void FakeServices::Close(SC_HANDLE handle) {
  const auto known = handles_.find(handle);
  if (known == handles_.end() || !known->second.open) {
    ADD_FAILURE() << "handle closed that is not open";
    return;
  }
  known->second.open = false;
  const bool in_use = std::any_of(handles_.begin(), handles_.end(),
                                  [](const auto& entry) { return entry.second.open && !entry.second.is_manager; });
  if (service.marked_for_delete && !in_use) service.exists = service.marked_for_delete = false;
}

void FakeServices::FillStatus(SERVICE_STATUS* status) {
  if (service.state == SERVICE_START_PENDING || service.state == SERVICE_STOP_PENDING) {
    const bool starting = service.state == SERVICE_START_PENDING;
    if (service.pending_polls-- <= 0) service.state = starting ? service.state_after_start : service.state_after_stop;
  }
  *status = {.dwServiceType = SERVICE_KERNEL_DRIVER, .dwCurrentState = service.state};
}

}  // namespace vexa::test
