#include "tests/sweep/fake_system.h"

#include <appmodel.h>
#include <cfgmgr32.h>
#include <evntprov.h>
#include <setupapi.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <string_view>

#include "frame/driver_protocol.h"

namespace vexa::test {
namespace {

FakeSystem* g_system = nullptr;
const ImportPatch* g_control = nullptr;
PENABLECALLBACK g_enable = nullptr;  // of the library, which registers once

constexpr wchar_t kAnalysisKey[] = L"software\\vexa\\vexa system control interface\\vexasystemanalysis";
constexpr wchar_t kHotkeysKey[] =
    L"software\\vexa\\vexa system control interface\\vexaoptimization\\vexa keyboard hotkeys";
constexpr wchar_t kDriverKey[] = L"system\\controlset001\\control\\class\\{4d36e97d}\\0042";
constexpr wchar_t kPackage[] = L"Vexa_3.0.12.0_x64__v3x4p8k2m9q7t";
constexpr wchar_t kDeviceIds[] = L"ACPI\\VEXA9001\\1\0ACPI\\VEXA2018\\0\0";
constexpr char kNumberFile[] = "80";

std::wstring Lower(std::wstring text) {
  std::ranges::transform(text, text.begin(), [](wchar_t c) { return c >= L'A' && c <= L'Z' ? c + 32 : c; });
  return text;
}
HMODULE LockdownModule() { return reinterpret_cast<HMODULE>(uintptr_t{0x3D1D0000}); }

}  // namespace

struct FakeSystemHook {
  // ---- Registry ----

  static LSTATUS WINAPI OpenKey(HKEY root, LPCWSTR name, DWORD, REGSAM, PHKEY key) {
    if (root != HKEY_LOCAL_MACHINE) return ERROR_FILE_NOT_FOUND;
    const std::wstring lower = Lower(name);
    const auto found = std::ranges::find_if(g_system->values_, [&](const auto& v) { return v.first.first == lower; });
    return found == g_system->values_.end() ? ERROR_FILE_NOT_FOUND : Opened(lower, key);
  }
  static LSTATUS WINAPI CreateKey(HKEY, LPCWSTR name, DWORD, LPWSTR, DWORD, REGSAM, const LPSECURITY_ATTRIBUTES,
                                  PHKEY key, LPDWORD) {
    return Opened(Lower(name), key);
  }
  static LSTATUS Opened(const std::wstring& name, PHKEY key) {
    const uintptr_t handle = g_system->NewHandle();
    g_system->keys_[handle] = name;
    *key = reinterpret_cast<HKEY>(handle);
    return ERROR_SUCCESS;
  }
  static LSTATUS WINAPI CloseKey(HKEY key) {
    return g_system->keys_.erase(reinterpret_cast<uintptr_t>(key)) == 1 ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
  }
  static LSTATUS WINAPI QueryValue(HKEY key, LPCWSTR name, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD size) {
    const auto open = g_system->keys_.find(reinterpret_cast<uintptr_t>(key));
    if (open == g_system->keys_.end()) return ERROR_INVALID_HANDLE;
    const auto value = g_system->values_.find({open->second, Lower(name)});
    if (value == g_system->values_.end()) return ERROR_FILE_NOT_FOUND;
    const auto needed = static_cast<DWORD>(value->second.bytes.size());
    const bool fits = needed <= *size;
    if (type != nullptr) *type = value->second.type;
    if (fits) std::memcpy(data, value->second.bytes.data(), needed);
    *size = needed;
    return fits ? ERROR_SUCCESS : ERROR_MORE_DATA;
  }
  static LSTATUS WINAPI SetValue(HKEY key, LPCWSTR name, DWORD, DWORD type, const BYTE* data, DWORD size) {
    const auto open = g_system->keys_.find(reinterpret_cast<uintptr_t>(key));
    if (open == g_system->keys_.end()) return ERROR_INVALID_HANDLE;
    g_system->values_[{open->second, Lower(name)}] = {type, std::string(reinterpret_cast<const char*>(data), size)};
    return ERROR_SUCCESS;
  }

  // ---- Files ----

