// Charge limit, quiet fan and application folder: what travels to the firmware, what is remembered where, every line.
#include "vexa/settings.h"

#include <windows.h>

#include <setupapi.h>
#include <wbemidl.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <new>

#include "tests/support/wmi_test.h"
#include "wmi/firmware_device.h"

namespace vexa::test {
namespace {

constexpr wchar_t kAnalysisKey[] = L"SOFTWARE\\Vexa\\Vexa System Control Interface\\VexaSystemAnalysis";
constexpr wchar_t kHotkeysKey[] =
    L"SOFTWARE\\Vexa\\Vexa System Control Interface\\VexaOptimization\\Vexa Keyboard Hotkeys";
constexpr wchar_t kUser[] = L"VEXA\\%s user";
constexpr wchar_t kUserQuery[] = L"select * from win32_ComputerSystem";

// ---- ACPI devices ----

const HDEVINFO kDevices = reinterpret_cast<HDEVINFO>(uintptr_t{0xDE71});

struct Devices {
  bool listed = true;
  std::vector<std::wstring> ids;  // hardware-id lists, zeros between the entries
  int open = 0;
} g_devices;

HDEVINFO WINAPI GetClassDevs(const GUID* id, PCWSTR enumerator, HWND, DWORD flags) {
  EXPECT_EQ(id, nullptr);
  EXPECT_STREQ(enumerator, L"ACPI");
  EXPECT_EQ(flags, DWORD{DIGCF_PRESENT | DIGCF_ALLCLASSES});
  if (!g_devices.listed) return INVALID_HANDLE_VALUE;
  ++g_devices.open;
  return kDevices;
}
BOOL WINAPI EnumDevice(HDEVINFO, DWORD index, PSP_DEVINFO_DATA device) {
  device->DevInst = index;
  return index < g_devices.ids.size();
}
BOOL WINAPI GetProperty(HDEVINFO, PSP_DEVINFO_DATA device, DWORD property, PDWORD, PBYTE buffer, DWORD size,
                        PDWORD needed) {
  EXPECT_EQ(property, DWORD{SPDRP_HARDWAREID});
  EXPECT_EQ(size, 8192u);
  const std::wstring& ids = g_devices.ids[device->DevInst];
  *needed = static_cast<DWORD>(ids.size() * sizeof(wchar_t));
  if (*needed > size) return FALSE;
  std::memcpy(buffer, ids.data(), *needed);
  return TRUE;
}
BOOL WINAPI DestroyList(HDEVINFO) {
  --g_devices.open;
  return TRUE;
}

class Settings : public WmiTest {
 protected:
  Settings() {
    g_devices = {};
    wmi.rows[kUserQuery] = {{{L"UserName", Text(kUser)}}};
    wmi.firmware = [this](const std::wstring& method, const FakeWmi::Parameters& in) {
      sent_.push_back(Narrow(method.c_str()));
      for (const auto& [name, value] : in) sent_.back() += " " + Narrow(name.c_str()) + "=" + Narrow(value.c_str());
      return method == L"DSTS" ? WmiProperties{{L"device_status", Number(VT_I4, status_)}}
                               : WmiProperties{{L"result", Number(VT_I4, result_)}};
    };
    wchar_t temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    folder_ = std::wstring(temp) + L"vexa-settings-test";
    CreateDirectoryW(folder_.c_str(), nullptr);
  }
  ~Settings() override {
    for (const wchar_t* name : {L"\\BatteryHealthSetting.txt", L"\\QuietFanSetting.txt"}) {
      DeleteFileW((folder_ + name).c_str());
    }
    RemoveDirectoryW(folder_.c_str());
    RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kAnalysisKey, kUser);
    RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kHotkeysKey, L"ChargingRate");
    RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kHotkeysKey, L"QuietFan");
    EXPECT_EQ(g_devices.open, 0);
  }

  static void Store(const wchar_t* key_name, const wchar_t* value, const std::wstring& text) {
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, key_name, value, REG_SZ, text.c_str(),
                    static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }
  void UseFolder() { Store(kAnalysisKey, kUser, folder_); }
  void WriteFile(const std::string& name, const std::string& text) const {
    std::ofstream(Folder() + name, std::ios::binary) << text;
  }
  std::string ReadFile(const std::string& name) const {
    std::ifstream file(Folder() + name, std::ios::binary);
    return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "(none)";
  }
  // Of the signed-in user: each may take 10 seconds.
  void ExpectOneLookUp() { EXPECT_EQ(CountOf(wmi.TakeCalls(), "ExecQuery WQL " + Narrow(kUserQuery) + " 30"), 1); }
  // The lines of the settings, without those of WMI.
  static Strings SettingLines() { return LinesWithout({"[wmiMethod]", "[ReadWMIPropStr]"}); }

  std::string Folder() const { return Narrow(folder_.c_str()); }

  std::wstring folder_;
  Strings sent_;
  int32_t status_ = 65536, result_ = 1;  // that the firmware answers
  ImportPatch devs_{"SetupDiGetClassDevsW", GetClassDevs};
  ImportPatch enum_{"SetupDiEnumDeviceInfo", EnumDevice};
  ImportPatch property_{"SetupDiGetDeviceRegistryPropertyW", GetProperty};
  ImportPatch destroy_{"SetupDiDestroyDeviceInfoList", DestroyList};
};

