// Fills the Wi-Fi snapshot.
#include <windows.h>

#include <objbase.h>
#include <wlanapi.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

#include "frame/export_wall.h"
#include "frame/line.h"
#include "frame/log.h"
#include "radio/antenna_reader.h"
#include "radio/bss_list.h"
#include "radio/connection_type.h"
#include "radio/enumeration.h"
#include "radio/max_rate.h"
#include "radio/scan_classifier.h"
#include "radio/wifi_interface.h"
#include "radio/wifi_names.h"
#include "radio/wifi_snapshot.h"
#include "radio/wlan_client.h"

namespace vexa {

constinit WifiSnapshot g_wifi;

namespace {

// Kept: the error's code is not printed; it is how many characters of the text are left out.
void LogFailure(std::string_view text, DWORD error) noexcept {
  LogText(TraceLevel::kVerbose, text.substr(std::min<size_t>(error, text.size())));
}

Bytes SsidOf(const WLAN_ASSOCIATION_ATTRIBUTES& connection) {
  return {connection.dot11Ssid.ucSSID, std::min<size_t>(connection.dot11Ssid.uSSIDLength, kMaxSsidLength)};
}

MacAddress BssidOf(const WLAN_ASSOCIATION_ATTRIBUTES& connection) {
  MacAddress address;
  std::memcpy(address.data(), connection.dot11Bssid, address.size());
  return address;
}

void StoreCounts(const ScanClassifier& scan) {
  g_wifi.count_2_4ghz = static_cast<uint32_t>(scan.band_2_4ghz().count);
  g_wifi.count_5ghz = static_cast<uint32_t>(scan.band_5ghz().count);
  g_wifi.count_6ghz = static_cast<uint32_t>(scan.band_6ghz().count);
  g_wifi.channels_2_4ghz = CountText(scan.band_2_4ghz().groups);
  g_wifi.bands_5ghz = CountText(scan.band_5ghz().groups);
  g_wifi.bands_6ghz = CountText(scan.band_6ghz().groups);
  g_wifi.rssi_2_4ghz = scan.band_2_4ghz().rssi.Text();
  g_wifi.rssi_5ghz = scan.band_5ghz().rssi.Text();
  g_wifi.rssi_6ghz = scan.band_6ghz().rssi.Text();
}

// The access points of the connected network's name: the open ones, or else the secured ones. A list that can't be read
// has no entries.
WlanBssList ListOwnNetwork(const WlanClient& client, const GUID& interface_id,
                           const WLAN_ASSOCIATION_ATTRIBUTES& connection) {
  for (const bool security_enabled : {false, true}) {
    auto list = client.AccessPoints(interface_id, &connection.dot11Ssid, security_enabled);
    if (list && (security_enabled || BssList(BytesOf(*list)).size() != 0)) return *std::move(list);
  }
  return {};
}

// Scan classifier and antenna reader. Nothing is touched while the connection can't be told.
void CollectSurroundings(const WlanClient& client, const GUID& interface_id) {
  const auto connection = client.Connection(interface_id);
  if (!connection) return;
  const WlanBssList memory = ListOwnNetwork(client, interface_id, *connection);
  const BssList access_points(BytesOf(memory));
  ScanClassifier scan;
  for (size_t i = 0; i < access_points.size(); ++i) {
    const BssEntry entry = access_points[i];
    scan.Add(entry.frequency_khz, entry.rssi_dbm);
  }
  StoreCounts(scan);
  const MacAddress bssid = BssidOf(*connection);
  const auto own_dbm =
      access_points.Find(SsidOf(*connection), bssid).transform([](const BssEntry& entry) { return entry.rssi_dbm; });
  ReadAntennas(interface_id, bssid, own_dbm, g_wifi.main_dbm, g_wifi.aux_dbm);
}

// False when the list of access points can't be read.
bool CollectLink(const WlanClient& client, const GUID& interface_id) {
  const auto connection = client.Connection(interface_id);
  if (connection) {
    g_wifi.ap_mac = MacPrefix(BssidOf(*connection));
    g_wifi.phy_mode = PhyModeName(connection->dot11PhyType);
  }
  if (const auto channel = client.Channel(interface_id)) g_wifi.channel = *channel;
  const auto memory = client.AccessPoints(interface_id, nullptr, true);
  if (!memory) return false;
  if (!connection) return true;
  const BssList access_points(BytesOf(*memory));
  if (const auto own = access_points.Find(SsidOf(*connection), BssidOf(*connection))) {
    g_wifi.rssi_dbm = static_cast<uint32_t>(own->rssi_dbm);
    g_wifi.max_rate_mbps = MaxRateMbps(own->elements);
  }
  return true;
}

void LogInterface(const GUID& interface_id) {
  wchar_t text[39];
  if (StringFromGUID2(interface_id, text, static_cast<int>(std::size(text))) == 0) {
    LogInfo("[DLL][Wrieless]StringFromGUID2 failed");
  } else {
    LogBuilt(TraceLevel::kVerbose, [&] { return WideLine(L"[DLL][Wrieless]InterfaceGUID", text); });
  }
}

void StoreCardName(const wchar_t* description) {
  constexpr size_t kLongest = std::size(g_wifi.card_name) - 1;
  const size_t length = wcsnlen(description, kLongest);
  std::wmemcpy(g_wifi.card_name, description, length);
  g_wifi.card_name[length] = L'\0';
}

// False when the collection has failed.
bool CollectInterface(const WlanClient& client, const WLAN_INTERFACE_INFO& interface_info, bool is_first) {
  LogInterface(interface_info.InterfaceGuid);
  const bool is_connected = NumberIn(interface_info.isState) == wlan_interface_state_connected;
  if (is_connected || is_first) {
    StoreCardName(interface_info.strInterfaceDescription);
    g_wifi.connected = is_connected ? 1 : 0;
  }
  if (!is_connected) return true;
  if (ConnectionType() == kConnectionWifi) CollectSurroundings(client, interface_info.InterfaceGuid);
  return CollectLink(client, interface_info.InterfaceGuid);
}

bool CollectInterfaces() {
  const auto client = WlanClient::Open();
  if (!client) {
    LogFailure("WlanOpenHandle failed with error:", client.error());
    return false;
  }
  const auto interfaces = client->Interfaces();
  if (!interfaces) {
    LogFailure("WlanEnumInterfaces failed with error:", interfaces.error());
    return false;
  }
  const DWORD count = *interfaces ? interfaces->get()->dwNumberOfItems : 0;
  for (DWORD i = 0; i < count; ++i) {
    if (!CollectInterface(*client, interfaces->get()->InterfaceInfo[i], i == 0)) return false;
  }
  return true;
}

void Collect() noexcept {
  LogInfo("RF_ReadWifi_Info Start");
  g_wifi.collected = Guarded("RF_ReadWifi_Info", false, CollectInterfaces);
  if (g_wifi.collected) {
    LogInfo("RF_ReadWifi_Info End");
    return;
  }
  StoreCardName(L"" VEXA_COLLECT_FAILED_TEXT);
  g_wifi.connected = g_wifi.rssi_dbm = g_wifi.channel = g_wifi.max_rate_mbps = VEXA_COLLECT_FAILED;
  // Short enough to need no memory.
  g_wifi.phy_mode = g_wifi.ap_mac = VEXA_COLLECT_FAILED_TEXT;
}

}  // namespace

const WifiSnapshot& Wifi(const char* uncollected_line) noexcept {
  if (!g_wifi.collected) {
    LogInfo("%s", uncollected_line);
    Collect();
  }
  return g_wifi;
}

std::wstring_view WifiAdapterName() { return Wifi("[RF] RF_WiFiCardName FLAG FALSE").card_name; }

}  // namespace vexa