  static HANDLE WINAPI OpenFile(LPCWSTR, DWORD, DWORD, LPSECURITY_ATTRIBUTES, DWORD, DWORD, HANDLE) {
    return reinterpret_cast<HANDLE>(g_system->NewHandle());
  }
  static BOOL WINAPI CloseAny(HANDLE) { return TRUE; }
  static BOOL WINAPI Read(HANDLE, LPVOID buffer, DWORD size, LPDWORD read, LPOVERLAPPED) {
    *read = std::min<DWORD>(size, sizeof kNumberFile - 1);
    std::memcpy(buffer, kNumberFile, *read);
    return TRUE;
  }
  static BOOL WINAPI Write(HANDLE, LPCVOID, DWORD size, LPDWORD written, LPOVERLAPPED) {
    *written = size;
    return TRUE;
  }

  // ---- Devices ----

  static HDEVINFO WINAPI ClassDevs(const GUID*, PCWSTR, HWND, DWORD) {
    return reinterpret_cast<HDEVINFO>(g_system->NewHandle());
  }
  static BOOL WINAPI EnumDevice(HDEVINFO, DWORD index, PSP_DEVINFO_DATA device) {
    device->DevInst = index;
    if (index < 2) return TRUE;
    SetLastError(ERROR_NO_MORE_ITEMS);
    return FALSE;
  }
  static BOOL WINAPI DeviceProperty(HDEVINFO, PSP_DEVINFO_DATA device, DWORD, PDWORD, PBYTE buffer, DWORD, PDWORD) {
    constexpr wchar_t kOther[] = L"ACPI\\VEXA9001\0", kControl[] = L"ACPI\\VEXA2018\0";
    static_assert(sizeof kOther == sizeof kControl);
    std::memcpy(buffer, device->DevInst == 0 ? kOther : kControl, sizeof kOther);
    return TRUE;
  }
  static BOOL WINAPI DestroySet(HDEVINFO) { return TRUE; }

  static CONFIGRET WINAPI ListSize(PULONG size, PCWSTR, ULONG) {
    *size = std::size(kDeviceIds);
    return CR_SUCCESS;
  }
  static CONFIGRET WINAPI List(PCWSTR, PZZWSTR ids, ULONG size, ULONG) {
    std::wmemcpy(ids, kDeviceIds, std::min<size_t>(size, std::size(kDeviceIds)));
    return CR_SUCCESS;
  }
  static CONFIGRET WINAPI Locate(PDEVINST device, DEVINSTID_W id, ULONG) {
    *device = std::wcschr(id, L'9') != nullptr ? 1 : 2;
    return CR_SUCCESS;
  }
  static CONFIGRET WINAPI NodeProperty(DEVINST device, ULONG property, PULONG type, PVOID buffer, PULONG size, ULONG) {
    const wchar_t* const text = property == CM_DRP_DRIVER ? L"{4d36e97d}\\0042"
                                : device == 1             ? L"Something else"
                                                          : L"Vexa System Control Interface V2";
    const auto needed = static_cast<ULONG>((std::wcslen(text) + 1) * sizeof(wchar_t));
    *type = REG_SZ;
    if (needed > *size) return CR_BUFFER_SMALL;
    std::memcpy(buffer, text, *size = needed);
    return CR_SUCCESS;
  }

  // ---- Trace and event log ----

  static ULONG WINAPI Register(LPCGUID, PENABLECALLBACK enable, PVOID, PREGHANDLE handle) {
    *handle = g_system->NewHandle();
    g_enable = enable;
    return ERROR_SUCCESS;
  }
  static ULONG WINAPI Unregister(REGHANDLE) { return ERROR_SUCCESS; }
  static ULONG WINAPI SetInformation(REGHANDLE, EVENT_INFO_CLASS, PVOID, ULONG) { return ERROR_SUCCESS; }
  static ULONG WINAPI WriteEvent(REGHANDLE, PCEVENT_DESCRIPTOR, LPCGUID, LPCGUID, ULONG, PEVENT_DATA_DESCRIPTOR) {
    return ERROR_SUCCESS;
  }
  static HANDLE WINAPI OpenSource(LPCWSTR, LPCWSTR) { return reinterpret_cast<HANDLE>(g_system->NewHandle()); }
  static BOOL WINAPI CloseSource(HANDLE) { return TRUE; }
  static BOOL WINAPI Report(HANDLE, WORD, WORD, DWORD, PSID, WORD, DWORD, LPCWSTR*, LPVOID) { return TRUE; }