const std::wstring kHotkeyDevice(L"ACPI\\VEN_VEXA\0ACPI\\VEXA2018\0\0", 29);

TEST_F(Settings, DevicePresence) {
  EXPECT_FALSE(IsObxWmiDevicePresent());
  g_devices.ids = {std::wstring(L"ACPI\\PNP0C0A\0\0", 14), kHotkeyDevice};
  EXPECT_TRUE(IsObxWmiDevicePresent());
  // Whole entries only; a list without its end is read to the buffer's end.
  g_devices.ids = {std::wstring(L"ACPI\\VEXA20181\0XACPI\\VEXA2018\0ACPI\\VEXA201\0\0", 46)};
  EXPECT_FALSE(IsObxWmiDevicePresent());
  g_devices.ids = {std::wstring(4096, L'A'), std::wstring(5000, L'B'), L"ACPI\\VEXA2018"};
  EXPECT_TRUE(IsObxWmiDevicePresent());
  g_devices.listed = false;
  EXPECT_FALSE(IsObxWmiDevicePresent());
}

TEST_F(Settings, SupportOfBothSettings) {
  const struct {
    int32_t status;
    uint32_t limit_supported;
    uint32_t fan;
    const char* fan_line;
  } cases[] = {{65536, 1, 0, "Quiet Fan Off"},
               {65537, 0, 1, "Quiet Fan On"},
               {65538, 0, 0xFFFFFFFF, "Not Support Quiet Fan"},
               {0, 0, 0xFFFFFFFF, "Not Support Quiet Fan"},
               {-1, 0, 0xFFFFFFFF, "Not Support Quiet Fan"}};
  for (const auto& test : cases) {
    status_ = test.status;
    EXPECT_EQ(WMICheckBatteryHealthSupport(1), test.limit_supported);
    EXPECT_EQ(WMICheckQuietFanSupport(1), test.fan);
    const std::string number = std::to_string(test.status);
    EXPECT_THAT(SettingLines(),
                ElementsAre("5 [WMICheckBatteryHealthSupport] output is " + number,
                            std::string("5 [WMICheckBatteryHealthSupport] ") +
                                (test.limit_supported ? "Support Battery Health" : "Not Support Battery Health"),
                            "5 [WMICheckQuietFanSupport] output is " + number,
                            std::string("5 [WMICheckQuietFanSupport] ") + test.fan_line));
    EXPECT_THAT(std::exchange(sent_, {}), ElementsAre("DSTS Device_ID=1179735", "DSTS Device_ID=1114137"));
  }
  wmi.script.Fail("ExecMethod", WBEM_E_FAILED);
  EXPECT_EQ(WMICheckBatteryHealthSupport(1), 0u);
  EXPECT_EQ(WMICheckQuietFanSupport(1), 0xFFFFFFFFu);
  EXPECT_THAT(SettingLines(), Contains("5 [WMICheckBatteryHealthSupport] output is "));
}

TEST_F(Settings, ChargeLimitIsSentUncheckedAndOnlyOneAccepts) {
  for (const char* level : {"80", "-7"}) {
    EXPECT_EQ(WMISetBatteryHealth(std::atoi(level), 1), 1u);
    EXPECT_THAT(std::exchange(sent_, {}), ElementsAre("DSTS Device_ID=1179735", std::string("DEVS Control_status=") +
                                                                                    level + " Device_ID=1179735"));
    EXPECT_THAT(LastOf(SettingLines(), 2),
                ElementsAre("5 [WMISetBatteryHealth] output is 1",
                            std::string("5 [WMISetBatteryHealth] set battery health ") + level + " success."));
  }
  for (const int32_t answer : {0, 2, -1}) {
    result_ = answer;
    EXPECT_EQ(WMISetBatteryHealth(80, 1), 0u);
  }
  EXPECT_THAT(ReadFile("\\BatteryHealthSetting.txt"), "(none)");
  // One that is not supported is not sent.
  sent_.clear();
  status_ = 65537;
  result_ = 1;
  EXPECT_EQ(WMISetBatteryHealth(80, 1), 0u);
  EXPECT_THAT(sent_, ElementsAre("DSTS Device_ID=1179735"));
}

