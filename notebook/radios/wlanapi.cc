// wlanapi.dll of the simulated notebook: the calls of the WLAN API by which a program reads the link and the list of
// access points.
#include <windows.h>

#include <wlanapi.h>

#include <algorithm>
#include <cstring>
#include <set>

#include "guarded_memory.h"
#include "notebook.h"

namespace {

using namespace radios;

constexpr uint32_t kNegotiatedVersion = 2;
constexpr uint16_t kBeaconPeriod = 100;
constexpr uint16_t kInfrastructure = 0x0001;  // bits of the capability information, IEEE 802.11 section 9.4.1.4
constexpr uint16_t kPrivacy = 0x0010;

Notebook& WlanNotebook() {
  static Notebook& notebook = *new Notebook(L"wlanapi-counts.json");
  return notebook;
}

// Only within a call.
GuardedMemory& Memory() {
  static GuardedMemory& memory = *new GuardedMemory;
  return memory;
}
std::set<HANDLE>& OpenHandles() {
  static auto& handles = *new std::set<HANDLE>;
  return handles;
}

void* Allocate(size_t size) {
  void* memory = Memory().Allocate(size);
  if (memory != nullptr) WlanNotebook().Count("allocated");
  return memory;
}

bool IsOpen(HANDLE client) {
  if (OpenHandles().contains(client)) return true;
  WlanNotebook().Count("calls with a bad handle");
  return false;
}

const WlanInterface* Find(const Model& model, const GUID& guid) {
  if (!model.wlan) return nullptr;
  const auto found = std::ranges::find_if(*model.wlan, [&guid](const WlanInterface& entry) {
    const GUID own = WindowsGuid(entry.guid);
    return std::memcmp(&own, &guid, sizeof guid) == 0;
  });
  return found == model.wlan->end() ? nullptr : &*found;
}

DOT11_SSID WlanSsid(const Ssid& ssid) {
  DOT11_SSID converted{.uSSIDLength = ssid.told_length, .ucSSID = {}};
  std::ranges::copy(ssid.bytes, converted.ucSSID);
  return converted;
}

bool IsSameSsid(const Ssid& ssid, const DOT11_SSID& other) {
  return other.uSSIDLength == ssid.bytes.size() && std::equal(ssid.bytes.begin(), ssid.bytes.end(), other.ucSSID);
}

WLAN_CONNECTION_ATTRIBUTES AttributesOf(const Connection& connection) {
  WLAN_CONNECTION_ATTRIBUTES attributes{};
  attributes.isState = wlan_interface_state_connected;
  attributes.wlanConnectionMode = wlan_connection_mode_profile;
  CopyName(attributes.strProfileName, connection.profile);
  WLAN_ASSOCIATION_ATTRIBUTES& association = attributes.wlanAssociationAttributes;
  association.dot11Ssid = WlanSsid(connection.ssid);
  association.dot11BssType = dot11_BSS_type_infrastructure;
  std::ranges::copy(connection.bssid, association.dot11Bssid);
  association.dot11PhyType = static_cast<DOT11_PHY_TYPE>(connection.phy);
  association.wlanSignalQuality = connection.signal_quality;
  association.ulRxRate = association.ulTxRate = connection.rate_kbps;
  attributes.wlanSecurityAttributes.bSecurityEnabled = TRUE;
  return attributes;
}

DWORD Deliver(const void* data, size_t size, DWORD* told_size, void** answer) {
  *answer = Allocate(size);
  if (*answer == nullptr) return ERROR_NOT_ENOUGH_MEMORY;
  std::memcpy(*answer, data, size);
  *told_size = static_cast<DWORD>(size);
  return ERROR_SUCCESS;
}

DWORD Query(const WlanInterface& wlan, WLAN_INTF_OPCODE opcode, DWORD* size, void** answer) {
  if (opcode == wlan_intf_opcode_current_connection) {
    if (!wlan.connection) return ERROR_INVALID_STATE;
    const WLAN_CONNECTION_ATTRIBUTES attributes = AttributesOf(*wlan.connection);
    const size_t whole = sizeof attributes;
    return Deliver(&attributes, std::min<size_t>(wlan.connection->answer_size.value_or(whole), whole), size, answer);
  }
  if (opcode == wlan_intf_opcode_channel_number) {
    if (!wlan.channel) return ERROR_INVALID_STATE;
    return Deliver(&*wlan.channel, sizeof *wlan.channel, size, answer);
  }
  return ERROR_NOT_SUPPORTED;
}

// Without a name the other two conditions don't count, as the real call has it.
bool Matches(const Network& network, const DOT11_SSID* ssid, DOT11_BSS_TYPE type, BOOL security) {
  if (ssid == nullptr) return true;
  return IsSameSsid(network.ssid, *ssid) && type != dot11_BSS_type_independent && network.security == (security != 0);
}

WLAN_BSS_ENTRY EntryOf(const Network& network, size_t elements_at) {
  WLAN_BSS_ENTRY entry{};
  entry.dot11Ssid = WlanSsid(network.ssid);
  std::ranges::copy(network.bssid, entry.dot11Bssid);
  entry.dot11BssType = dot11_BSS_type_infrastructure;
  entry.dot11BssPhyType = static_cast<DOT11_PHY_TYPE>(network.phy);
  entry.lRssi = network.rssi_dbm;
  entry.uLinkQuality = network.link_quality;
  entry.bInRegDomain = TRUE;
  entry.usBeaconPeriod = kBeaconPeriod;
  entry.usCapabilityInformation = kInfrastructure | (network.security ? kPrivacy : 0);
  entry.ulChCenterFrequency = network.frequency_khz;
  entry.ulIeOffset = network.told_offset.value_or(static_cast<uint32_t>(elements_at));
  entry.ulIeSize = network.told_size.value_or(static_cast<uint32_t>(network.elements.size()));
  return entry;
}

// The entries, then the elements of all of them; offsets count from the entry's beginning.
DWORD ListNetworks(const WlanInterface& wlan, const std::vector<const Network*>& networks, WLAN_BSS_LIST** list) {
  const size_t elements_begin = offsetof(WLAN_BSS_LIST, wlanBssEntries) + networks.size() * sizeof(WLAN_BSS_ENTRY);
  size_t size = elements_begin;
  for (const Network* network : networks) size += network->elements.size();
  auto* bytes = static_cast<uint8_t*>(Allocate(size));
  if (bytes == nullptr) return ERROR_NOT_ENOUGH_MEMORY;
  size_t elements_at = elements_begin;
  for (size_t i = 0; i < networks.size(); ++i) {
    const size_t entry_at = offsetof(WLAN_BSS_LIST, wlanBssEntries) + i * sizeof(WLAN_BSS_ENTRY);
    const WLAN_BSS_ENTRY entry = EntryOf(*networks[i], elements_at - entry_at);
    std::memcpy(bytes + entry_at, &entry, sizeof entry);
    std::ranges::copy(networks[i]->elements, bytes + elements_at);
    elements_at += networks[i]->elements.size();
  }
  *list = reinterpret_cast<WLAN_BSS_LIST*>(bytes);
  (*list)->dwNumberOfItems = wlan.told_count.value_or(static_cast<uint32_t>(networks.size()));
  (*list)->dwTotalSize = wlan.told_size.value_or(static_cast<uint32_t>(size));
  return ERROR_SUCCESS;
}

DWORD ListInterfaces(const std::vector<WlanInterface>& interfaces, WLAN_INTERFACE_INFO_LIST** list) {
  const size_t size = sizeof(WLAN_INTERFACE_INFO_LIST) + interfaces.size() * sizeof(WLAN_INTERFACE_INFO);
  *list = static_cast<WLAN_INTERFACE_INFO_LIST*>(Allocate(size));
  if (*list == nullptr) return ERROR_NOT_ENOUGH_MEMORY;
  (*list)->dwNumberOfItems = static_cast<DWORD>(interfaces.size());
  auto* entry = reinterpret_cast<WLAN_INTERFACE_INFO*>(*list + 1);
  for (const WlanInterface& wlan : interfaces) {
    entry->InterfaceGuid = WindowsGuid(wlan.guid);
    CopyName(entry->strInterfaceDescription, wlan.name);
    entry->isState = static_cast<WLAN_INTERFACE_STATE>(wlan.state);
    ++entry;
  }
  return ERROR_SUCCESS;
}

}  // namespace