  // ---- Facts ----

  static void WINAPI LocalTime(LPSYSTEMTIME time) { *time = {.wYear = 2026, .wMonth = 2, .wDay = 3, .wHour = 9}; }
  static BOOL WINAPI PowerStatus(LPSYSTEM_POWER_STATUS status) {
    *status = {.ACLineStatus = 1, .BatteryLifePercent = 84};
    return TRUE;
  }
  static UINT WINAPI SystemDirectory(LPWSTR buffer, UINT) {
    constexpr wchar_t kFolder[] = L"C:\\Windows\\System32";
    std::wmemcpy(buffer, kFolder, std::size(kFolder));
    return std::size(kFolder) - 1;
  }
  static HMODULE WINAPI Load(LPCWSTR name, HANDLE, DWORD) {
    if (std::wcsstr(name, L"wldp.dll") != nullptr) return LockdownModule();
    SetLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
  }
  static BOOL WINAPI FreeLoaded(HMODULE) { return TRUE; }
  static HRESULT WINAPI LockdownMode(int* mode) {
    *mode = 2;
    return S_OK;
  }
  static LONG WINAPI Packages(PCWSTR, UINT32* count, PWSTR* names, UINT32* length, PWSTR buffer) {
    const bool fits = *count >= 1 && *length >= std::size(kPackage);
    *count = 1;
    *length = std::size(kPackage);
    if (!fits) return ERROR_INSUFFICIENT_BUFFER;
    names[0] = buffer;
    std::wmemcpy(buffer, kPackage, std::size(kPackage));
    return ERROR_SUCCESS;
  }
  static BOOL WINAPI Detect(HANDLE, USHORT* process, USHORT* machine) {
    *process = IMAGE_FILE_MACHINE_UNKNOWN;
    *machine = g_system->machine;
    return TRUE;
  }
  static FARPROC WINAPI Find(HMODULE module, LPCSTR name) {
    const std::pair<std::string_view, void*> functions[] = {
        {"WldpQueryWindowsLockdownMode", reinterpret_cast<void*>(LockdownMode)},
        {"GetPackagesByPackageFamily", reinterpret_cast<void*>(Packages)},
        {"IsWow64Process2", reinterpret_cast<void*>(Detect)}};
    for (const auto& [function, address] : functions) {
      if (function == name) return reinterpret_cast<FARPROC>(address);
    }
    return g_system->Original("GetProcAddress", Find)(module, name);
  }
};

FakeSystem::FakeSystem() {
  g_system = this;
  Patch("RegOpenKeyExW", FakeSystemHook::OpenKey);
  Patch("RegCreateKeyExW", FakeSystemHook::CreateKey);
  Patch("RegCloseKey", FakeSystemHook::CloseKey);
  Patch("RegQueryValueExW", FakeSystemHook::QueryValue);
  Patch("RegSetValueExW", FakeSystemHook::SetValue);
  Patch("CreateFileW", FakeSystemHook::OpenFile);
  Patch("CloseHandle", FakeSystemHook::CloseAny);
  Patch("ReadFile", FakeSystemHook::Read);
  Patch("WriteFile", FakeSystemHook::Write);
  Patch("SetupDiGetClassDevsW", FakeSystemHook::ClassDevs);
  Patch("SetupDiEnumDeviceInfo", FakeSystemHook::EnumDevice);
  Patch("SetupDiGetDeviceRegistryPropertyW", FakeSystemHook::DeviceProperty);
  Patch("SetupDiDestroyDeviceInfoList", FakeSystemHook::DestroySet);
  Patch("CM_Get_Device_ID_List_SizeW", FakeSystemHook::ListSize);
  Patch("CM_Get_Device_ID_ListW", FakeSystemHook::List);
  Patch("CM_Locate_DevNodeW", FakeSystemHook::Locate);
  Patch("CM_Get_DevNode_Registry_PropertyW", FakeSystemHook::NodeProperty);
  Patch("EventRegister", FakeSystemHook::Register);
  Patch("EventUnregister", FakeSystemHook::Unregister);
  Patch("EventSetInformation", FakeSystemHook::SetInformation);
  Patch("EventWriteTransfer", FakeSystemHook::WriteEvent);
  Patch("RegisterEventSourceW", FakeSystemHook::OpenSource);
  Patch("DeregisterEventSource", FakeSystemHook::CloseSource);
  Patch("ReportEventW", FakeSystemHook::Report);
  Patch("GetLocalTime", FakeSystemHook::LocalTime);
  Patch("GetSystemPowerStatus", FakeSystemHook::PowerStatus);
  Patch("GetSystemDirectoryW", FakeSystemHook::SystemDirectory);
  Patch("LoadLibraryExW", FakeSystemHook::Load);
  Patch("FreeLibrary", FakeSystemHook::FreeLoaded);
  Patch("GetProcAddress", FakeSystemHook::Find);
}

FakeSystem::~FakeSystem() {
  patches_.clear();
  g_system = nullptr;
}

void FakeSystem::EnableTracing() {
  constexpr ULONG kEnableProvider = 1;  // EVENT_CONTROL_CODE_ENABLE_PROVIDER, not in every set of headers
  constexpr UCHAR kVerbose = 5;
  g_enable(nullptr, kEnableProvider, kVerbose, 0, 0, nullptr, nullptr);
}

void FakeSystem::UseLongTexts(const std::wstring& text) { long_text_ = text; }

void FakeSystem::Reset(const std::wstring& arch) {
  const auto store = [this](const wchar_t* key, const wchar_t* name, const std::wstring& text) {
    values_[{key, name}] = {REG_SZ, std::string(reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * 2)};
  };
  const auto of = [this](const wchar_t* usual) { return long_text_.empty() ? std::wstring(usual) : long_text_; };
  keys_.clear();
  values_.clear();
  store(L"software\\vexa\\config", L"other", L"");
  if (!arch.empty()) store(L"software\\vexa\\config", L"arch", arch);
  store(kAnalysisKey, L"vexa\\user", of(L"C:\\Program Files\\Vexa"));
  store(kHotkeysKey, L"chargingrate", of(L"80"));
  store(kHotkeysKey, L"quietfan", of(L"1"));
  store(kDriverKey, L"driverversion", of(L"3.1.22.0"));
}

// ---- The driver and the firmware's ACPI device ----

namespace {

constexpr DWORD kCallAcpiMethod = 0x0022240C;

uint8_t RegisterOf(const EcCommandRecord& record) {
  if (record.command == 0xBB) {
    switch (record.data[0]) {
      case 0x50: return FakeDevices::table_version;
      case 0x51: return 0x80;  // the EC reports its revision
      default: return 'A';
    }
  }
  const bool is_fan_count = record.data[0] == 2 && record.data[1] == 0x30;
  return is_fan_count ? 2 : 0x31;
}

BOOL WINAPI Control(HANDLE device, DWORD code, LPVOID in, DWORD in_size, LPVOID out, DWORD out_size, LPDWORD returned,
                    LPOVERLAPPED overlapped) {
  if (code == static_cast<DWORD>(ControlCode::kEcCommand)) {
    EcCommandRecord record{};
    std::memcpy(&record, in, std::min<size_t>(in_size, sizeof record));
    record.result = record.read_flag != 0 ? RegisterOf(record) : 0;
    std::memcpy(out, &record, *returned = std::min<DWORD>(out_size, sizeof record));
    return TRUE;
  }
  if (code == kCallAcpiMethod) {
    constexpr uint32_t kWattage = 0x10041;
    std::memcpy(out, &kWattage, *returned = sizeof kWattage);
    return TRUE;
  }
  if (code >> 16 == 0x8010) {
    std::memset(out, 0x21, *returned = out_size);
    return TRUE;
  }
  return g_control->Original<decltype(Control)>()(device, code, in, in_size, out, out_size, returned, overlapped);
}

}  // namespace

FakeDevices::FakeDevices() : patch_("DeviceIoControl", Control) { g_control = &patch_; }

}  // namespace vexa::test
