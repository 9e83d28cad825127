// The Wi-Fi exports: each answers one value of the snapshot.
#include <cerrno>
#include <cstring>
#include <cwchar>

#include "frame/export_wall.h"
#include "frame/line.h"
#include "frame/text_value.h"
#include "radio/wifi_snapshot.h"
#include "vexa/wifi.h"

// A row of the family: the export and its value.
#define VEXA_WIFI_NUMBER(export_name, field) \
  uint32_t export_name() noexcept { return vexa::Wifi("[RF] " #export_name " FLAG FALSE").field; }
#define VEXA_WIFI_TEXT(export_name, field) \
  VexaText export_name() noexcept { return vexa::TextValue(vexa::Wifi("[RF] " #export_name " FLAG FALSE").field); }

VEXA_WIFI_NUMBER(RF_WiFiIsConnected, connected)
VEXA_WIFI_NUMBER(RF_WiFiRssi, rssi_dbm)
VEXA_WIFI_NUMBER(RF_WiFiChannel, channel)
VEXA_WIFI_TEXT(RF_PhyMode, phy_mode)
VEXA_WIFI_NUMBER(RF_WiFiMaxRate, max_rate_mbps)
VEXA_WIFI_NUMBER(RF_WiFi_2_4G_AP_Num, count_2_4ghz)
VEXA_WIFI_TEXT(RF_WiFi_2_4G_AP_Ch_Num, channels_2_4ghz)
VEXA_WIFI_NUMBER(RF_WiFi_5G_AP_Num, count_5ghz)
VEXA_WIFI_TEXT(RF_WiFi_5G_AP_Band_Num, bands_5ghz)
VEXA_WIFI_NUMBER(RF_WiFi_6G_AP_Num, count_6ghz)
VEXA_WIFI_TEXT(RF_WiFi_6G_AP_NUII_Num, bands_6ghz)
VEXA_WIFI_TEXT(RF_WiFi_2_4G_AP_RSSI_Num, rssi_2_4ghz)
VEXA_WIFI_TEXT(RF_WiFi_5G_AP_RSSI_Num, rssi_5ghz)
VEXA_WIFI_TEXT(RF_WiFi_6G_AP_RSSI_Num, rssi_6ghz)

uint32_t RF_WiFiCardName(wchar_t* name) noexcept {
  if (name == nullptr) return EINVAL;
  const wchar_t* text = vexa::Wifi("[RF] RF_WiFiCardName FLAG FALSE").card_name;
  std::wmemcpy(name, text, std::wcslen(text) + 1);
  return 0;
}

void RF_AP_MAC(char* mac) noexcept {
  if (mac == nullptr) return;
  const std::string& text = vexa::Wifi("[RF] RF_AP_MAC FLAG FALSE").ap_mac;
  std::memcpy(mac, text.c_str(), text.size() + 1);
}

VexaText RF_WiFi_Main_Aux_Rssi() noexcept {
  using namespace vexa;
  return Guarded("RF_WiFi_Main_Aux_Rssi", VexaText{}, [] {
    const WifiSnapshot& wifi = Wifi("[RF] RF_WiFi_Main_Aux_Rssi FLAG FALSE");
    return TextValue(Line(wifi.main_dbm, ":", wifi.aux_dbm));
  });
}
