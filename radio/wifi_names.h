// Names that the Wi-Fi exports answer.
#ifndef VEXA_RADIO_WIFI_NAMES_H_
#define VEXA_RADIO_WIFI_NAMES_H_

#include <cstdint>
#include <iterator>
#include <string>

#include "radio/bss_list.h"

namespace vexa {

// By the WLAN API's DOT11_PHY_TYPE.
inline constexpr const char* PhyModeName(uint32_t phy_type) noexcept {
  // Kept: "DHSS" and "HRDSSS", as callers compare them.
  constexpr const char* kNames[] = {"FHSS",    "DHSS",     "IR baseband", "OFDM",     "HRDSSS",  "ERP",
                                    "802.11n", "802.11ac", "802.11ad",    "802.11ax", "802.11be"};
  return phy_type >= 1 && phy_type <= std::size(kNames) ? kNames[phy_type - 1] : "Other";
}

// The first three octets: which vendor, but not which access point.
inline std::string MacPrefix(const MacAddress& address) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  constexpr size_t kOctets = 3;
  std::string text;
  for (size_t i = 0; i < kOctets; ++i) {
    if (i != 0) text += ':';
    text += kDigits[address[i] >> 4];
    text += kDigits[address[i] & 15];
  }
  return text;
}

}  // namespace vexa

#endif  // VEXA_RADIO_WIFI_NAMES_H_
