// The shipped library on the simulated radios: what it collects through the stand-in libraries, each of their calls
// failing, and what it gave back. Run where the stand-ins are installed, vexa-firmware.dll is registered and
// VexaWinIO64.dll lies in C:\Vexa. The tests "Missing*" are for a run without the optional libraries.
#include <winsock2.h>

#include <cfgmgr32.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <setupapi.h>

#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/e2e/radios.h"
#include "tests/support/import_patch.h"
#include "vexa/vexa.h"

namespace vexa::test {
namespace {

constexpr char kHeadsetAndPhone[] =
    R"("bluetooth": {"radios": [{"name": "r", "address": "01:02:03:04:05:06", "devices": [
  {"name": "headset", "address": "01:02:03:04:05:07", "class": "0x240404"},
  {"name": "away", "address": "01:02:03:04:05:09", "class": "0x000100", "connected": false},
  {"name": {"utf16": "D800 DC00 DC00"}, "address": "01:02:03:04:05:08", "class": "0x5A020C"}]}]})";

int BluetoothCount(const std::string& what) { return Count(L"bluetoothapis-counts.json", what); }
int NetworkCount(const std::string& what) { return Count(L"iphlpapi-counts.json", what); }
void ExpectBluetoothClosed() {
  EXPECT_EQ(BluetoothCount("radio searches open"), 0);
  EXPECT_EQ(BluetoothCount("device searches open"), 0);
  EXPECT_EQ(BluetoothCount("radio handles open"), 0);
  EXPECT_EQ(BluetoothCount("closed what was not open"), 0);
}

TEST_F(Radios, BluetoothDevicesAreCollectedOnce) {
  UseRadios(kHeadsetAndPhone);
  const Loaded library;
  EXPECT_EQ(library.Number("RF_BTIsUsed"), 1u);
  EXPECT_EQ(library.Number("RF_BTConnectedNum"), 2u);
  EXPECT_EQ(library.Text("RF_BTConnectedType"), "Audio/Video;Phone;");
  EXPECT_EQ(BluetoothCount("BluetoothFindFirstRadio"), 1);
  EXPECT_EQ(BluetoothCount("BluetoothFindNextDevice"), 2);
  ExpectBluetoothClosed();
}

TEST_F(Radios, EachBluetoothCallFailingIsTriedAgain) {
  for (const char* call :
       {"BluetoothFindFirstRadio", "BluetoothGetRadioInfo", "BluetoothFindFirstDevice", "BluetoothFindNextDevice"}) {
    SCOPED_TRACE(call);
    UseRadios(std::string(kHeadsetAndPhone) + R"(, "rules": [{"on": {"call": ")" + call +
              R"("}, "nth": 1, "then": {"fail": 31}}])");
    const Loaded library;
    EXPECT_EQ(library.Number("RF_BTConnectedNum"), kFailed);
    EXPECT_EQ(BluetoothCount(call), 1);
    if (std::string(call) != "BluetoothFindFirstRadio") ExpectBluetoothClosed();
    EXPECT_EQ(library.Text("RF_BTConnectedType"), "Audio/Video;Phone;");
    ExpectBluetoothClosed();
  }
}

TEST_F(Radios, WithoutABluetoothRadio) {
  UseRadios("");
  const Loaded library;
  EXPECT_EQ(library.Number("RF_BTIsUsed"), kNotCollected);
  EXPECT_EQ(library.Text("RF_BTConnectedType"), "init_string");
  UseRadios(kHeadsetAndPhone);
  EXPECT_EQ(library.Number("RF_BTConnectedNum"), kNotCollected);
}

TEST_F(Radios, ConnectionTypeOfTheInterfaceTable) {
  const Loaded library;
  constexpr char kWifi[] = R"({"index": 9, "type": 71, "medium": 9})";
  UseRadios(std::string(R"("network": [{"index": 4, "type": 6, "up": false}, )") + kWifi + "]");
  EXPECT_EQ(library.Text("RF_Net_Connected_Type"), "WIFI");
  EXPECT_EQ(NetworkCount("GetIfEntry2"), 2);
  UseRadios(std::string(R"("network": [{"index": 4, "type": 244}, )") + kWifi + "]");
  EXPECT_EQ(library.Text("RF_Net_Connected_Type"), "WWANPP2");
  UseRadios(std::string(R"("network": [{"index": 4, "type": 6}, )") + kWifi + "]");
  EXPECT_EQ(library.Text("RF_Net_Connected_Type"), "ETHERNET");
  UseRadios(std::string(R"("network": [{"index": 4, "type": 6, "hardware": false}, )") + kWifi +
            R"(], "rules": [{"on": {"call": "GetIfEntry2"}, "nth": 2, "then": {"fail": 2}},
                            {"on": {"call": "GetIfTable2Ex"}, "nth": 2, "then": {"fail": 50}}])");
  EXPECT_EQ(library.Text("RF_Net_Connected_Type"), "Unknow");
  EXPECT_EQ(library.Text("RF_Net_Connected_Type"), "Unknow");
  EXPECT_EQ(NetworkCount("allocated"), 1);
  EXPECT_EQ(library.Text("RF_Net_Connected_Type"), "WIFI");
  EXPECT_EQ(NetworkCount("allocated"), 2);
  EXPECT_EQ(NetworkCount("freed"), 2);
}

