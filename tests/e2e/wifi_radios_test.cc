// The shipped library on the simulated Wi-Fi: the whole picture, each call failing, and lists of access points that
// lie.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tests/e2e/radios.h"
#include "vexa/vexa.h"

namespace vexa::test {
namespace {

using testing::HasSubstr;

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
  EXPECT_EQ(library.Export("RF_WiFiCardName", &RF_WiFiCardName)(name), 0u);
  EXPECT_TRUE(std::wstring(name) == L"W\xD800\xDC00\xDC00");
  char mac[VEXA_WIFI_AP_MAC_CAPACITY];
  library.Export("RF_AP_MAC", &RF_AP_MAC)(mac);
  EXPECT_STREQ(mac, "06:1B:7C");
  EXPECT_EQ(library.Text("RF_WiFi_2_4G_AP_Ch_Num"), R"({"ch1":"1","ch11":"0","ch6":"0","others":"1"})");
  EXPECT_EQ(library.Text("RF_WiFi_5G_AP_Band_Num"), R"({"band1":"1","band2":"0","band3":"0","band4":"0"})");
  EXPECT_EQ(library.Text("RF_WiFi_6G_AP_NUII_Num"), R"({"nuii5":"0","nuii6":"1","nuii7":"0","nuii8":"0"})");
  // -20 dBm is in no bucket.
  EXPECT_THAT(library.Text("RF_WiFi_2_4G_AP_RSSI_Num"), HasSubstr(R"("-20~-30":"0","-30~-40":"0","-40~-50":"1")"));
  EXPECT_THAT(library.Text("RF_WiFi_6G_AP_RSSI_Num"), HasSubstr(R"("-90~-100":"1")"));
  EXPECT_EQ(library.Text("RF_WiFi_Main_Aux_Rssi"), "-52:-52");
  EXPECT_EQ(WlanCount("WlanGetNetworkBssList"), 3);
  ExpectEverythingFreed(1);
}

TEST_F(WifiRadios, EachCallFailing) {
  constexpr char kCollectorFailed[] = "2147483647|2147483647|2147483647|error_string|2147483647";
  const struct {
    const char* rule;
    std::string picture;
    int clients;
  } failures[] = {
      {R"("on": {"call": "WlanOpenHandle"}, "from": 1)", kCollectorFailed + std::string("|-1000|-1000|-1000"), 0},
      {R"("on": {"call": "WlanEnumInterfaces"}, "from": 1)", kCollectorFailed + std::string("|-1000|-1000|-1000"), 8},
      {R"("on": {"call": "WlanQueryInterface", "opcode": 7}, "nth": 1)", "1|-52|36|802.11ax|1201|-1000|-1000|-1000", 1},
      {R"("on": {"call": "WlanQueryInterface", "opcode": 7}, "nth": 2)", "1|-1000|36|init_string|-1000|2|1|1", 1},
      {R"("on": {"call": "WlanQueryInterface", "opcode": 8}, "nth": 1)", "1|-52|-1000|802.11ax|1201|2|1|1", 1},
      {R"("on": {"call": "WlanGetNetworkBssList"}, "nth": 1)", kWhole, 1},
      {R"("on": {"call": "WlanGetNetworkBssList"}, "nth": 2)", "1|-52|36|802.11ax|1201|0|0|0", 1},
      {R"("on": {"call": "WlanGetNetworkBssList"}, "from": 1)", kCollectorFailed + std::string("|0|0|0"), 8},
  };
  for (const auto& failure : failures) {
    SCOPED_TRACE(failure.rule);
    UseRadios(Office() + R"(, "rules": [{)" + failure.rule + R"(, "then": {"fail": 5}}])");
    const Loaded library;
    EXPECT_EQ(Picture(library), failure.picture);
    ExpectEverythingFreed(failure.clients);
  }
}

// What is handed out ends where nothing may be touched: a lie that is believed ends the program.
TEST_F(WifiRadios, ListsThatLie) {
  for (const char* lies : {R"(, "told_count": 4294967295)", R"(, "told_count": 100000)", R"(, "told_count": 5)"}) {
    UseRadios(Office(lies));
    const Loaded library;
    EXPECT_EQ(library.Number("RF_WiFiRssi"), static_cast<uint32_t>(-52)) << lies;
    ExpectEverythingFreed(1);
  }
  for (const char* lies : {R"(, "told_size": 4294967295)", R"(, "told_offset": 4294967295)", R"(, "told_offset": 0)",
                           R"(, "told_offset": 4294967280, "told_size": 100)"}) {
    UseRadios(Office("", lies));
    const Loaded library;
    EXPECT_EQ(library.Number("RF_WiFiRssi"), static_cast<uint32_t>(-52)) << lies;
    ExpectEverythingFreed(1);
  }
}

class MissingWlan : public WifiRadios {};

TEST_F(MissingWlan, FailsAndEverythingElseAnswers) {
  UseRadios(Office());
  ASSERT_EQ(LoadLibraryExW(L"wlanapi.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32), nullptr);
  const Loaded library;
  EXPECT_EQ(Picture(library), "2147483647|2147483647|2147483647|error_string|2147483647|-1000|-1000|-1000");
  EXPECT_EQ(library.Text("RF_Net_Connected_Type"), "WIFI");
}

}  // namespace
}  // namespace vexa::test
