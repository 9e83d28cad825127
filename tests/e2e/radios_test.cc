// The shipped library on the simulated radios: what it collects through the stand-in libraries, calls and lists that
// fail and lie, and what it gave back. Run where the stand-ins are installed, vexa-firmware.dll is registered and
// VexaWinIO64.dll lies in C:\Vexa. The tests "Missing*" are for a run without the optional libraries.
#include <winsock2.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <setupapi.h>

#include <iterator>
#include <string>

#include "tests/e2e/radios.h"
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

TEST_F(Radios, AFailingBluetoothCallIsTriedAgain) {
  UseRadios(std::string(kHeadsetAndPhone) +
            R"(, "rules": [{"on": {"call": "BluetoothFindNextDevice"}, "nth": 1, "then": {"fail": 31}}])");
  const Loaded library;
  EXPECT_EQ(library.Number("RF_BTConnectedNum"), VEXA_COLLECT_FAILED);
  ExpectBluetoothClosed();
  EXPECT_EQ(library.Text("RF_BTConnectedType"), "Audio/Video;Phone;");
  ExpectBluetoothClosed();
}

TEST_F(Radios, WithoutABluetoothRadio) {
  UseRadios("");
  const Loaded library;
  EXPECT_EQ(library.Number("RF_BTIsUsed"), VEXA_NOT_COLLECTED);
  EXPECT_EQ(library.Text("RF_BTConnectedType"), "init_string");
  UseRadios(kHeadsetAndPhone);
  EXPECT_EQ(library.Number("RF_BTConnectedNum"), VEXA_NOT_COLLECTED);
}

TEST_F(Radios, ConnectionTypeOfTheInterfaceTable) {
  const Loaded library;
  constexpr char kWifi[] = R"({"index": 9, "type": 71, "medium": 9})";
  UseRadios(std::string(R"("network": [{"index": 4, "type": 6, "up": false}, )") + kWifi + "]");
  EXPECT_EQ(library.Text("RF_Net_Connected_Type"), "WIFI");
  EXPECT_EQ(NetworkCount("GetIfEntry2"), 2);
  UseRadios(std::string(R"("network": [{"index": 4, "type": 6}, )") + kWifi +
            R"(], "rules": [{"on": {"call": "GetIfTable2Ex"}, "nth": 2, "then": {"fail": 50}}])");
  for (const char* type : {"ETHERNET", "Unknow", "ETHERNET"}) EXPECT_EQ(library.Text("RF_Net_Connected_Type"), type);
  EXPECT_EQ(NetworkCount("allocated"), 2);
  EXPECT_EQ(NetworkCount("freed"), 2);
}

// ---- USB ----

constexpr wchar_t kStick[] = L"USB\\VID_0781&PID_5581\\4C530001";
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

TEST_F(Radios, UsbDevicesOfTheSystemWithoutItsHubs) {
  const Stick stick;
  firmware_.Use(kDisksAndMonitors);
  const Loaded library;
  EXPECT_EQ(library.Text("RF_USBNum"), R"({"usb2_0":"0","usb2_1":"0","usb3_0":"0","usb3_1":"0","usb3_2":"0"})");
  EXPECT_EQ(library.Text("RF_USBPort"), "");
  EXPECT_EQ(library.Number("RF_USB_A_Num"), 0u);
  EXPECT_EQ(library.Number("RF_USBIsTranster"), 1u);
  EXPECT_EQ(library.Number("RF_USBHDMIIsUsed"), 1u);
  EXPECT_EQ(library.Export<decltype(RF_USBISTYPEC)>("RF_USBISTYPEC")(kStick), 0u);
}

// ---- Wi-Fi ----

constexpr char kWifiLink[] = R"("network": [{"index": 9, "type": 71, "medium": 9}])";

// Beacon with HT, VHT at 80 MHz and HE with two streams: 1201 Mbit/s.
constexpr char kElements[] = R"([
  {"id": 45, "hex": "EF 09 1B FF FF 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"},
  {"id": 61, "hex": "24 05 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"},
  {"id": 191, "hex": "B2 79 8B 33 FA FF 00 00 FA FF 00 20"}, {"id": 192, "hex": "01 2A 00 FC FF"},
  {"extension": 35, "hex": "0D 01 08 9A 40 10 04 70 4C 89 7F C1 83 9C 01 08 00 FA FF FA FF"}])";

