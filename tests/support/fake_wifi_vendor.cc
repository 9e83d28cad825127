#include "tests/support/fake_wifi_vendor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <utility>

namespace vexa::test {
namespace {

FakeWifiVendor* g_fake = nullptr;

const auto kDevices = reinterpret_cast<HDEVINFO>(uintptr_t{0xDE71CE00});
const auto kKey = reinterpret_cast<HKEY>(uintptr_t{0xDE71CE01});
const auto kIntel = reinterpret_cast<HMODULE>(uintptr_t{0x8086'0000});
const auto kRealtek = reinterpret_cast<HMODULE>(uintptr_t{0x0BDA'0000});

}  // namespace

struct FakeWifiVendorHook {
  static void WriteRecord(const std::string& record, void* to, uint32_t capacity, uint32_t* size) {
    EXPECT_LE(record.size(), capacity);
    std::memcpy(to, record.data(), record.size());
    *size = g_fake->claimed_size != 0 ? g_fake->claimed_size : static_cast<uint32_t>(record.size());
  }

  static uint32_t ListAdapters(void* list, uint32_t* size) {
    if (g_fake->script_.Fails("WifiGetAdapterList", std::to_string(*size))) return 1;
    WriteRecord(g_fake->adapter_list, list, *size, size);
    return 0;
  }
  static uint32_t ReadStatistics(const void* adapter, void* record, uint32_t* size) {
    if (g_fake->script_.Fails("WifiGetBSSConfigurationStatistics", Hex(static_cast<const uint8_t*>(adapter)[0])))
      return 1;
    WriteRecord(g_fake->bss_statistics, record, *size, size);
    return 0;
  }
  static BOOL FindAdapters(uint32_t* count) {
    *count = g_fake->realtek_adapters;
    return !g_fake->script_.Fails("DLL_findRealtekWlanNics");
  }
  static BOOL QueryOid(uint32_t oid, void* result, uint32_t capacity, uint32_t* size) {
    if (g_fake->script_.Fails("DLL_QueryOid", Hex(oid) + " " + std::to_string(capacity))) return FALSE;
    WriteRecord(g_fake->statistics_oid, result, capacity, size);
    return TRUE;
  }

  static HDEVINFO WINAPI Devices(const GUID*, PCWSTR enumerator, HWND, DWORD flags) {
    EXPECT_STREQ(enumerator, L"SWD");  // of software components
    EXPECT_EQ(flags, DWORD{DIGCF_PRESENT | DIGCF_ALLCLASSES});
    if (g_fake->script_.Fails("SetupDiGetClassDevsW")) return INVALID_HANDLE_VALUE;
    ++g_fake->open;
    return kDevices;
  }
  // Another component comes first.
  static BOOL WINAPI Next(HDEVINFO, DWORD index, PSP_DEVINFO_DATA device) {
    device->DevInst = index;
    return index < (g_fake->intel_present ? 2u : 1u);
  }
  static BOOL WINAPI Property(HDEVINFO, PSP_DEVINFO_DATA device, DWORD property, PDWORD, PBYTE buffer, DWORD size,
                              PDWORD) {
    EXPECT_EQ(property, DWORD{SPDRP_HARDWAREID});
    constexpr wchar_t kOther[] = L"SWC\\VID_8086&PID_PIE&SID_0002\0";
    constexpr wchar_t kComponent[] = L"SWC\\VID_8086&PID_PIE&SID_0001&REV_1\0SWC\\VID_8086&PID_PIE&SID_0001\0";
    EXPECT_GE(size, sizeof kComponent);
    std::memcpy(buffer, device->DevInst == 0 ? kOther : kComponent,
                device->DevInst == 0 ? sizeof kOther : sizeof kComponent);
    return TRUE;
  }
  static BOOL WINAPI Destroy(HDEVINFO set) {
    EXPECT_EQ(set, kDevices);
    --g_fake->open;
    return TRUE;
  }
  static HKEY WINAPI OpenKey(HDEVINFO, PSP_DEVINFO_DATA device, DWORD scope, DWORD, DWORD type, REGSAM access) {
    EXPECT_EQ(device->DevInst, 1u);
    EXPECT_EQ(scope, DWORD{DICS_FLAG_GLOBAL});
    EXPECT_EQ(type, DWORD{DIREG_DEV});
    EXPECT_EQ(access, REGSAM{KEY_READ});
    if (g_fake->script_.Fails("SetupDiOpenDevRegKey")) return reinterpret_cast<HKEY>(INVALID_HANDLE_VALUE);
    ++g_fake->open;
    return kKey;
  }
  static LSTATUS WINAPI QueryValue(HKEY key, LPCWSTR name, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD size) {
    EXPECT_EQ(key, kKey);
    EXPECT_STREQ(name, L"LibraryPath");
    if (g_fake->script_.Fails("RegQueryValueExW")) return ERROR_FILE_NOT_FOUND;
    const auto bytes = static_cast<DWORD>(g_fake->intel_path.size() * sizeof(wchar_t));  // without its end
    if (bytes > *size) return ERROR_MORE_DATA;
    std::memcpy(data, g_fake->intel_path.data(), bytes);
    *size = bytes;
    *type = g_fake->intel_path_type;
    return ERROR_SUCCESS;
  }
  static LSTATUS WINAPI CloseKey(HKEY key) {
    EXPECT_EQ(key, kKey);
    --g_fake->open;
    return ERROR_SUCCESS;
  }

  static HMODULE WINAPI Load(LPCWSTR path, HANDLE file, DWORD flags) {
    if (std::wcschr(path, L'\\') == nullptr) {
      return g_fake->load_.Original<HMODULE WINAPI(LPCWSTR, HANDLE, DWORD)>()(path, file, flags);
    }
    EXPECT_EQ(flags, DWORD{LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32});
    const bool is_realtek = std::wstring_view(path).ends_with(L"wlanCliDLL.dll");
    if (g_fake->script_.Fails("LoadLibraryExW", Narrow(path)) || (is_realtek && !g_fake->realtek_present))
      return nullptr;
    ++g_fake->open;
    return is_realtek ? kRealtek : kIntel;
  }
  static BOOL WINAPI Free(HMODULE module) {
    if (module != kIntel && module != kRealtek) return g_fake->free_.Original<BOOL WINAPI(HMODULE)>()(module);
    --g_fake->open;
    return TRUE;
  }
  static FARPROC WINAPI Find(HMODULE module, LPCSTR name) {
    const struct {
      HMODULE module;
      std::string name;
      void* address;
    } functions[] = {{kIntel, "WifiGetAdapterList", reinterpret_cast<void*>(ListAdapters)},
                     {kIntel, "WifiGetBSSConfigurationStatistics", reinterpret_cast<void*>(ReadStatistics)},
                     {kRealtek, "DLL_findRealtekWlanNics", reinterpret_cast<void*>(FindAdapters)},
                     {kRealtek, "DLL_QueryOid", reinterpret_cast<void*>(QueryOid)}};
    if (module != kIntel && module != kRealtek) {
      return g_fake->find_.Original<FARPROC WINAPI(HMODULE, LPCSTR)>()(module, name);
    }
    for (const auto& function : functions) {
      if (function.module == module && function.name == name && !g_fake->missing_functions.contains(name)) {
        return reinterpret_cast<FARPROC>(function.address);
      }
    }
    return nullptr;
  }
  static DWORD WINAPI FileName(HMODULE module, LPWSTR path, DWORD capacity) {
    EXPECT_EQ(module, nullptr);
    EXPECT_GT(capacity, g_fake->host_program.size());
    std::wmemcpy(path, g_fake->host_program.c_str(), g_fake->host_program.size() + 1);
    return static_cast<DWORD>(g_fake->host_program.size());
  }
  static VOID WINAPI Pause(DWORD wait_ms) { (void)g_fake->script_.Fails("Sleep", std::to_string(wait_ms)); }
};

FakeWifiVendor::FakeWifiVendor(CallScript& script)
    : script_(script),
      devices_("SetupDiGetClassDevsW", FakeWifiVendorHook::Devices),
      next_("SetupDiEnumDeviceInfo", FakeWifiVendorHook::Next),
      property_("SetupDiGetDeviceRegistryPropertyW", FakeWifiVendorHook::Property),
      destroy_("SetupDiDestroyDeviceInfoList", FakeWifiVendorHook::Destroy),
      open_key_("SetupDiOpenDevRegKey", FakeWifiVendorHook::OpenKey),
      query_value_("RegQueryValueExW", FakeWifiVendorHook::QueryValue),
      close_key_("RegCloseKey", FakeWifiVendorHook::CloseKey),
      load_("LoadLibraryExW", FakeWifiVendorHook::Load),
      free_("FreeLibrary", FakeWifiVendorHook::Free),
      find_("GetProcAddress", FakeWifiVendorHook::Find),
      file_name_("GetModuleFileNameW", FakeWifiVendorHook::FileName),
      sleep_("Sleep", FakeWifiVendorHook::Pause) {
  g_fake = this;
}

FakeWifiVendor::~FakeWifiVendor() {
  EXPECT_EQ(open, 0) << "not given back";
  g_fake = nullptr;
}

}  // namespace vexa::test