extern "C" {

DWORD WINAPI WlanOpenHandle(DWORD version, PVOID reserved, PDWORD negotiated, PHANDLE client) {
  return WlanNotebook().Run("WlanOpenHandle", [=](const Model& model) -> DWORD {
    if (version == 0 || reserved != nullptr || negotiated == nullptr || client == nullptr) {
      return ERROR_INVALID_PARAMETER;
    }
    if (!model.wlan) return ERROR_SERVICE_NOT_ACTIVE;
    static uintptr_t opened = 0;
    *client = reinterpret_cast<HANDLE>(++opened);
    *negotiated = std::min<DWORD>(version, kNegotiatedVersion);
    OpenHandles().insert(*client);
    WlanNotebook().Count("handles opened");
    return ERROR_SUCCESS;
  });
}

DWORD WINAPI WlanCloseHandle(HANDLE client, PVOID) {
  return WlanNotebook().Run("WlanCloseHandle", [=](const Model&) -> DWORD {
    if (!IsOpen(client)) return ERROR_INVALID_HANDLE;
    OpenHandles().erase(client);
    WlanNotebook().Count("handles closed");
    return ERROR_SUCCESS;
  });
}

DWORD WINAPI WlanEnumInterfaces(HANDLE client, PVOID reserved, PWLAN_INTERFACE_INFO_LIST* list) {
  return WlanNotebook().Run("WlanEnumInterfaces", [=](const Model& model) -> DWORD {
    if (reserved != nullptr || list == nullptr) return ERROR_INVALID_PARAMETER;
    if (!IsOpen(client)) return ERROR_INVALID_HANDLE;
    return model.wlan ? ListInterfaces(*model.wlan, list) : DWORD{ERROR_SERVICE_NOT_ACTIVE};
  });
}

DWORD WINAPI WlanQueryInterface(HANDLE client, const GUID* guid, WLAN_INTF_OPCODE opcode, PVOID reserved, PDWORD size,
                                PVOID* data, PWLAN_OPCODE_VALUE_TYPE type) {
  return WlanNotebook().Run("WlanQueryInterface", static_cast<uint32_t>(opcode), [=](const Model& model) -> DWORD {
    if (guid == nullptr || reserved != nullptr || size == nullptr || data == nullptr) return ERROR_INVALID_PARAMETER;
    if (!IsOpen(client)) return ERROR_INVALID_HANDLE;
    const WlanInterface* wlan = Find(model, *guid);
    if (wlan == nullptr) return ERROR_NOT_FOUND;
    if (type != nullptr) *type = wlan_opcode_value_type_query_only;
    return Query(*wlan, opcode, size, data);
  });
}

DWORD WINAPI WlanGetNetworkBssList(HANDLE client, const GUID* guid, const PDOT11_SSID ssid, DOT11_BSS_TYPE type,
                                   WINBOOL security, PVOID reserved, PWLAN_BSS_LIST* list) {
  return WlanNotebook().Run("WlanGetNetworkBssList", [=](const Model& model) -> DWORD {
    if (guid == nullptr || reserved != nullptr || list == nullptr) return ERROR_INVALID_PARAMETER;
    if (!IsOpen(client)) return ERROR_INVALID_HANDLE;
    const WlanInterface* wlan = Find(model, *guid);
    if (wlan == nullptr) return ERROR_NOT_FOUND;
    std::vector<const Network*> networks;
    for (const Network& network : wlan->networks) {
      if (Matches(network, ssid, type, security)) networks.push_back(&network);
    }
    return ListNetworks(*wlan, networks, list);
  });
}

VOID WINAPI WlanFreeMemory(PVOID memory) {
  WlanNotebook().Run("WlanFreeMemory", [=](const Model&) -> DWORD {
    WlanNotebook().Count(Memory().Free(memory) ? "freed" : "freed what was not allocated");
    return ERROR_SUCCESS;
  });
}

}  // extern "C"
