// The Wi-Fi snapshot on a scripted WLAN service: what is collected, in which order, and each call failing.
#include <windows.h>

#include <objbase.h>

#include <functional>

#include "radio/wifi_interface.h"
#include "tests/support/beacon.h"
#include "tests/support/own_process.h"
#include "tests/support/wifi_test.h"

namespace vexa::test {
namespace {

using namespace beacon;

constexpr char kNothing[] = "-1000|init_string|-1000|-1000|init_string|init_string|-1000";
constexpr char kFailed[] = "2147483647|error_string|2147483647|2147483647|error_string|error_string|2147483647";
constexpr char kNoCounts[] = "-1000|-1000|-1000|0:0";
constexpr char kStart[] = "5 RF_ReadWifi_Info Start";
constexpr char kEnd[] = "5 RF_ReadWifi_Info End";
constexpr char kGuid[] = "5 [DLL][Wrieless]InterfaceGUID{000000A0-0002-0003-0405-060708090A0B}";

// HE, 2 streams, 80 MHz: 1201 Mbit/s.
const ByteText kBeacon =
    Ssid("home") + Ht(kHt40, {0xFF, 0xFF}) + Ht40() + Vht(kVht80, 0xFFFA) + VhtOperation(1) + He(kHe80, {0xFFFA});

// An interface on a network of four access points, the connected one last, and a foreign network.
FakeWlanInterface Home() {
  FakeWlanInterface adapter;
  const MacAddress own = adapter.bssid;
  adapter.channel = 36;
  adapter.access_points = {
      {.ssid = "home", .bssid = {1}, .rssi_dbm = -41, .frequency_khz = 2'412'000},
      {.ssid = "cafe", .bssid = own, .rssi_dbm = -30, .frequency_khz = 2'412'000},
      {.ssid = "home", .bssid = {2}, .rssi_dbm = -70, .frequency_khz = 2'437'000},
      {.ssid = "home", .bssid = {3}, .rssi_dbm = -88, .frequency_khz = 5'955'000},
      {.ssid = "home", .bssid = own, .rssi_dbm = -52, .frequency_khz = 5'180'000, .elements = kBeacon}};
  return adapter;
}
constexpr char kHomeCounts[] = "2|1|1|-52:-52";
constexpr char kHome[] = "1|Test Wi-Fi|-52|36|802.11ax|02:11:22|1201";

class WifiCollector : public WifiTest {
 protected:
  WifiCollector() { wlan_.interfaces = {Home()}; }
};

TEST_F(WifiCollector, WholePicture) {
  EXPECT_EQ(RF_WiFiRssi(), static_cast<uint32_t>(-52));
  EXPECT_THAT(Lines(), ElementsAre("5 [RF] RF_WiFiRssi FLAG FALSE", kStart, kGuid,
                                   "5 Get main_rssi_final and aux_rssi_final from connectAPEntry->lRssi",
                                   "5 Load rtk dll fail. Path: C:\\Program Files\\Host\\wlanCliDLL.dll",
                                   "5 Get main_rssi_final from connectAPEntry->lRssi",
                                   "5 Get aux_rssi_final from connectAPEntry->lRssi", kEnd));
  EXPECT_THAT(script_.Take(),
              ElementsAre("WlanOpenHandle 2", "WlanEnumInterfaces", "connection", "WlanGetNetworkBssList own open",
                          "WlanGetNetworkBssList own secured", "SetupDiGetClassDevsW",
                          "LoadLibraryExW C:\\Program Files\\Host\\wlanCliDLL.dll", "connection", "channel",
                          "WlanGetNetworkBssList all"));
  EXPECT_EQ(Link(), kHome);
  EXPECT_EQ(Counts(), kHomeCounts);
  EXPECT_STREQ(RF_WiFi_2_4G_AP_Ch_Num().text, R"({"ch1":"1","ch11":"0","ch6":"1","others":"0"})");
  EXPECT_STREQ(RF_WiFi_5G_AP_Band_Num().text, R"({"band1":"1","band2":"0","band3":"0","band4":"0"})");
  EXPECT_STREQ(RF_WiFi_6G_AP_NUII_Num().text, R"({"nuii5":"1","nuii6":"0","nuii7":"0","nuii8":"0"})");
  EXPECT_STREQ(RF_WiFi_2_4G_AP_RSSI_Num().text,
               R"({"-10~-20":"0","-20~-30":"0","-30~-40":"0","-40~-50":"1","-50~-60":"0","-60~-70":"0",)"
               R"("-70~-80":"0","-80~-90":"0","-90~-100":"0"})");
  EXPECT_THAT(RF_WiFi_5G_AP_RSSI_Num().text, HasSubstr(R"("-50~-60":"1","-60~-70":"0")"));
  EXPECT_THAT(RF_WiFi_6G_AP_RSSI_Num().text, HasSubstr(R"("-80~-90":"1","-90~-100":"0")"));
  EXPECT_EQ(WifiAdapterName(), L"Test Wi-Fi");
  // Collected once: no export asks the system or logs again.
  EXPECT_THAT(script_.Take(), IsEmpty());
  EXPECT_THAT(Lines(), IsEmpty());
  EXPECT_EQ(wlan_.open_clients, 1);
}

TEST_F(WifiCollector, EachExportCollectsFirstAndLogsItsOwnName) {
#define CALL(export_name) {#export_name, [] { (void)export_name(); }}
  // clang-format off: side by side
  const struct {
    const char* name;
    void (*call)();
  } exports[] = {
      CALL(RF_WiFiIsConnected), CALL(RF_WiFiRssi), CALL(RF_WiFiChannel), CALL(RF_PhyMode), CALL(RF_WiFiMaxRate),
      CALL(RF_WiFi_2_4G_AP_Num), CALL(RF_WiFi_2_4G_AP_Ch_Num), CALL(RF_WiFi_2_4G_AP_RSSI_Num),
      CALL(RF_WiFi_5G_AP_Num), CALL(RF_WiFi_5G_AP_Band_Num), CALL(RF_WiFi_5G_AP_RSSI_Num),
      CALL(RF_WiFi_6G_AP_Num), CALL(RF_WiFi_6G_AP_NUII_Num), CALL(RF_WiFi_6G_AP_RSSI_Num),
      CALL(RF_WiFi_Main_Aux_Rssi), {"RF_AP_MAC", [] { (void)ApMac(); }}, {"RF_WiFiCardName", [] { (void)CardName(); }},
      {"RF_WiFiCardName", [] { (void)WifiAdapterName(); }},  // what the inventory asks
  };
  // clang-format on
  for (const auto& entry : exports) {
    g_wifi = {};
    entry.call();
    const Strings lines = Lines();
    EXPECT_EQ(lines.front(), std::string("5 [RF] ") + entry.name + " FLAG FALSE");
    EXPECT_EQ(lines.back(), kEnd);
  }
  // One client handle stays open per collection, no more and no less.
  EXPECT_EQ(wlan_.open_clients, static_cast<int>(std::size(exports)));
}

// Interfaces and answers of every kind: what the exports tell of them.
TEST_F(WifiCollector, WhatIsThereAndWhatIsNot) {
  const FakeWlanInterface off{.state = wlan_interface_state_disconnected, .description = L"First"};
  const FakeWlanInterface roaming{.state = wlan_interface_state_authenticating, .description = L"Second"};
  FakeWlanInterface last = Home(), without_own = Home(), open = Home();
  last.description = L"Last";
  last.channel = 44;
  without_own.access_points.pop_back();
  for (FakeAccessPoint& point : open.access_points) point.secured = false;
  constexpr char kNoLink[] = "1|Test Wi-Fi|-1000|-1000|init_string|init_string|-1000";
  constexpr char kNoEntry[] = "1|Test Wi-Fi|-1000|36|802.11ax|02:11:22|-1000";
  // clang-format off: one case a row
  const struct {
    const char* name;
    std::vector<FakeWlanInterface> interfaces;
    std::function<void()> prepare;
    const char* link;
    const char* counts;
  } cases[] = {
      {"no interface", {}, {}, kNothing, kNoCounts},
      {"no list of them", {Home()}, [&] { wlan_.null_interfaces = true; }, kNothing, kNoCounts},
      {"of disconnected ones the first", {off, roaming}, {}, "0|First|-1000|-1000|init_string|init_string|-1000",
       kNoCounts},
      {"a later connected one overrides", {off, Home(), last, off}, {}, "1|Last|-52|44|802.11ax|02:11:22|1201",
       kHomeCounts},
      {"the own access point is not in the list", {without_own}, {}, kNoEntry, "2|0|1|0:0"},
      {"an open network", {open}, {}, kHome, kHomeCounts},
      {"Ethernet", {Home()}, [&] { wlan_.network.list[0].type = 6; }, kHome, kNoCounts},
      {"mobile", {Home()}, [&] { wlan_.network.list[0].type = 244; }, kHome, kNoCounts},
      {"short connection", {Home()}, [&] { wlan_.connection_bytes = sizeof(WLAN_CONNECTION_ATTRIBUTES) - 1; },
       "1|Test Wi-Fi|-1000|36|init_string|init_string|-1000", kNoCounts},
      {"short channel", {Home()}, [&] { wlan_.channel_bytes = 3; },
       "1|Test Wi-Fi|-52|-1000|802.11ax|02:11:22|1201", kHomeCounts},
      {"empty answers", {Home()}, [&] { wlan_.connection_bytes = wlan_.channel_bytes = 0; }, kNoLink, kNoCounts},
      {"null lists of access points", {Home()}, [&] { wlan_.null_bss_lists = true; }, kNoEntry, "0|0|0|0:0"},
      {"no open", {Home()}, [&] { wlan_.missing_functions = {"WlanOpenHandle"}; }, kFailed, kNoCounts},
      {"no enumeration", {Home()}, [&] { wlan_.missing_functions = {"WlanEnumInterfaces"}; }, kFailed, kNoCounts},
      {"no query", {Home()}, [&] { wlan_.missing_functions = {"WlanQueryInterface"}; }, kNoLink, kNoCounts},
      {"no list", {Home()}, [&] { wlan_.missing_functions = {"WlanGetNetworkBssList"}; }, kFailed, "0|0|0|0:0"},
  };
  // clang-format on
  for (const auto& one : cases) {
    SCOPED_TRACE(one.name);
    g_wifi = {};
    wlan_.interfaces = one.interfaces;
    if (one.prepare) one.prepare();
    EXPECT_EQ(Link(), one.link);
    EXPECT_EQ(Counts(), one.counts);
    EXPECT_EQ(g_wifi.collected, one.link != kFailed);
    EXPECT_EQ(wlan_.open_memory(), 0u);
    wlan_.null_interfaces = wlan_.null_bss_lists = false;
    wlan_.connection_bytes = sizeof(WLAN_CONNECTION_ATTRIBUTES);
    wlan_.channel_bytes = sizeof(ULONG);
    wlan_.network.list[0].type = 71;
    wlan_.missing_functions.clear();
  }
}

TEST_F(WifiCollector, AsksNoMoreThanItNeeds) {
  wlan_.interfaces = {{.state = wlan_interface_state_disconnected}, {.state = wlan_interface_state_authenticating}};
  (void)Wifi("");
  EXPECT_THAT(script_.Take(), ElementsAre("WlanOpenHandle 2", "WlanEnumInterfaces"));
  EXPECT_THAT(Lines(),
              IsSupersetOf({std::string(kGuid),
                            std::string("5 [DLL][Wrieless]InterfaceGUID{000000A1-0002-0003-0405-060708090A0B}")}));
  // An open network needs one list for the counts, a link that is not Wi-Fi none; a foreign list no antennas.
  wlan_.interfaces = {Home()};
  for (FakeAccessPoint& point : wlan_.interfaces[0].access_points) point.secured = false;
  g_wifi = {};
  (void)Wifi("");
  EXPECT_THAT(script_.Take(), Not(Contains("WlanGetNetworkBssList own secured")));
  wlan_.network.list[0].type = 24;
  g_wifi = {};
  Lines();
  (void)Wifi("");
  EXPECT_THAT(script_.Take(), Not(Contains("WlanGetNetworkBssList own open")));
  EXPECT_THAT(Lines(), Not(Contains(HasSubstr("connectAPEntry"))));
}

// What the exports tell after each call of a collection has failed. All behind it failing too: the failure sweep.
TEST_F(WifiCollector, EachCallFailing) {
  const struct {
    const char* call;
    const char* link;
    const char* counts;
  } steps[] = {
      {"WlanOpenHandle 2", kFailed, kNoCounts},
      {"WlanEnumInterfaces", kFailed, kNoCounts},
      {"connection", kHome, kNoCounts},
      {"WlanGetNetworkBssList own open", kHome, kHomeCounts},
      {"WlanGetNetworkBssList own secured", kHome, "0|0|0|0:0"},
      {"SetupDiGetClassDevsW", kHome, kHomeCounts},
      {"LoadLibraryExW C:\\Program Files\\Host\\wlanCliDLL.dll", kHome, kHomeCounts},
      {"connection", "1|Test Wi-Fi|-1000|36|init_string|init_string|-1000", kHomeCounts},
      {"channel", "1|Test Wi-Fi|-52|-1000|802.11ax|02:11:22|1201", kHomeCounts},
      {"WlanGetNetworkBssList all", kFailed, kHomeCounts},
  };
  for (int i = 0; i < static_cast<int>(std::size(steps)); ++i) {
    SCOPED_TRACE(steps[i].call);
    g_wifi = {};
    script_.Take();
    const int clients = wlan_.open_clients;
    script_.FailOnly(i, ERROR_ACCESS_DENIED);
    (void)Wifi("");
    // A failing look for the device goes on to the other vendor's, so the calls are the same up to the failing one.
    EXPECT_EQ(script_.Take().at(static_cast<size_t>(i)), steps[i].call);
    const bool failed = steps[i].link == kFailed;
    EXPECT_EQ(g_wifi.collected, !failed);
    EXPECT_EQ(wlan_.open_clients, clients + (i == 0 ? 0 : 1));
    EXPECT_EQ(wlan_.open_memory(), 0u);
    EXPECT_EQ(CountOf(Lines(), kEnd), failed ? 0 : 1);
    g_wifi.collected = true;  // each export would try again: look at what is stored
    EXPECT_EQ(Link(), steps[i].link);
    EXPECT_EQ(Counts(), steps[i].counts);
  }
}

TEST_F(WifiCollector, FailureLinesLoseAsManyCharactersAsTheCodeSays) {
  const struct {
    DWORD error;
    const char* open;
    const char* enumerate;
  } codes[] = {{1, "5 lanOpenHandle failed with error:", "5 lanEnumInterfaces failed with error:"},
               {32, "5 :", "5 rror:"},
               {33, "5 ", "5 ror:"},
               {37, "5 ", "5 "},
               {0xFFFFFFFF, "5 ", "5 "}};
  for (const auto& code : codes) {
    g_wifi = {};
    script_.Fail("WlanOpenHandle", code.error, 1);
    script_.Fail("WlanEnumInterfaces", code.error, 1);
    EXPECT_EQ(RF_WiFiChannel(), VEXA_COLLECT_FAILED);
    EXPECT_THAT(Lines(), ElementsAre("5 [RF] RF_WiFiChannel FLAG FALSE", kStart, code.open)) << code.error;
    EXPECT_EQ(RF_WiFiChannel(), VEXA_COLLECT_FAILED);
    EXPECT_THAT(Lines(), ElementsAre("5 [RF] RF_WiFiChannel FLAG FALSE", kStart, code.enumerate)) << code.error;
  }
}

TEST_F(WifiCollector, AFailedCollectionIsTriedAgainUntilOneSucceeds) {
  script_.Fail("WlanGetNetworkBssList", ERROR_NOT_READY, 3);
  EXPECT_EQ(RF_WiFiMaxRate(), VEXA_COLLECT_FAILED);
  EXPECT_EQ(ApMac(), "02:11:22");
  EXPECT_EQ(Link(), kHome);
  EXPECT_EQ(wlan_.open_clients, 2);
  // Marks of a failure stay where a later success fills nothing.
  g_wifi = {};
  script_.Fail("WlanOpenHandle", ERROR_SERVICE_NOT_ACTIVE, 1);
  EXPECT_EQ(CardName(), "error_string");
  wlan_.interfaces.clear();
  EXPECT_EQ(Link(), kFailed);
  EXPECT_TRUE(g_wifi.collected);
}

int WINAPI NoText(REFGUID, LPOLESTR, int capacity) {
  EXPECT_EQ(capacity, 39);
  return 0;
}

TEST_F(WifiCollector, InterfaceWhoseIdHasNoText) {
  const ImportPatch patch("StringFromGUID2", NoText);
  EXPECT_EQ(Link(), kHome);
  EXPECT_EQ(Lines().at(2), "5 [DLL][Wrieless]StringFromGUID2 failed");
}

// The buffers of callers end at a page that can't be touched, and begin behind bytes that are watched.
class WifiCallerBuffers : public WifiCollector {
 protected:
  static std::wstring GuardedCardName() {
    const GuardedBuffer buffer(VEXA_WIFI_CARD_NAME_CAPACITY * sizeof(wchar_t));
    auto* const name = reinterpret_cast<wchar_t*>(buffer.data());
    EXPECT_EQ(RF_WiFiCardName(name), 0u);
    EXPECT_TRUE(buffer.IsUntouchedAround());
    return name;
  }
  static std::string GuardedMac() {
    const GuardedBuffer buffer(VEXA_WIFI_AP_MAC_CAPACITY);
    RF_AP_MAC(buffer.data());
    EXPECT_TRUE(buffer.IsUntouchedAround());
    EXPECT_TRUE(buffer.IsTerminated());
    return buffer.data();
  }
};

TEST_F(WifiCallerBuffers, DescriptionsOfEveryKind) {
  std::wstring surrogates(255, wchar_t{0xDC00});
  surrogates[254] = wchar_t{0xD800};
  for (const std::wstring& description :
       {std::wstring(), std::wstring(255, L'N'), surrogates, std::wstring(L"100 %s %n")}) {
    g_wifi = {};
    wlan_.interfaces[0].description = description;
    EXPECT_TRUE(GuardedCardName() == description);
  }
  // All 256 characters of the system's field, without an end: cut.
  g_wifi = {};
  wlan_.interfaces[0].description = std::wstring(256, L'X');
  EXPECT_EQ(GuardedCardName(), std::wstring(255, L'X'));
  script_.Fail("WlanOpenHandle", 5);
  g_wifi = {};
  EXPECT_EQ(GuardedCardName(), L"error_string");
  EXPECT_EQ(GuardedMac(), "error_string");
  wlan_.interfaces.clear();
  script_.Succeed("WlanOpenHandle");
  g_wifi = {};
  EXPECT_EQ(GuardedMac(), "init_string");
  EXPECT_EQ(GuardedCardName(), L"init_string");
}

TEST_F(WifiCallerBuffers, NullIsRefusedWithoutCollecting) {
  EXPECT_EQ(RF_WiFiCardName(nullptr), 22u);
  RF_AP_MAC(nullptr);
  EXPECT_THAT(script_.Take(), IsEmpty());
  EXPECT_EQ(GuardedMac(), "02:11:22");
}

TEST_F(WifiCallerBuffers, NetworkNamesAreBytesOfAnyLength) {
  std::string all_bytes;
  for (int i = 0; i < 32; ++i) all_bytes += static_cast<char>(i * 8 % 251);
  for (const std::string& ssid :
       {std::string(), std::string(32, '\0'), std::string(32, '\xFF'), all_bytes, std::string("%s%n\0x", 6)}) {
    g_wifi = {};
    FakeWlanInterface& adapter = wlan_.interfaces[0];
    adapter.ssid = ssid;
    for (FakeAccessPoint& point : adapter.access_points) point.ssid = ssid;
    // The same address under another name comes first.
    adapter.access_points[1].ssid = ssid.empty() ? std::string("x") : ssid.substr(0, ssid.size() - 1);
    EXPECT_EQ(Link(), kHome);
    EXPECT_EQ(Counts(), kHomeCounts);
  }
  // A length that the field can't have: no more than the field is read, and what is compared is cut alike.
  wlan_.interfaces[0].ssid.assign(40, 'n');
  wlan_.interfaces[0].access_points.back().ssid.assign(33, 'n');
  g_wifi = {};
  EXPECT_EQ(RF_WiFiRssi(), static_cast<uint32_t>(-52));
}

// The library is loaded once per process, so this one runs in its own.
TEST_F(WifiCollector, SystemWithoutTheLibrary) {
  if (RunInOwnProcess(L"VEXA_TEST_WITHOUT_WLANAPI")) return;
  wlan_.missing_library = true;
  EXPECT_EQ(Link(), kFailed);
  EXPECT_EQ(Counts(), kNoCounts);
  EXPECT_EQ(wlan_.open_clients, 0);
  EXPECT_THAT(script_.Take(), IsEmpty());
  Lines();
  EXPECT_EQ(RF_WiFiIsConnected(), VEXA_COLLECT_FAILED);
  // Error 126 is longer than the text.
  EXPECT_THAT(Lines(), ElementsAre("5 [RF] RF_WiFiIsConnected FLAG FALSE", kStart, "5 "));
  // It is looked for again by the next call.
  wlan_.missing_library = false;
  EXPECT_EQ(Link(), kHome);
}

}  // namespace
}  // namespace vexa::test
