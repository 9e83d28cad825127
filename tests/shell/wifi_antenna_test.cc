// The antenna readings by the two vendors' libraries, each step failing, and records that lie.
#include <cstring>

#include "radio/antenna_reader.h"
#include "tests/support/beacon.h"
#include "tests/support/wifi_test.h"

namespace vexa::test {
namespace {

using beacon::Little;

constexpr MacAddress kAccessPoint = {0x02, 0x11, 0x22, 0x33, 0x44, 0x55};
constexpr char kFirst[] = "5 Get main_rssi_final and aux_rssi_final from connectAPEntry->lRssi";
constexpr char kMainFell[] = "5 Get main_rssi_final from connectAPEntry->lRssi";
constexpr char kAuxFell[] = "5 Get aux_rssi_final from connectAPEntry->lRssi";
constexpr char kIntel[] = "5 Get main_rssi_final and aux_rssi_final from Intel API.";
constexpr char kRealtek[] = "5 Get main_rssi_final and aux_rssi_final from RTK API";

std::string Dbm(int32_t dbm) { return Little(static_cast<uint32_t>(dbm), 4); }

class WifiAntennas : public WifiTest {
 protected:
  WifiAntennas() {
    const GUID id = WlanInterfaceId(0);
    vendor_.adapter_list = Little(2, 4) + std::string(16, '\0') + std::string(reinterpret_cast<const char*>(&id), 16);
    vendor_.bss_statistics = std::string(kAccessPoint.begin(), kAccessPoint.end()) + Little(2, 2) + Dbm(-48) + Dbm(-61);
    vendor_.statistics_oid = Dbm(-47) + Dbm(-63) + std::string(248, '\0');
  }

