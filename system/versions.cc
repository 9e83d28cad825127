// Versions of what the maker installs beside the library: the companion app and the system-control driver.
#include <windows.h>

#include <appmodel.h>
#include <cfgmgr32.h>

#include <cwchar>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/export_wall.h"
#include "frame/handles.h"
#include "frame/log.h"
#include "frame/registry.h"
#include "system/texts.h"
#include "vexa/system.h"

namespace vexa {
namespace {

constexpr wchar_t kCompanionFamily[] = L"" VEXA_COMPANION_PACKAGE_FAMILY;
constexpr std::wstring_view kControlDevice = L"Vexa System Control Interface V2";
constexpr wchar_t kClassKey[] = L"SYSTEM\\ControlSet001\\Control\\Class\\";
constexpr size_t kDeviceTextCapacity = 256;

// Leaves the buffer as it is when the text does not fit.
void CopyVersion(std::wstring_view version, wchar_t* text) noexcept {
  if (version.size() >= VEXA_VERSION_CAPACITY) return;
  std::wmemcpy(text, version.data(), version.size());
  text[version.size()] = L'\0';
}

// ---- Companion app ----

// Systems before Windows 8.1 lack the function, so it is not in the import table.
LONG PackagesOfCompanion(UINT32* count, PWSTR* names, UINT32* length, wchar_t* buffer) {
  using Function = LONG(WINAPI*)(PCWSTR, UINT32*, PWSTR*, UINT32*, PWSTR);
  static const auto find = reinterpret_cast<Function>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "GetPackagesByPackageFamily")));
  return find == nullptr ? ERROR_PROC_NOT_FOUND : find(kCompanionFamily, count, names, length, buffer);
}

void ReadCompanionVersion(wchar_t* text) {
  UINT32 count = 0;
  UINT32 length = 0;
  if (PackagesOfCompanion(&count, nullptr, &length, nullptr) != ERROR_INSUFFICIENT_BUFFER) return;
  std::vector<PWSTR> names(count);
  std::vector<wchar_t> buffer(length);
  if (PackagesOfCompanion(&count, names.data(), &length, buffer.data()) != ERROR_SUCCESS) return;
  if (count == 0 || names.empty()) return;
  if (const std::optional<std::wstring_view> version = PackageVersion(names[0])) CopyVersion(*version, text);
}

// ---- System-control driver ----

// A text property; empty when the device has none, or one longer than any that is looked for.
std::wstring DeviceText(DEVINST device, ULONG property) {
  wchar_t text[kDeviceTextCapacity] = {};
  ULONG type = REG_NONE;
  ULONG size = sizeof text - sizeof(wchar_t);
  const CONFIGRET result = CM_Get_DevNode_Registry_PropertyW(device, property, &type, text, &size, 0);
  return result == CR_SUCCESS && type == REG_SZ ? text : std::wstring();
}

// Ids of all present devices, each terminated, an empty one behind the last.
std::vector<wchar_t> PresentDevices() {
  ULONG size = 0;
  if (CM_Get_Device_ID_List_SizeW(&size, nullptr, CM_GETIDLIST_FILTER_PRESENT) != CR_SUCCESS) return {L'\0'};
  std::vector<wchar_t> ids(size_t{size} + 2);
  if (CM_Get_Device_ID_ListW(nullptr, ids.data(), size, CM_GETIDLIST_FILTER_PRESENT) != CR_SUCCESS) return {L'\0'};
  return ids;
}

// The driver key of the first device of that description; empty when there is none.
std::wstring ControlDriverKey() {
  const std::vector<wchar_t> ids = PresentDevices();
  for (const wchar_t* id = ids.data(); *id != L'\0'; id += std::wcslen(id) + 1) {
    DEVINST device = 0;
    // The function takes a pointer to a changeable text and changes nothing.
    if (CM_Locate_DevNodeW(&device, const_cast<DEVINSTID_W>(id), CM_LOCATE_DEVNODE_NORMAL) != CR_SUCCESS) continue;
    if (DeviceText(device, CM_DRP_DEVICEDESC) == kControlDevice) return DeviceText(device, CM_DRP_DRIVER);
  }
  return {};
}

void ReadDriverVersion(wchar_t* text) {
  const std::wstring driver = ControlDriverKey();
  if (driver.empty()) return;
  const std::wstring path = kClassKey + driver;
  RegistryKey key;
  const LSTATUS status = RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, key.put());
  if (status != ERROR_SUCCESS) {
    LogCritical(L"ERROR: Failed to open registry key [%s]. Error code=0x%08x", path.c_str(), static_cast<int>(status));
    return;
  }
  const std::optional<std::wstring> version = ReadTextValue(key.get(), L"DriverVersion");
  if (!version) return;
  LogInfo(L"strValueOfDriverVersion = %s", version->c_str());
  CopyVersion(*version, text);
}

// The body of an export that answers nothing.
void Fill(const char* export_name, wchar_t* text, void (*read)(wchar_t*)) noexcept {
  if (text == nullptr) return;
  (void)Guarded(export_name, 0, [=] {
    read(text);
    return 0;
  });
}

}  // namespace
}  // namespace vexa

void GetUWPVersion(wchar_t* text) noexcept { vexa::Fill("GetUWPVersion", text, vexa::ReadCompanionVersion); }

void GetInfVersion(wchar_t* text) noexcept { vexa::Fill("GetInfVersion", text, vexa::ReadDriverVersion); }