int WlanCount(const std::string& what) { return Count(L"wlanapi-counts.json", what); }

// One secured network on four access points, and an open one.
std::string Office(const std::string& lies = "", const std::string& elements_lies = "") {
  const auto point = [](const char* bssid, int rssi_dbm, int frequency_khz, const std::string& rest) {
    return R"({"ssid": {"hex": "00 FF 25 73"}, "bssid": ")" + std::string(bssid) + R"(", "rssi_dbm": )" +
           std::to_string(rssi_dbm) + R"(, "frequency_khz": )" + std::to_string(frequency_khz) + rest + "}";
  };
  return std::string(kWifiLink) + R"(, "wlan": {"interfaces": [{
    "guid": "{5B7D2F1E-3C4A-4E6B-9D80-1A2B3C4D5E6F}", "name": {"utf16": "0057 D800 DC00 DC00"}, "state": "connected",
    "connection": {"ssid": {"hex": "00 FF 25 73"}, "bssid": "06:1B:7C:40:2A:91", "phy": 10}, "channel": 36)" +
         lies + R"(, "networks": [)" +
         point("06:1B:7C:40:2A:91", -52, 5'180'000, R"(, "elements": )" + std::string(kElements) + elements_lies) +
         "," + point("06:1B:7C:40:2A:90", -47, 2'412'000, "") + "," + point("06:1B:7C:40:3B:10", -20, 2'422'000, "") +
         "," + point("06:1B:7C:40:2A:92", -99, 6'455'000, "") + "," +
         R"({"ssid": "cafe", "bssid": "0A:54:11:9E:00:01", "rssi_dbm": -77, "frequency_khz": 2437000,
             "security": false}]}]})";
}

class WifiRadios : public Radios {
 protected:
  static void ExpectEverythingFreed(int clients) {
    EXPECT_GT(WlanCount("WlanOpenHandle"), 0);
    EXPECT_EQ(WlanCount("allocated"), WlanCount("freed"));
    EXPECT_EQ(WlanCount("freed what was not allocated"), 0);
    EXPECT_EQ(WlanCount("calls with a bad handle"), 0);
    // The client's handle stays open.
    EXPECT_EQ(WlanCount("handles opened"), clients);
    EXPECT_EQ(WlanCount("handles closed"), 0);
  }

  // "connected|RSSI|channel|PHY mode|maximum rate|2.4 GHz|5 GHz|6 GHz", of one collection when it succeeds.
  static std::string Picture(const Loaded& library) {
    std::string picture;
    for (const char* name : {"RF_WiFiIsConnected", "RF_WiFiRssi", "RF_WiFiChannel"}) {
      picture += std::to_string(static_cast<int32_t>(library.Number(name))) + "|";
    }
    picture += library.Text("RF_PhyMode");
    for (const char* name : {"RF_WiFiMaxRate", "RF_WiFi_2_4G_AP_Num", "RF_WiFi_5G_AP_Num", "RF_WiFi_6G_AP_Num"}) {
      picture += "|" + std::to_string(static_cast<int32_t>(library.Number(name)));
    }
    return picture;
  }
};

constexpr char kWhole[] = "1|-52|36|802.11ax|1201|2|1|1";

