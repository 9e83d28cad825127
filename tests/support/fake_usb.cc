#include "tests/support/fake_usb.h"

#include <cfgmgr32.h>
#include <gtest/gtest.h>
#include <setupapi.h>

#include <cstring>
#include <cwchar>

#include "radio/peripheral_snapshots.h"

namespace vexa::test {
namespace {

FakeUsb* g_fake = nullptr;

const auto kSet = reinterpret_cast<HDEVINFO>(uintptr_t{0x05B05E70});
constexpr uintptr_t kHub = 0x7D400000;  // a hub's handle: this and the index of the device that it was opened for
constexpr DEVINST kDeviceNode = 100;    // and the index of the device
constexpr DEVINST kHubNode = 10000;

// What the two requests look like on their way, little-endian.
constexpr size_t kConnectorSize = 18;
constexpr size_t kDescriptorSize = 30;

bool IsHub(HANDLE handle) { return (reinterpret_cast<uintptr_t>(handle) & ~uintptr_t{0xFFFF}) == kHub; }
size_t IndexOf(HANDLE hub) { return reinterpret_cast<uintptr_t>(hub) & 0xFFFF; }

std::string HexBytes(const uint8_t* bytes, size_t size) {
  std::string text;
  for (size_t i = 0; i < size; ++i) text += (bytes[i] < 16 ? "0" : "") + Hex(bytes[i]);
  return text;
}

}  // namespace

struct FakeUsbHook {
  static const FakeUsbDevice& Device(size_t index) { return g_fake->devices.at(index); }
  static void Open(const std::string& what) {
    EXPECT_TRUE(g_fake->open.insert(what).second) << what << " opened twice";
  }
  static void Close(const std::string& what) {
    EXPECT_EQ(g_fake->open.erase(what), 1u) << what << " closed without being open";
    (void)g_fake->script.Fails("Close", what);
  }

