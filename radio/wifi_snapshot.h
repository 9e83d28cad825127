// What is known about the Wi-Fi link and the access points around it.
#ifndef VEXA_RADIO_WIFI_SNAPSHOT_H_
#define VEXA_RADIO_WIFI_SNAPSHOT_H_

#include <cstdint>
#include <string>

#include "vexa/wifi.h"

namespace vexa {

// A value is what was collected or one of two marks: nothing has filled it yet, the collection failed.
struct WifiSnapshot {
  uint32_t connected = VEXA_NOT_COLLECTED;  // 1: an interface is connected
  wchar_t card_name[VEXA_WIFI_CARD_NAME_CAPACITY] = L"" VEXA_NOT_COLLECTED_TEXT;
  uint32_t rssi_dbm = VEXA_NOT_COLLECTED;
  uint32_t channel = VEXA_NOT_COLLECTED;
  std::string phy_mode = VEXA_NOT_COLLECTED_TEXT;
  std::string ap_mac = VEXA_NOT_COLLECTED_TEXT;
  uint32_t max_rate_mbps = VEXA_NOT_COLLECTED;

  // From here on: by the classifier and the antenna reader, not marked by a failure.
  uint32_t count_2_4ghz = VEXA_NOT_COLLECTED;
  std::string channels_2_4ghz = VEXA_NOT_COLLECTED_TEXT;
  uint32_t count_5ghz = VEXA_NOT_COLLECTED;
  std::string bands_5ghz = VEXA_NOT_COLLECTED_TEXT;
  uint32_t count_6ghz = VEXA_NOT_COLLECTED;
  std::string bands_6ghz = VEXA_NOT_COLLECTED_TEXT;
  std::string rssi_2_4ghz = VEXA_NOT_COLLECTED_TEXT;
  std::string rssi_5ghz = VEXA_NOT_COLLECTED_TEXT;
  std::string rssi_6ghz = VEXA_NOT_COLLECTED_TEXT;
  int32_t main_dbm = 0;
  int32_t aux_dbm = 0;

  bool collected = false;
};

// Kept: plain variables without a lock, never refreshed after the first success.
extern WifiSnapshot g_wifi;

// Collects unless a collection has succeeded; `uncollected_line` is logged first then. The collector ends every failure
// by itself, those of memory included.
const WifiSnapshot& Wifi(const char* uncollected_line) noexcept;

}  // namespace vexa

#endif  // VEXA_RADIO_WIFI_SNAPSHOT_H_