// ---- USB ----

constexpr wchar_t kStick[] = L"USB\\VID_0781&PID_5581\\4C530001";
constexpr wchar_t kHubId[] = L"USB\\ROOT_HUB30\\4&1A2B3C&0&0";
constexpr wchar_t kHubPath[] = L"\\\\.\\USB#ROOT_HUB30#4&1A2B3C&0&0#{F18A0E88-C30C-11D0-8815-00A0C906BED8}";
constexpr wchar_t kInterfaceKey[] =
    L"SYSTEM\\CurrentControlSet\\Control\\DeviceClasses\\{A5DCBF10-6530-11D2-901F-00C04FB951ED}\\"
    L"##?#USB#VID_0781&PID_5581#4C530001#{A5DCBF10-6530-11D2-901F-00C04FB951ED}\\#\\Control";
constexpr GUID kUsbDeviceInterface = {0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};
constexpr GUID kUsbClass = {0x36FC9E60, 0xC465, 0x11CF, {0x80, 0x56, 0x44, 0x45, 0x53, 0x54, 0x00, 0x00}};

constexpr char kDisksAndMonitors[] = R"({"firmware": {"log": false, "tables": [
  {"namespace": "ROOT\\CIMV2", "class": "Win32_PerfFormattedData_PerfDisk_PhysicalDisk", "keys": ["Name"],
   "properties": {"Name": "string", "PercentDiskTime": "uint64"},
   "rows": [{"Name": "0 C:", "PercentDiskTime": 7}, {"Name": "_Total", "PercentDiskTime": 7}]},
  {"namespace": "ROOT\\WMI", "class": "WmiMonitorConnectionParams", "keys": ["InstanceName"],
   "properties": {"InstanceName": "string", "VideoOutputTechnology": "uint32"},
   "rows": [{"InstanceName": "D_0", "VideoOutputTechnology": 2147483648}, {"InstanceName": "D_1", "VideoOutputTechnology": 5}]}
]}})";

// A stick in the system's registry: present, as the system sees it.
class Stick {
 public:
  Stick() : set_(SetupDiCreateDeviceInfoList(nullptr, nullptr)) {
    EXPECT_TRUE(SetupDiCreateDeviceInfoW(set_, kStick, &kUsbClass, L"USB Mass Storage Device", nullptr, 0, &device_));
    EXPECT_TRUE(SetupDiRegisterDeviceInfo(set_, &device_, 0, nullptr, nullptr, nullptr));
    constexpr wchar_t kDescription[] = L"USB Mass Storage Device";
    EXPECT_TRUE(SetupDiSetDeviceRegistryPropertyW(set_, &device_, SPDRP_DEVICEDESC,
                                                  reinterpret_cast<const BYTE*>(kDescription), sizeof kDescription));
    EXPECT_TRUE(SetupDiCreateDeviceInterfaceW(set_, &device_, &kUsbDeviceInterface, nullptr, 0, nullptr));
    const DWORD linked = 1;
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, kInterfaceKey, L"Linked", REG_DWORD, &linked, sizeof linked);
  }
  ~Stick() {
    EXPECT_TRUE(SetupDiRemoveDevice(set_, &device_));
    SetupDiDestroyDeviceInfoList(set_);
  }
  Stick(const Stick&) = delete;
  Stick& operator=(const Stick&) = delete;

 private:
  HDEVINFO set_;
  SP_DEVINFO_DATA device_{.cbSize = sizeof device_};
};

// The hub that the system lacks, behind the library's imports.
class Hub {
 public:
  explicit Hub(HMODULE library)
      : parent_("CM_Get_Parent", Parent, library),
        id_("CM_Get_Device_IDW", DeviceId, library),
        property_("SetupDiGetDeviceRegistryPropertyW", Property, library),
        open_("CreateFileW", Open, library),
        control_("DeviceIoControl", Control, library),
        close_("CloseHandle", Close, library) {
    hub_ = this;
  }

  int open = 0;

 private:
  static constexpr DEVINST kNode = 0x7FFFFFFF;
  static HANDLE Handle() { return reinterpret_cast<HANDLE>(uintptr_t{0x7D00BEEF}); }