TEST_F(Settings, OfTheHotkeyUtility) {
  g_devices.ids = {kHotkeyDevice};
  EXPECT_EQ(WMIGetBatteryHealth(1), 100u);
  EXPECT_EQ(WMIGetQuietFan(1), 0u);
  for (const auto& [text, limit, mode] : {std::tuple{L"100", 100u, 0u},
                                          {L"80", 80u, 0u},
                                          {L"60", 60u, 0u},
                                          {L"70", 100u, 0u},
                                          {L"", 100u, 0u},
                                          {L"080", 100u, 0u},
                                          {L"80 ", 100u, 0u},
                                          {L"1", 100u, 1u},
                                          {L"2", 100u, 2u},
                                          {L"3", 100u, 3u},
                                          {L"0", 100u, 0u},
                                          {L"4", 100u, 0u},
                                          {L"11", 100u, 0u}}) {
    Store(kHotkeysKey, L"ChargingRate", text);
    Store(kHotkeysKey, L"QuietFan", text);
    EXPECT_EQ(WMIGetBatteryHealth(1), limit);
    EXPECT_EQ(WMIGetQuietFan(1), mode);
  }
  EXPECT_THAT(wmi.TakeCalls(), IsEmpty());
}

TEST_F(Settings, ChargeLimitFile) {
  EXPECT_EQ(WMISetBatteryHealthToUser(80, 1), 0u);
  EXPECT_THAT(SettingLines(), ElementsAre("5 [WMISetBatteryHealthToUser] fail to set 80 to file"));
  EXPECT_EQ(WMIGetBatteryHealth(1), 100u);
  UseFolder();
  SettingLines();
  EXPECT_EQ(WMISetBatteryHealthToUser(80, 1), 1u);
  const std::string file = Folder() + "\\BatteryHealthSetting.txt";
  EXPECT_THAT(SettingLines(), ElementsAre("5 [WMISetBatteryHealthToUser] fname is " + file,
                                          "5 [WMISetBatteryHealthToUser] set 80 to " + file));
  EXPECT_EQ(ReadFile("\\BatteryHealthSetting.txt"), "80");
  EXPECT_EQ(WMIGetBatteryHealth(1), 80u);
  EXPECT_THAT(SettingLines(),
              ElementsAre("5 [WMIGetBatteryHealth] fname is " + file, "5 [WMIGetBatteryHealth] BatteryHealth is 80"));
  // A shorter number leaves nothing of a longer one behind.
  EXPECT_EQ(WMISetBatteryHealthToUser(100, 1), 1u);
  EXPECT_EQ(WMISetBatteryHealthToUser(60, 1), 1u);
  EXPECT_EQ(WMIGetBatteryHealth(1), 60u);
  const struct {
    const char* text;
    uint32_t limit;
  } files[] = {{"", 100}, {"none", 100}, {" 80\r\n60", 80}, {"99999999999", 100}};
  for (const auto& test : files) {
    WriteFile("\\BatteryHealthSetting.txt", test.text);
    EXPECT_EQ(WMIGetBatteryHealth(1), test.limit) << test.text;
  }
}

