#include "tests/support/fake_bluetooth.h"

#include <bluetoothapis.h>
#include <gtest/gtest.h>

#include <cwchar>
#include <memory>

#include "radio/peripheral_snapshots.h"

namespace vexa::test {
namespace {

FakeBluetooth* g_fake = nullptr;

const auto kModule = reinterpret_cast<HMODULE>(uintptr_t{0xB1E70000});

// Numbers that no real handle has. A search's number is that of what it delivers next.
enum class Kind : uintptr_t { kRadio = 0x7D000000, kRadioSearch = 0x7D100000, kDeviceSearch = 0x7D200000 };

HANDLE HandleOf(Kind kind, size_t number) { return reinterpret_cast<HANDLE>(static_cast<uintptr_t>(kind) + number); }
bool IsOf(Kind kind, HANDLE handle) {
  return (reinterpret_cast<uintptr_t>(handle) & ~uintptr_t{0xFFFFF}) == static_cast<uintptr_t>(kind);
}
size_t NumberOf(HANDLE handle) { return reinterpret_cast<uintptr_t>(handle) & 0xFFFFF; }

size_t g_next_radio = 0;
size_t g_device_radio = 0;  // the radio whose devices are searched
size_t g_next_device = 0;

}  // namespace

struct FakeBluetoothHook {
  static void Open(const std::string& what) {
    EXPECT_TRUE(g_fake->open.insert(what).second) << what << " opened twice";
  }
  static void Close(const std::string& what) {
    EXPECT_EQ(g_fake->open.erase(what), 1u) << what << " closed without being open";
    (void)g_fake->script.Fails("Close", what);
  }

  static bool TakeRadio(HANDLE* radio) {
    if (g_next_radio >= g_fake->radios.size()) {
      SetLastError(ERROR_NO_MORE_ITEMS);
      return false;
    }
    *radio = HandleOf(Kind::kRadio, g_next_radio);
    Open("radio " + std::to_string(g_next_radio++));
    return true;
  }
  static bool TakeDevice(BLUETOOTH_DEVICE_INFO* info) {
    EXPECT_EQ(info->dwSize, 560u);
    const std::vector<uint32_t>& devices = g_fake->radios[g_device_radio].devices;
    if (g_next_device >= devices.size()) {
      SetLastError(ERROR_NO_MORE_ITEMS);
      return false;
    }
    info->ulClassofDevice = devices[g_next_device++];
    // As long as a name can be, not terminated, and no text at all.
    for (wchar_t& character : info->szName) character = wchar_t{0xDC00};
    return true;
  }

  static HBLUETOOTH_RADIO_FIND WINAPI FirstRadio(const BLUETOOTH_FIND_RADIO_PARAMS* wanted, HANDLE* radio) {
    EXPECT_EQ(wanted->dwSize, 4u);
    g_next_radio = 0;
    if (g_fake->script.Fails("BluetoothFindFirstRadio") || !TakeRadio(radio)) return nullptr;
    Open("radio search");
    return HandleOf(Kind::kRadioSearch, 0);
  }
  static WINBOOL WINAPI NextRadio(HBLUETOOTH_RADIO_FIND find, HANDLE* radio) {
    EXPECT_TRUE(IsOf(Kind::kRadioSearch, find));
    return !g_fake->script.Fails("BluetoothFindNextRadio") && TakeRadio(radio);
  }
  static WINBOOL WINAPI CloseRadioSearch(HBLUETOOTH_RADIO_FIND find) {
    EXPECT_TRUE(IsOf(Kind::kRadioSearch, find));
    Close("radio search");
    return TRUE;
  }
  static DWORD WINAPI RadioInfo(HANDLE radio, PBLUETOOTH_RADIO_INFO info) {
    EXPECT_TRUE(IsOf(Kind::kRadio, radio));
    EXPECT_EQ(info->dwSize, 520u);
    if (!g_fake->script.Fails("BluetoothGetRadioInfo", std::to_string(NumberOf(radio)))) return ERROR_SUCCESS;
    return GetLastError();
  }
  static HBLUETOOTH_DEVICE_FIND WINAPI FirstDevice(const BLUETOOTH_DEVICE_SEARCH_PARAMS* wanted,
                                                   BLUETOOTH_DEVICE_INFO* info) {
    EXPECT_EQ(wanted->dwSize, sizeof *wanted);
    EXPECT_TRUE(wanted->fReturnConnected && !wanted->fReturnAuthenticated && !wanted->fReturnRemembered &&
                !wanted->fReturnUnknown && !wanted->fIssueInquiry && wanted->cTimeoutMultiplier == 0);
    EXPECT_TRUE(IsOf(Kind::kRadio, wanted->hRadio));
    g_device_radio = NumberOf(wanted->hRadio);
    g_next_device = 0;
    if (g_fake->script.Fails("BluetoothFindFirstDevice") || !TakeDevice(info)) return nullptr;
    Open("device search");
    return HandleOf(Kind::kDeviceSearch, 0);
  }
  static WINBOOL WINAPI NextDevice(HBLUETOOTH_DEVICE_FIND find, BLUETOOTH_DEVICE_INFO* info) {
    EXPECT_TRUE(IsOf(Kind::kDeviceSearch, find));
    return !g_fake->script.Fails("BluetoothFindNextDevice") && TakeDevice(info);
  }
  static WINBOOL WINAPI CloseDeviceSearch(HBLUETOOTH_DEVICE_FIND find) {
    EXPECT_TRUE(IsOf(Kind::kDeviceSearch, find));
    Close("device search");
    return TRUE;
  }