  static HDEVINFO WINAPI ClassDevs(const GUID* guid, PCWSTR enumerator, HWND, DWORD flags) {
    EXPECT_EQ(guid->Data1, 0xA5DCBF10u);
    EXPECT_EQ(guid->Data4[7], 0xED);
    EXPECT_EQ(enumerator, nullptr);
    EXPECT_EQ(flags, DWORD{DIGCF_PRESENT | DIGCF_DEVICEINTERFACE});
    if (g_fake->script.Fails("SetupDiGetClassDevsW")) return INVALID_HANDLE_VALUE;
    Open("set");
    return kSet;
  }
  static BOOL WINAPI Enum(HDEVINFO set, DWORD index, PSP_DEVINFO_DATA data) {
    EXPECT_EQ(set, kSet);
    EXPECT_EQ(data->cbSize, sizeof *data);
    if (g_fake->script.Fails("SetupDiEnumDeviceInfo", std::to_string(index))) return FALSE;
    if (index >= g_fake->devices.size()) {
      SetLastError(ERROR_NO_MORE_ITEMS);
      return FALSE;
    }
    data->DevInst = kDeviceNode + index;
    return TRUE;
  }
  static BOOL WINAPI Property(HDEVINFO set, PSP_DEVINFO_DATA data, DWORD property, PDWORD, PBYTE buffer, DWORD size,
                              PDWORD) {
    EXPECT_EQ(set, kSet);
    if (g_fake->script.Fails("SetupDiGetDeviceRegistryPropertyW", std::to_string(property))) return FALSE;
    const FakeUsbDevice& device = Device(data->DevInst - kDeviceNode);
    if (property == SPDRP_ADDRESS) {
      EXPECT_EQ(size, sizeof device.port);
      std::memcpy(buffer, &device.port, sizeof device.port);
      return TRUE;
    }
    if (property == SPDRP_DEVICEDESC && !device.description) {
      SetLastError(ERROR_INVALID_DATA);
      return FALSE;
    }
    const std::wstring& text = property == SPDRP_DEVICEDESC ? *device.description : device.id;
    // As the system does: with its terminator where that fits, and nothing when the text does not.
    const size_t needed = text.size() * sizeof(wchar_t);
    if (needed > size) {
      SetLastError(ERROR_INSUFFICIENT_BUFFER);
      return FALSE;
    }
    std::memcpy(buffer, text.c_str(), needed + sizeof(wchar_t) <= size ? needed + sizeof(wchar_t) : needed);
    return TRUE;
  }
  static BOOL WINAPI Destroy(HDEVINFO) {
    Close("set");
    return TRUE;
  }
  static CONFIGRET WINAPI Parent(PDEVINST parent, DEVINST node, ULONG flags) {
    EXPECT_EQ(flags, 0u);
    if (g_fake->script.Fails("CM_Get_Parent")) return CR_NO_SUCH_DEVNODE;
    *parent = kHubNode + node - kDeviceNode;
    return CR_SUCCESS;
  }
  static CONFIGRET WINAPI DeviceId(DEVINST node, PWSTR buffer, ULONG length, ULONG flags) {
    EXPECT_EQ(length, 260u);
    EXPECT_EQ(flags, 0u);
    const std::wstring& id = node >= kHubNode ? Device(node - kHubNode).hub : Device(node - kDeviceNode).id;
    if (g_fake->script.Fails("CM_Get_Device_IDW", Narrow(id.c_str()))) return CR_FAILURE;
    if (id.size() >= length) return CR_BUFFER_SMALL;
    std::wmemcpy(buffer, id.c_str(), id.size() + 1);
    return CR_SUCCESS;
  }
  static HANDLE WINAPI Create(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES attributes,
                              DWORD disposition, DWORD flags, HANDLE pattern) {
    for (size_t i = 0; i < g_fake->devices.size(); ++i) {
      std::wstring own = L"\\\\.\\" + Device(i).hub + L"#{F18A0E88-C30C-11D0-8815-00A0C906BED8}";
      for (size_t k = 4; k < own.size(); ++k) own[k] = own[k] == L'\\' ? L'#' : own[k];
      if (own != path) continue;
      EXPECT_EQ(access, 0u);
      EXPECT_EQ(share, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE});
      EXPECT_EQ(disposition, DWORD{OPEN_EXISTING});
      if (g_fake->script.Fails("CreateFileW", Narrow(path))) return INVALID_HANDLE_VALUE;
      Open("hub");
      return reinterpret_cast<HANDLE>(kHub + i);
    }
    return g_fake->create_->Original<decltype(Create)>()(path, access, share, attributes, disposition, flags, pattern);
  }
  static BOOL WINAPI Control(HANDLE hub, DWORD code, LPVOID in, DWORD in_size, LPVOID out, DWORD out_size,
                             LPDWORD returned, LPOVERLAPPED) {
    EXPECT_TRUE(IsHub(hub));
    EXPECT_EQ(in, out);
    EXPECT_EQ(in_size, out_size);
    auto* bytes = static_cast<uint8_t*>(out);
    const std::string request = Hex(code) + " " + HexBytes(bytes, in_size);
    if (g_fake->script.Fails("DeviceIoControl", request)) return FALSE;
    uint32_t port = 0;
    std::memcpy(&port, bytes, sizeof port);
    const std::wstring& name = Device(IndexOf(hub)).hub;
    for (const FakeUsbDevice& device : g_fake->devices) {
      if (device.hub != name || device.port != port) continue;
      *returned = out_size;
      if (code == 0x220458 && out_size == kConnectorSize) {
        std::memcpy(bytes + 8, &device.port_properties, sizeof device.port_properties);
        return TRUE;
      }
      if (code == 0x220410 && out_size == kDescriptorSize) {
        bytes[12] = 18;
        bytes[13] = 1;
        std::memcpy(bytes + 14, &device.bcd_usb, sizeof device.bcd_usb);
        bytes[16] = device.device_class;
        return TRUE;
      }
    }
    SetLastError(ERROR_INVALID_PARAMETER);
    return FALSE;
  }
  static BOOL WINAPI CloseAny(HANDLE handle) {
    if (!IsHub(handle)) return g_fake->close_->Original<BOOL WINAPI(HANDLE)>()(handle);
    Close("hub");
    return TRUE;
  }
};

FakeUsb::FakeUsb() {
  g_fake = this;
  g_usb = {};
  Patch("SetupDiGetClassDevsW", FakeUsbHook::ClassDevs);
  Patch("SetupDiEnumDeviceInfo", FakeUsbHook::Enum);
  Patch("SetupDiGetDeviceRegistryPropertyW", FakeUsbHook::Property);
  Patch("SetupDiDestroyDeviceInfoList", FakeUsbHook::Destroy);
  Patch("CM_Get_Parent", FakeUsbHook::Parent);
  Patch("CM_Get_Device_IDW", FakeUsbHook::DeviceId);
  Patch("DeviceIoControl", FakeUsbHook::Control);
  Patch("CreateFileW", FakeUsbHook::Create);
  create_ = patches_.back().get();
  Patch("CloseHandle", FakeUsbHook::CloseAny);
  close_ = patches_.back().get();
}

FakeUsb::~FakeUsb() {
  EXPECT_TRUE(open.empty()) << *open.begin() << " left open";
  patches_.clear();
  g_fake = nullptr;
  g_usb = {};
}

}  // namespace vexa::test