TEST_F(Settings, QuietFanIsSentAndRememberedWhereThereIsAFolder) {
  EXPECT_EQ(WMISetQuietFan(7, 1), 1u);
  EXPECT_THAT(sent_, ElementsAre("DEVS Control_status=1 Device_ID=1114137"));
  EXPECT_THAT(SettingLines(), IsSupersetOf({"5 [WMISetQuietFan] output is 1", "5 [WMICheckAppExist] App not exist!"}));
  UseFolder();
  wmi.TakeCalls();
  EXPECT_EQ(WMISetQuietFan(7, 1), 1u);
  ExpectOneLookUp();
  EXPECT_EQ(ReadFile("\\QuietFanSetting.txt"), "7");
  const std::string file = Folder() + "\\QuietFanSetting.txt";
  EXPECT_THAT(SettingLines(),
              IsSupersetOf({"5 [WMISetQuietFan] fname is " + file, "5 [WMISetQuietFan] set On to " + file}));
  EXPECT_EQ(WMISetQuietFan(0, 1), 1u);
  EXPECT_THAT(sent_, Contains("DEVS Control_status=0 Device_ID=1114137"));
  EXPECT_EQ(ReadFile("\\QuietFanSetting.txt"), "0");
  EXPECT_THAT(SettingLines(), Contains("5 [WMISetQuietFan] set Off to " + file));
  // A file that can't be written changes nothing about the answer.
  const HANDLE taken =
      CreateFileW((folder_ + L"\\QuietFanSetting.txt").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_EQ(WMISetQuietFan(1, 1), 1u);
  EXPECT_THAT(SettingLines(), Contains("5 [WMISetQuietFan] Fail to set On to file"));
  CloseHandle(taken);
  result_ = 0;
  EXPECT_EQ(WMISetQuietFan(1, 1), 0u);
  EXPECT_THAT(SettingLines(), ElementsAre("5 [WMISetQuietFan] output is 0", "5 [WMISetQuietFan] wmi fail "));
  EXPECT_EQ(ReadFile("\\QuietFanSetting.txt"), "0");
  // Nor does memory that runs out afterwards.
  result_ = 1;
  const ImportPatch attributes("GetFileAttributesW", +[](LPCWSTR) -> DWORD { throw std::bad_alloc(); });
  EXPECT_EQ(WMISetQuietFan(1, 1), 1u);
}

TEST_F(Settings, QuietFanRemembered) {
  EXPECT_EQ(WMIGetQuietFan(1), 0u);
  EXPECT_THAT(SettingLines(),
              ElementsAre("5 [DirectoryExists] attribs = 4294967295", "5 [WMICheckAppExist] App not exist!",
                          "5 [WMIGetQuietFan] Fail to get Quiet Fan"));
  UseFolder();
  WriteFile("\\QuietFanSetting.txt", "1");
  wmi.TakeCalls();
  EXPECT_EQ(WMIGetQuietFan(1), 1u);
  ExpectOneLookUp();
  EXPECT_THAT(SettingLines(), IsSupersetOf({"5 [WMIGetQuietFan] Quiet Fan is 1", "5 [WMIGetQuietFan] Quiet Fan On"}));
  WriteFile("\\QuietFanSetting.txt", "0");
  EXPECT_EQ(WMIGetQuietFan(1), 0u);
  EXPECT_THAT(SettingLines(), Contains("5 [WMIGetQuietFan] Quiet Fan Off"));
}

TEST_F(Settings, ApplicationFolder) {
  wchar_t path[VEXA_APP_PATH_CAPACITY] = {};
  EXPECT_EQ(WMIGetAppPath(path, 1), 0u);
  EXPECT_STREQ(path, L"ERROR_READREG");
  EXPECT_THAT(SettingLines(), IsEmpty());
  EXPECT_EQ(WMICheckAppExist(1), 0u);
  EXPECT_THAT(SettingLines(),
              ElementsAre("5 [DirectoryExists] attribs = 4294967295", "5 [WMICheckAppExist] App not exist!"));

  EXPECT_EQ(WMISetAppPath(folder_.c_str(), 1), 1u);
  EXPECT_THAT(SettingLines(),
              ElementsAre("5 [WMISetAppPath] WriteRegString " + Folder() + " to VEXA\\%s user Success"));
  EXPECT_EQ(WMIGetAppPath(path, 1), 1u);
  EXPECT_EQ(path, folder_);
  EXPECT_THAT(SettingLines(), ElementsAre("5 [WMIGetAppPath] App path is " + Folder()));
  EXPECT_EQ(WMICheckAppExist(1), 1u);
  EXPECT_THAT(SettingLines(), Contains("5 [WMICheckAppExist] App exist!"));

  // A path longer than any folder's is cut to the buffer, not beyond it.
  EXPECT_EQ(WMISetAppPath(std::wstring(1000, L'p').c_str(), 1), 1u);
  EXPECT_EQ(WMIGetAppPath(path, 1), 1u);
  EXPECT_EQ(std::wstring(path), std::wstring(259, L'p'));
  EXPECT_EQ(WMICheckAppExist(1), 0u);
  EXPECT_EQ(WMISetAppPath(nullptr, 1), 0u);
  EXPECT_EQ(WMIGetAppPath(nullptr, 1), 0u);
}

TEST_F(Settings, ComFlagIsPassedOn) {
  // Without COM on this thread and with the flag clear, every WMI call fails at its locator.
  UseFolder();
  EXPECT_EQ(WMICheckBatteryHealthSupport(0), 0u);
  EXPECT_EQ(WMISetQuietFan(1, 0), 0u);
  EXPECT_EQ(WMICheckAppExist(0), 0u);
  EXPECT_THAT(sent_, IsEmpty());
  EXPECT_THAT(wmi.TakeCalls(), Not(Contains(HasSubstr("CoInitializeEx"))));
  event_log.TakeMessages();
}

}  // namespace
}  // namespace vexa::test