  static CONFIGRET WINAPI Parent(PDEVINST parent, DEVINST, ULONG) {
    *parent = kNode;
    return CR_SUCCESS;
  }
  static CONFIGRET WINAPI DeviceId(DEVINST node, PWSTR buffer, ULONG length, ULONG flags) {
    if (node != kNode) return hub_->id_.Original<decltype(DeviceId)>()(node, buffer, length, flags);
    std::memcpy(buffer, kHubId, sizeof kHubId);
    return CR_SUCCESS;
  }
  static BOOL WINAPI Property(HDEVINFO set, PSP_DEVINFO_DATA device, DWORD property, PDWORD type, PBYTE buffer,
                              DWORD size, PDWORD needed) {
    if (property != SPDRP_ADDRESS) {
      return hub_->property_.Original<decltype(Property)>()(set, device, property, type, buffer, size, needed);
    }
    const DWORD port = 3;
    std::memcpy(buffer, &port, sizeof port);
    return TRUE;
  }
  static HANDLE WINAPI Open(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES attributes, DWORD creation,
                            DWORD flags, HANDLE pattern) {
    if (std::wcscmp(path, kHubPath) != 0) {
      return hub_->open_.Original<decltype(Open)>()(path, access, share, attributes, creation, flags, pattern);
    }
    ++hub_->open;
    return Handle();
  }
  static BOOL WINAPI Control(HANDLE handle, DWORD code, LPVOID, DWORD, LPVOID out, DWORD size, LPDWORD, LPOVERLAPPED) {
    EXPECT_EQ(handle, Handle());
    auto* bytes = static_cast<uint8_t*>(out);
    EXPECT_EQ(bytes[0], 3);
    if (code == 0x220458) {
      EXPECT_EQ(size, 18u);
      bytes[8] = 0x09;
      return TRUE;
    }
    EXPECT_EQ(code, 0x220410u);
    EXPECT_EQ(size, 30u);
    bytes[14] = 0x20;
    bytes[15] = 0x03;
    return TRUE;
  }
  static BOOL WINAPI Close(HANDLE handle) {
    if (handle != Handle()) return hub_->close_.Original<BOOL WINAPI(HANDLE)>()(handle);
    --hub_->open;
    return TRUE;
  }

  static inline Hub* hub_ = nullptr;
  ImportPatch parent_, id_, property_, open_, control_, close_;
};

TEST_F(Radios, UsbDevicesOfTheSystemWithoutItsHubs) {
  const Stick stick;
  firmware_.Use(kDisksAndMonitors);
  const Loaded library;
  EXPECT_EQ(library.Text("RF_USBNum"), R"({"usb2_0":"0","usb2_1":"0","usb3_0":"0","usb3_1":"0","usb3_2":"0"})");
  EXPECT_EQ(library.Text("RF_USBPort"), "");
  EXPECT_EQ(library.Number("RF_USB_A_Num"), 0u);
  EXPECT_EQ(library.Number("RF_USBIsTranster"), 1u);
  EXPECT_EQ(library.Number("RF_USBHDMIIsUsed"), 1u);
  EXPECT_EQ(library.Export("RF_USBISTYPEC", &RF_USBISTYPEC)(kStick), 0u);
}

TEST_F(Radios, UsbStickOnATypeCPort) {
  const Stick stick;
  const Loaded library;
  Hub hub(library.module());
  EXPECT_EQ(library.Text("RF_USBNum"), R"({"usb2_0":"0","usb2_1":"0","usb3_0":"0","usb3_1":"0","usb3_2":"1"})");
  EXPECT_EQ(library.Text("RF_USBPort"), "3,");
  EXPECT_EQ(library.Number("RF_USB_C_Num"), 1u);
  EXPECT_EQ(library.Number("RF_USB_A_Num"), 0u);
  EXPECT_EQ(library.Number("RF_USBIsTranster"), 0u);
  EXPECT_EQ(library.Number("RF_USBHDMIIsUsed"), 0u);
  const auto is_type_c = library.Export("RF_USBISTYPEC", &RF_USBISTYPEC);
  EXPECT_EQ(is_type_c(kStick), 2u);
  EXPECT_EQ(is_type_c(L"USB\\VID_0781&PID_5581\\other"), 0u);
  EXPECT_EQ(hub.open, 0);
}

// ---- Systems that lack the optional libraries ----

class MissingBluetooth : public Radios {};

TEST_F(MissingBluetooth, FailsAndEverythingElseAnswers) {
  UseRadios(std::string(kHeadsetAndPhone) + R"(, "network": [{"index": 9, "type": 71}])");
  ASSERT_EQ(LoadLibraryExW(L"bluetoothapis.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32), nullptr);
  const Loaded library;
  EXPECT_EQ(library.Number("RF_BTIsUsed"), kFailed);
  EXPECT_EQ(library.Number("RF_BTConnectedNum"), kFailed);
  EXPECT_EQ(library.Text("RF_BTConnectedType"), "error_string");
  EXPECT_EQ(library.Text("RF_Net_Connected_Type"), "WIFI");
  EXPECT_EQ(library.Number("RF_USBIsTranster"), 0u);
}

}  // namespace
}  // namespace vexa::test

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
