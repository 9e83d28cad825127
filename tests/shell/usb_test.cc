// The USB exports and the type-C query: what they ask, what they collect, and every call failing in turn.
#include "radio/peripheral_snapshots.h"
#include "tests/support/fake_usb.h"
#include "tests/support/wmi_test.h"
#include "vexa/peripherals.h"

namespace vexa::test {
namespace {

constexpr wchar_t kDisks[] = L"Select * from Win32_PerfFormattedData_PerfDisk_PhysicalDisk";
constexpr wchar_t kHdmi[] = L"SELECT * FROM WmiMonitorConnectionParams WHERE VideoOutputTechnology = 5";
constexpr char kNone[] = R"({"usb2_0":"0","usb2_1":"0","usb3_0":"0","usb3_1":"0","usb3_2":"0"})";

constexpr uint32_t kTypeA = 0x1;  // user-connectable
constexpr uint32_t kTypeC = 0x9;  // and its connector is type C
constexpr uint32_t kInside = 0x8;

const FakeUsbDevice kStick31{
    .id = L"USB\\VID_1\\A", .hub = L"USB\\ROOT_HUB30\\4&1&0", .port = 4, .port_properties = kTypeC, .bcd_usb = 0x0310};
const FakeUsbDevice kStick20{
    .id = L"USB\\VID_2\\B", .hub = L"USB\\ROOT_HUB20\\4&2&0", .port = 2, .port_properties = kTypeA, .bcd_usb = 0x0200};
const FakeUsbDevice kMouse{.id = L"USB\\VID_3\\C",
                           .hub = L"USB\\ROOT_HUB20\\4&2&0",
                           .port = 3,
                           .description = L"USB Input Device",
                           .port_properties = kTypeA};
const FakeUsbDevice kCamera{.id = L"USB\\VID_4\\D",
                            .hub = L"USB\\ROOT_HUB20\\4&2&0",
                            .port = 7,
                            .description = L"USB Composite Device",
                            .port_properties = kInside,
                            .device_class = 0xEF};

class Usb : public WmiTest {
 protected:
  Usb() {
    usb_.devices = {kStick31, kStick20, kMouse, kCamera};
    wmi.rows[kDisks] = {{{L"Name", Text(L"0 C:")}, {L"PercentDiskTime", Text(L"3")}}};
    wmi.rows[kHdmi] = {{{L"InstanceName", Text(L"M_0")}}};
  }

  static std::string Versions() { return g_usb.storage_versions; }
  static std::string Ports() { return RF_USBPort().text; }
  // Everything from the beginning.
  void CollectAgain() {
    g_usb = {};
    usb_.script.Take();
    RF_USB_A_Num();
    EXPECT_THAT(usb_.open, IsEmpty());
    EXPECT_TRUE(g_usb.collected);
  }