  static HMODULE WINAPI Load(LPCWSTR name, HANDLE file, DWORD flags) {
    if (std::wcscmp(name, L"bluetoothapis.dll") != 0) {
      return g_fake->load_.Original<HMODULE WINAPI(LPCWSTR, HANDLE, DWORD)>()(name, file, flags);
    }
    EXPECT_EQ(flags, DWORD{LOAD_LIBRARY_SEARCH_SYSTEM32});
    return g_fake->script.Fails("LoadLibraryExW") ? nullptr : kModule;
  }
  static FARPROC WINAPI Find(HMODULE module, LPCSTR name) {
    if (module != kModule) return g_fake->find_.Original<FARPROC WINAPI(HMODULE, LPCSTR)>()(module, name);
    const std::pair<std::string, void*> functions[] = {
        {"BluetoothFindFirstRadio", reinterpret_cast<void*>(FirstRadio)},
        {"BluetoothFindNextRadio", reinterpret_cast<void*>(NextRadio)},
        {"BluetoothFindRadioClose", reinterpret_cast<void*>(CloseRadioSearch)},
        {"BluetoothGetRadioInfo", reinterpret_cast<void*>(RadioInfo)},
        {"BluetoothFindFirstDevice", reinterpret_cast<void*>(FirstDevice)},
        {"BluetoothFindNextDevice", reinterpret_cast<void*>(NextDevice)},
        {"BluetoothFindDeviceClose", reinterpret_cast<void*>(CloseDeviceSearch)},
    };
    for (const auto& [known, function] : functions) {
      if (known == name && !g_fake->missing_functions.contains(known)) return reinterpret_cast<FARPROC>(function);
    }
    SetLastError(ERROR_PROC_NOT_FOUND);
    return nullptr;
  }
  static BOOL WINAPI CloseAny(HANDLE handle) {
    if (!IsOf(Kind::kRadio, handle)) return g_fake->close_.Original<BOOL WINAPI(HANDLE)>()(handle);
    Close("radio " + std::to_string(NumberOf(handle)));
    return TRUE;
  }
};

FakeBluetooth::FakeBluetooth()
    : load_("LoadLibraryExW", FakeBluetoothHook::Load),
      find_("GetProcAddress", FakeBluetoothHook::Find),
      close_("CloseHandle", FakeBluetoothHook::CloseAny) {
  g_fake = this;
  g_bluetooth = {};
  std::construct_at(&g_bluetooth_library, L"bluetoothapis.dll");
}

FakeBluetooth::~FakeBluetooth() {
  EXPECT_TRUE(open.empty()) << *open.begin() << " left open";
  g_fake = nullptr;
  g_bluetooth = {};
  std::construct_at(&g_bluetooth_library, L"bluetoothapis.dll");
}

}  // namespace vexa::test
