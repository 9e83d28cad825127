// The fixture of tests about the Wi-Fi snapshot.
#ifndef VEXA_TESTS_SUPPORT_WIFI_TEST_H_
#define VEXA_TESTS_SUPPORT_WIFI_TEST_H_

#include "radio/wifi_snapshot.h"
#include "tests/support/fake_wifi_vendor.h"
#include "tests/support/fake_wlan.h"
#include "tests/support/shell_test.h"
#include "vexa/wifi.h"

namespace vexa::test {

// Each test begins as a process does: nothing collected.
class WifiTest : public ShellTest {
 protected:
  WifiTest() { g_wifi = {}; }
  ~WifiTest() override { g_wifi = {}; }

  static std::string CardName() {
    wchar_t name[VEXA_WIFI_CARD_NAME_CAPACITY];
    EXPECT_EQ(RF_WiFiCardName(name), 0u);
    return Narrow(name);
  }
  static std::string ApMac() {
    char mac[VEXA_WIFI_AP_MAC_CAPACITY];
    RF_AP_MAC(mac);
    return mac;
  }
  // "connected|card|RSSI|channel|PHY mode|AP MAC|maximum rate".
  static std::string Link() {
    const auto number = [](uint32_t value) { return std::to_string(static_cast<int32_t>(value)) + "|"; };
    return number(RF_WiFiIsConnected()) + CardName() + "|" + number(RF_WiFiRssi()) + number(RF_WiFiChannel()) +
           RF_PhyMode().text + "|" + ApMac() + "|" + std::to_string(static_cast<int32_t>(RF_WiFiMaxRate()));
  }
  // "2.4 GHz|5 GHz|6 GHz|antennas": how many access points.
  static std::string Counts() {
    const auto number = [](uint32_t value) { return std::to_string(static_cast<int32_t>(value)) + "|"; };
    return number(RF_WiFi_2_4G_AP_Num()) + number(RF_WiFi_5G_AP_Num()) + number(RF_WiFi_6G_AP_Num()) +
           RF_WiFi_Main_Aux_Rssi().text;
  }

  CallScript script_;
  FakeWlan wlan_{script_};
  FakeWifiVendor vendor_{script_};
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_WIFI_TEST_H_