  FakeUsb usb_;
};

TEST_F(Usb, WholePicture) {
  EXPECT_STREQ(RF_USBNum().text, R"({"usb2_0":"1","usb2_1":"0","usb3_0":"0","usb3_1":"1","usb3_2":"0"})");
  EXPECT_THAT(Lines(), Contains("5 [RF] RF_USBNum FLAG FALSE"));
  EXPECT_EQ(Ports(), "4,2,");
  EXPECT_EQ(RF_USB_A_Num(), 2u);
  EXPECT_EQ(RF_USB_C_Num(), 1u);
  EXPECT_EQ(RF_USBIsTranster(), 1u);
  EXPECT_EQ(RF_USBHDMIIsUsed(), 1u);
  EXPECT_THAT(Lines(), IsEmpty());
  const Strings calls = usb_.script.Take();
  EXPECT_THAT(
      Strings(calls.begin(), calls.begin() + 12),
      ElementsAre("SetupDiGetClassDevsW", "SetupDiEnumDeviceInfo 0", "CM_Get_Parent",
                  "CM_Get_Device_IDW USB\\ROOT_HUB30\\4&1&0",
                  "CreateFileW \\\\.\\USB#ROOT_HUB30#4&1&0#{F18A0E88-C30C-11D0-8815-00A0C906BED8}",
                  "SetupDiGetDeviceRegistryPropertyW 28", "SetupDiGetDeviceRegistryPropertyW 0",
                  "SetupDiGetDeviceRegistryPropertyW 9", "DeviceIoControl 220458 040000000000000000000000000000000000",
                  "DeviceIoControl 220410 040000008006000100001200" + std::string(36, '0'), "Close hub",
                  "SetupDiEnumDeviceInfo 1"));
  EXPECT_EQ(calls.back(), "Close set");
}

TEST_F(Usb, CollectedOnceWhateverComesLater) {
  EXPECT_EQ(RF_USB_C_Num(), 1u);
  usb_.devices.clear();
  wmi.rows.clear();
  usb_.script.Take();
  EXPECT_EQ(RF_USB_A_Num(), 2u);
  EXPECT_EQ(RF_USBHDMIIsUsed(), 1u);
  EXPECT_THAT(usb_.script.Take(), IsEmpty());
}

TEST_F(Usb, QueriesComeFirstAndLastWithTheirOwnCom) {
  wmi.TakeCalls();
  RF_USBIsTranster();
  const Strings calls = wmi.TakeCalls();
  EXPECT_EQ(CountOf(calls, "CoInitializeEx 0"), 2) << testing::PrintToString(calls);
  wmi.rows[kDisks] = {{{L"Name", Text(L"0 C:")}, {L"PercentDiskTime", Text(L"0")}}};
  wmi.rows[kHdmi] = {};
  CollectAgain();
  EXPECT_EQ(g_usb.transferring, 0u);
  EXPECT_EQ(g_usb.hdmi, 0u);
  wmi.script.Fail("CoCreateInstance", static_cast<DWORD>(E_FAIL));
  CollectAgain();
  EXPECT_EQ(g_usb.transferring, 0u);
  EXPECT_EQ(g_usb.hdmi, 0u);
  EXPECT_EQ(g_usb.type_a, 2u);
}

TEST_F(Usb, WhatIsNoMassStorage) {
  usb_.devices = {kStick31, kStick31, kStick31, kStick31, kStick31};
  usb_.devices[0].description = L"USB Mass Storage Device ";
  usb_.devices[0].port = 1;
  usb_.devices[1].description = std::nullopt;
  usb_.devices[1].port = 2;
  usb_.devices[2].device_class = 8;
  usb_.devices[2].port = 3;
  usb_.devices[3].bcd_usb = 0x0110;  // in no count, and still listed
  usb_.devices[3].port = 0xFFFFFFFF;
  usb_.devices[4].description = std::wstring(260, L'x');  // fills the buffer and has no end
  usb_.devices[4].port = 5;
  CollectAgain();
  EXPECT_EQ(Versions(), kNone);
  EXPECT_EQ(Ports(), "4294967295,");
  EXPECT_EQ(g_usb.type_c, 5u);
}

TEST_F(Usb, EachCallOfADeviceFailingLeavesItOut) {
  const struct {
    const char* call;
    bool port_counts;  // the port of the failing device, and as storage the device itself
    bool storage_counts;
  } calls[] = {
      {"CM_Get_Parent", false, false},
      {"CM_Get_Device_IDW", false, false},
      {"CreateFileW", false, false},
      {"SetupDiGetDeviceRegistryPropertyW 28", false, false},
      {"SetupDiGetDeviceRegistryPropertyW 0", true, false},
      {"SetupDiGetDeviceRegistryPropertyW 9", true, true},
      {"DeviceIoControl 220458", false, false},
      {"DeviceIoControl 220410", true, false},
  };
  usb_.devices = {kStick31, kStick20};
  CollectAgain();
  const Strings whole = usb_.script.Take();
  for (const auto& call : calls) {
    SCOPED_TRACE(call.call);
    int index = 0;
    while (!whole.at(index).starts_with(call.call)) ++index;
    usb_.script.FailOnly(index, ERROR_GEN_FAILURE);
    CollectAgain();
    EXPECT_EQ(g_usb.type_c, call.port_counts ? 1u : 0u);
    EXPECT_EQ(g_usb.type_a, 1u);
    EXPECT_EQ(Ports(), call.storage_counts ? "4,2," : "2,");
    EXPECT_EQ(Versions(), call.storage_counts
                              ? R"({"usb2_0":"1","usb2_1":"0","usb3_0":"0","usb3_1":"1","usb3_2":"0"})"
                              : R"({"usb2_0":"1","usb2_1":"0","usb3_0":"0","usb3_1":"0","usb3_2":"0"})");
  }
}

TEST_F(Usb, WithoutAListNothingIsCollected) {
  usb_.script.Fail("SetupDiGetClassDevsW", ERROR_ACCESS_DENIED);
  CollectAgain();
  EXPECT_EQ(Versions(), "init_string");
  EXPECT_EQ(Ports(), "init_string");
  EXPECT_EQ(g_usb.type_a, 0u);
  EXPECT_EQ(g_usb.hdmi, 1u);
  usb_.script.Succeed("SetupDiGetClassDevsW");
  usb_.devices.clear();
  CollectAgain();
  EXPECT_EQ(Versions(), kNone);
  EXPECT_EQ(Ports(), "");
}

TEST_F(Usb, MorePortsThanATextHoldsAreCutBetweenTwo) {
  usb_.devices.assign(600, kStick20);
  for (size_t i = 0; i < usb_.devices.size(); ++i) usb_.devices[i].port = static_cast<uint32_t>(100 + i);
  CollectAgain();
  EXPECT_EQ(Ports().size(), 1020u);
  EXPECT_THAT(Ports(), EndsWith(",354,"));
}

// ---- Type C ----

class TypeC : public Usb {};

TEST_F(TypeC, TellsTheConnectorOfTheDevicesPort) {
  EXPECT_EQ(RF_USBISTYPEC(L"USB\\VID_1\\A"), 2u);
  EXPECT_THAT(Lines(), ElementsAre("5 [RF] RF_USBISTYPEC Start with deviceID = USB\\VID_1\\A",
                                   "5 [RF] RF_USBISTYPEC return with result = 2"));
  EXPECT_EQ(RF_USBISTYPEC(L"usb\\vid_2\\b"), 1u);
  EXPECT_EQ(RF_USBISTYPEC(L"USB\\VID_4\\D"), 2u);  // not user-connectable, and type C all the same
  Lines();
  EXPECT_EQ(RF_USBISTYPEC(L"USB\\VID_1\\%s%n"), 0u);
  EXPECT_THAT(Lines(), ElementsAre("5 [RF] RF_USBISTYPEC Start with deviceID = USB\\VID_1\\%s%n",
                                   "5 [RF] RF_USBISTYPEC return with result = 0"));
  EXPECT_EQ(RF_USBISTYPEC(L""), 0u);
  EXPECT_EQ(RF_USBISTYPEC(nullptr), 0u);
  EXPECT_EQ(RF_USBISTYPEC(std::wstring(100000, wchar_t{0xD800}).c_str()), 0u);
  EXPECT_FALSE(g_usb.collected);
}

TEST_F(TypeC, EachCallFailing) {
  constexpr char kHubLine[] = "5 [RF] RF_USBISTYPEC CreateFile hUsbHub fail.";
  constexpr char kControlLine[] = "5 [RF] RF_USBISTYPEC DeviceIoControl hUsbHub failed w/err 0x0000001f\n";
  constexpr char kEndLine[] = "5 [RF] RF_USBISTYPEC return with result = 0";
  const struct {
    const char* call;
    Strings lines;
  } calls[] = {
      {"SetupDiGetClassDevsW", {kEndLine}},
      {"SetupDiEnumDeviceInfo 0", {kEndLine}},
      {"SetupDiEnumDeviceInfo 1", {kEndLine}},
      {"CM_Get_Device_IDW USB\\VID_2\\B", {kEndLine}},
      {"CM_Get_Parent", {kHubLine}},
      {"CM_Get_Device_IDW USB\\ROOT_HUB20\\4&2&0", {kHubLine}},
      {"CreateFileW", {kHubLine}},
      {"SetupDiGetDeviceRegistryPropertyW 28", {kEndLine}},
      {"DeviceIoControl 220458", {kControlLine, kEndLine}},
  };
  usb_.script.Take();
  EXPECT_EQ(RF_USBISTYPEC(L"USB\\VID_2\\B"), 1u);
  const Strings whole = usb_.script.Take();
  EXPECT_EQ(whole.back(), "Close set");
  for (const auto& call : calls) {
    SCOPED_TRACE(call.call);
    int index = 0;
    while (!whole.at(index).starts_with(call.call)) ++index;
    usb_.script.Take();
    Lines();
    usb_.script.FailOnly(index, ERROR_GEN_FAILURE);
    EXPECT_EQ(RF_USBISTYPEC(L"USB\\VID_2\\B"), 0u);
    EXPECT_THAT(usb_.open, IsEmpty());
    Strings lines = Lines();
    EXPECT_THAT(lines.front(), StartsWith("5 [RF] RF_USBISTYPEC Start"));
    EXPECT_EQ(LastOf(lines, lines.size() - 1), call.lines);
  }
}

}  // namespace
}  // namespace vexa::test