TEST_F(WifiRadios, WholePictureOfOneCollection) {
  UseRadios(Office());
  const Loaded library;
  EXPECT_EQ(Picture(library), kWhole);
  wchar_t name[VEXA_WIFI_CARD_NAME_CAPACITY];
  EXPECT_EQ(library.Export<decltype(RF_WiFiCardName)>("RF_WiFiCardName")(name), 0u);
  EXPECT_TRUE(std::wstring(name) == L"W\xD800\xDC00\xDC00");
  char mac[VEXA_WIFI_AP_MAC_CAPACITY];
  library.Export<decltype(RF_AP_MAC)>("RF_AP_MAC")(mac);
  EXPECT_STREQ(mac, "06:1B:7C");
  EXPECT_EQ(library.Text("RF_WiFi_2_4G_AP_Ch_Num"), R"({"ch1":"1","ch11":"0","ch6":"0","others":"1"})");
  EXPECT_EQ(library.Text("RF_WiFi_5G_AP_Band_Num"), R"({"band1":"1","band2":"0","band3":"0","band4":"0"})");
  EXPECT_EQ(library.Text("RF_WiFi_6G_AP_NUII_Num"), R"({"nuii5":"0","nuii6":"1","nuii7":"0","nuii8":"0"})");
  // -20 dBm is in no bucket.
  EXPECT_THAT(library.Text("RF_WiFi_2_4G_AP_RSSI_Num"),
              testing::HasSubstr(R"("-20~-30":"0","-30~-40":"0","-40~-50":"1")"));
  EXPECT_THAT(library.Text("RF_WiFi_6G_AP_RSSI_Num"), testing::HasSubstr(R"("-90~-100":"1")"));
  EXPECT_EQ(library.Text("RF_WiFi_Main_Aux_Rssi"), "-52:-52");
  EXPECT_EQ(WlanCount("WlanGetNetworkBssList"), 3);
  ExpectEverythingFreed(1);
}

const std::string kCollectorFailed = "2147483647|2147483647|2147483647|error_string|2147483647";
const std::string kNoLists = "|-1000|-1000|-1000";

TEST_F(WifiRadios, CallsThatFail) {
  const struct {
    const char* rule;
    std::string picture;
    int clients;
  } kFailures[] = {
      {R"("on": {"call": "WlanOpenHandle"}, "from": 1)", kCollectorFailed + kNoLists, 0},
      {R"("on": {"call": "WlanEnumInterfaces"}, "from": 1)", kCollectorFailed + kNoLists, 8},
      {R"("on": {"call": "WlanQueryInterface", "opcode": 7}, "nth": 2)", "1|-1000|36|init_string|-1000|2|1|1", 1},
      {R"("on": {"call": "WlanGetNetworkBssList"}, "nth": 2)", "1|-52|36|802.11ax|1201|0|0|0", 1},
  };
  for (const auto& failure : kFailures) {
    SCOPED_TRACE(failure.rule);
    UseRadios(Office() + R"(, "rules": [{)" + failure.rule + R"(, "then": {"fail": 5}}])");
    const Loaded library;
    EXPECT_EQ(Picture(library), failure.picture);
    ExpectEverythingFreed(failure.clients);
  }
}

// What is handed out ends where nothing may be touched: a lie that is believed ends the program.
TEST_F(WifiRadios, ListsThatLie) {
  const std::string kLies[] = {
      Office(R"(, "told_count": 4294967295)"),    Office(R"(, "told_count": 5)"),
      Office("", R"(, "told_size": 4294967295)"), Office("", R"(, "told_offset": 4294967295)"),
      Office("", R"(, "told_offset": 0)"),        Office("", R"(, "told_offset": 4294967280, "told_size": 100)")};
  for (size_t i = 0; i < std::size(kLies); ++i) {
    UseRadios(kLies[i]);
    const Loaded library;
    EXPECT_EQ(library.Number("RF_WiFiRssi"), static_cast<uint32_t>(-52)) << i;
    ExpectEverythingFreed(1);
  }
}

// ---- Systems that lack the optional libraries ----

class MissingLibraries : public WifiRadios {};

TEST_F(MissingLibraries, FailAndEverythingElseAnswers) {
  UseRadios(Office() + ", " + kHeadsetAndPhone);
  for (const wchar_t* name : {L"wlanapi.dll", L"bluetoothapis.dll"}) {
    ASSERT_EQ(LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32), nullptr);
  }
  const Loaded library;
  EXPECT_EQ(library.Number("RF_BTIsUsed"), VEXA_COLLECT_FAILED);
  EXPECT_EQ(library.Number("RF_BTConnectedNum"), VEXA_COLLECT_FAILED);
  EXPECT_EQ(library.Text("RF_BTConnectedType"), "error_string");
  EXPECT_EQ(Picture(library), kCollectorFailed + kNoLists);
  EXPECT_EQ(library.Text("RF_Net_Connected_Type"), "WIFI");
  EXPECT_EQ(library.Number("RF_USBIsTranster"), 0u);
}

}  // namespace
}  // namespace vexa::test

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