  // "main:aux" after a reading with the access point at -55 dBm, from 0 both.
  static std::string Read(std::optional<int32_t> access_point_dbm = -55) {
    int32_t main_dbm = 0, aux_dbm = 0;
    ReadAntennas(WlanInterfaceId(0), kAccessPoint, access_point_dbm, main_dbm, aux_dbm);
    return std::to_string(main_dbm) + ":" + std::to_string(aux_dbm);
  }
};

TEST_F(WifiAntennas, Intel) {
  vendor_.intel_present = true;
  EXPECT_EQ(Read(), "-48:-61");
  EXPECT_THAT(Lines(), ElementsAre(kFirst, kIntel));
  EXPECT_THAT(script_.Take(), ElementsAre("SetupDiGetClassDevsW", "SetupDiOpenDevRegKey", "RegQueryValueExW",
                                          "LoadLibraryExW C:\\Drivers\\wifi\\component.dll", "Sleep 1000",
                                          "WifiGetAdapterList 1024", "WifiGetBSSConfigurationStatistics a0"));
  // Without an access point of its own nothing falls back.
  vendor_.bss_statistics.resize(12);
  EXPECT_EQ(Read(std::nullopt), "-48:0");
  EXPECT_THAT(Lines(), ElementsAre(kIntel));
}

TEST_F(WifiAntennas, EachStepOfIntelFailingFallsBackAndAsksNobodyElse) {
  vendor_.intel_present = vendor_.realtek_present = true;
  const struct {
    const char* function;
    bool loaded;
  } steps[] = {{"SetupDiOpenDevRegKey", false},
               {"RegQueryValueExW", false},
               {"LoadLibraryExW", false},
               {"WifiGetAdapterList", true},
               {"WifiGetBSSConfigurationStatistics", true}};
  for (const auto& step : steps) {
    script_.Fail(step.function, 5);
    EXPECT_EQ(Read(), "-55:-55") << step.function;
    script_.Succeed(step.function);
    Strings expected = {kFirst};
    if (step.loaded) expected.push_back(kIntel);
    expected.insert(expected.end(), {kMainFell, kAuxFell});
    EXPECT_EQ(Lines(), expected) << step.function;
    EXPECT_EQ(CountOf(script_.Take(), "Sleep 1000"), step.loaded ? 1 : 0) << step.function;
    EXPECT_EQ(vendor_.open, 0) << step.function;
  }
  for (const char* missing : {"WifiGetAdapterList", "WifiGetBSSConfigurationStatistics"}) {
    vendor_.missing_functions = {missing};
    EXPECT_EQ(Read(), "-55:-55") << missing;
  }
}

TEST_F(WifiAntennas, IntelLibraryByAbsolutePathOnly) {
  vendor_.intel_present = true;
  for (const wchar_t* path :
       {L"", L"component.dll", L"wifi\\component.dll", L"\\component.dll", L"C:component.dll", L"C:\\",
        L"\\\\server\\share\\component.dll", L"C:\\Drivers\\..\\component.dll", L"C:/component.dll"}) {
    vendor_.intel_path = path;
    EXPECT_EQ(Read(), "-55:-55");
  }
  // As long as the room for it, so that its end is cut off.
  vendor_.intel_path = L"C:\\" + std::wstring(MAX_PATH - 3, L'x');
  EXPECT_EQ(Read(), "-55:-55");
  vendor_.intel_path = L"C:\\Drivers\\wifi\\component.dll";
  vendor_.intel_path_type = REG_EXPAND_SZ;
  EXPECT_EQ(Read(), "-55:-55");
  for (const std::string& call : script_.Take()) EXPECT_THAT(call, Not(StartsWith("LoadLibraryExW")));
}

// What the records hold is told of in core's tests: here that it comes from them, as long as they say.
TEST_F(WifiAntennas, RecordsThatLie) {
  vendor_.intel_present = true;
  const std::string statistics = vendor_.bss_statistics;
  vendor_.bss_statistics = statistics.substr(0, 15);
  EXPECT_EQ(Read(), "-48:-55");
  EXPECT_THAT(Lines(), ElementsAre(kFirst, kIntel, kAuxFell));
  // More than there was room for.
  vendor_.bss_statistics = statistics;
  for (const uint32_t size : {1025u, 0xFFFFFFFFu}) {
    vendor_.claimed_size = size;
    EXPECT_EQ(Read(), "-55:-55");
  }
  vendor_.claimed_size = 0;
  vendor_.adapter_list.pop_back();  // no whole id
  EXPECT_EQ(Read(), "-55:-55");
  vendor_.intel_present = false;
  vendor_.realtek_present = true;
  vendor_.statistics_oid.resize(7);
  EXPECT_EQ(Read(), "-47:-55");
  vendor_.claimed_size = 257;
  EXPECT_EQ(Read(), "-55:-55");
}

TEST_F(WifiAntennas, Realtek) {
  vendor_.realtek_present = true;
  EXPECT_EQ(Read(), "-47:-63");
  EXPECT_THAT(Lines(), ElementsAre(kFirst, kRealtek));
  EXPECT_THAT(script_.Take(),
              ElementsAre("SetupDiGetClassDevsW", "LoadLibraryExW C:\\Program Files\\Host\\wlanCliDLL.dll",
                          "DLL_findRealtekWlanNics", "DLL_QueryOid ffedd012 256"));
  vendor_.statistics_oid = Dbm(0) + Dbm(-63);
  EXPECT_EQ(Read(), "-55:-63");
  EXPECT_THAT(Lines(), ElementsAre(kFirst, kRealtek, kMainFell));
}

TEST_F(WifiAntennas, EachStepOfRealtekFailingHasItsLine) {
  vendor_.realtek_present = true;
  const auto expect_fallen_back = [this](const char* line) {
    EXPECT_EQ(Read(), "-55:-55") << line;
    EXPECT_THAT(Lines(), ElementsAre(kFirst, line, kMainFell, kAuxFell));
    EXPECT_EQ(vendor_.open, 0);
  };
  script_.Fail("LoadLibraryExW", ERROR_MOD_NOT_FOUND, 1);
  expect_fallen_back("5 Load rtk dll fail. Path: C:\\Program Files\\Host\\wlanCliDLL.dll");
  vendor_.missing_functions = {"DLL_findRealtekWlanNics"};
  expect_fallen_back("5 [DLL_findRealtekWlanNics] Get rtk api fail.");
  vendor_.missing_functions = {"DLL_QueryOid"};
  expect_fallen_back("5 [DLL_QueryOid] Get rtk api fail.");
  vendor_.missing_functions.clear();
  script_.Fail("DLL_findRealtekWlanNics", 0, 1);
  expect_fallen_back("5 [DriverBinding] No realtek network interface controllers.");
  vendor_.realtek_adapters = 0;
  expect_fallen_back("5 [DriverBinding] Error: adapter count = 0.");
  vendor_.realtek_adapters = 2;
  script_.Fail("DLL_QueryOid", 0, 1);
  expect_fallen_back("5 [QueryWlanStatisticInfo] Error: OID Query failed!!");
}

TEST_F(WifiAntennas, HostProgramsWithoutAFolder) {
  vendor_.realtek_present = true;
  for (const wchar_t* program : {L"", L"host.exe", L"\\\\server\\share\\host.exe"}) {
    vendor_.host_program = program;
    EXPECT_EQ(Read(), "-55:-55");
  }
  EXPECT_THAT(Lines(), Contains("5 Load rtk dll fail. Path: wlanCliDLL.dll").Times(2));
  for (const std::string& call : script_.Take()) EXPECT_THAT(call, Not(StartsWith("LoadLibraryExW")));
}

TEST_F(WifiAntennas, ReadingsReachTheSnapshot) {
  vendor_.realtek_present = true;
  wlan_.interfaces = {{}};
  wlan_.interfaces[0].access_points = {{.ssid = "home", .bssid = kAccessPoint, .rssi_dbm = -55}};
  EXPECT_STREQ(RF_WiFi_Main_Aux_Rssi().text, "-47:-63");
  EXPECT_THAT(Lines(), Contains(kRealtek));
}

}  // namespace
}  // namespace vexa::test
