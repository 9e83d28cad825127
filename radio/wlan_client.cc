#include "radio/wlan_client.h"

#include <atomic>
#include <cstddef>
#include <cstring>

#include "frame/optional_library.h"
#include "radio/bss_list.h"

namespace vexa {
namespace {

constexpr DWORD kClientVersion = 2;  // Windows Vista and later

static_assert(offsetof(WLAN_BSS_LIST, wlanBssEntries) == bss_layout::kEntries);
static_assert(sizeof(WLAN_BSS_ENTRY) == bss_layout::kEntrySize);
static_assert(offsetof(WLAN_BSS_ENTRY, dot11Ssid.uSSIDLength) == bss_layout::kSsidLength);
static_assert(offsetof(WLAN_BSS_ENTRY, dot11Ssid.ucSSID) == bss_layout::kSsid);
static_assert(offsetof(WLAN_BSS_ENTRY, dot11Bssid) == bss_layout::kBssid);
static_assert(offsetof(WLAN_BSS_ENTRY, lRssi) == bss_layout::kRssi);
static_assert(offsetof(WLAN_BSS_ENTRY, ulChCenterFrequency) == bss_layout::kFrequency);
static_assert(offsetof(WLAN_BSS_ENTRY, ulIeOffset) == bss_layout::kElementsOffset);
static_assert(offsetof(WLAN_BSS_ENTRY, ulIeSize) == bss_layout::kElementsSize);
static_assert(DOT11_SSID_MAX_LENGTH == kMaxSsidLength);

OptionalLibrary g_wlan_library(L"wlanapi.dll");
std::atomic<decltype(WlanFreeMemory)*> g_free_memory = nullptr;

// Calls a function of the library. Without it, answers the error that the search for it left.
template <typename Function, typename... Arguments>
DWORD Call(const char* name, Arguments... arguments) {
  auto* const function = g_wlan_library.Find<Function>(name);
  return function == nullptr ? GetLastError() : function(arguments...);
}

template <typename Value>
std::optional<Value> Query(HANDLE client, const GUID& interface_id, WLAN_INTF_OPCODE code) {
  DWORD size = 0;
  void* data = nullptr;
  const DWORD error = Call<decltype(WlanQueryInterface)>("WlanQueryInterface", client, &interface_id, code, nullptr,
                                                         &size, &data, nullptr);
  const Owner<void*, FreeWlanMemory> memory(data);
  if (error != ERROR_SUCCESS || !memory || size < sizeof(Value)) return std::nullopt;
  Value value;
  std::memcpy(&value, data, sizeof value);
  return value;
}

}  // namespace

void FreeWlanMemory(void* memory) noexcept {
  if (auto* const free = g_free_memory.load(std::memory_order_acquire)) free(memory);
}

std::expected<WlanClient, DWORD> WlanClient::Open() {
  // What can't be given back is not asked for.
  auto* const free = g_wlan_library.Find<decltype(WlanFreeMemory)>("WlanFreeMemory");
  if (free == nullptr) return std::unexpected(GetLastError());
  g_free_memory.store(free, std::memory_order_release);
  DWORD version = 0;
  HANDLE handle = nullptr;
  const DWORD error = Call<decltype(WlanOpenHandle)>("WlanOpenHandle", kClientVersion, nullptr, &version, &handle);
  if (error != ERROR_SUCCESS) return std::unexpected(error);
  return WlanClient(handle);
}

std::expected<WlanInterfaces, DWORD> WlanClient::Interfaces() const {
  WlanInterfaces interfaces;
  const DWORD error = Call<decltype(WlanEnumInterfaces)>("WlanEnumInterfaces", handle_, nullptr, interfaces.put());
  if (error != ERROR_SUCCESS) return std::unexpected(error);
  return interfaces;
}

std::optional<WLAN_ASSOCIATION_ATTRIBUTES> WlanClient::Connection(const GUID& interface_id) const {
  return Query<WLAN_CONNECTION_ATTRIBUTES>(handle_, interface_id, wlan_intf_opcode_current_connection)
      .transform([](const WLAN_CONNECTION_ATTRIBUTES& connection) { return connection.wlanAssociationAttributes; });
}

std::optional<uint32_t> WlanClient::Channel(const GUID& interface_id) const {
  return Query<uint32_t>(handle_, interface_id, wlan_intf_opcode_channel_number);
}

std::expected<WlanBssList, DWORD> WlanClient::AccessPoints(const GUID& interface_id, const DOT11_SSID* ssid,
                                                           bool security_enabled) const {
  WlanBssList list;
  const DWORD error = Call<decltype(WlanGetNetworkBssList)>(
      "WlanGetNetworkBssList", handle_, &interface_id, const_cast<DOT11_SSID*>(ssid), dot11_BSS_type_infrastructure,
      security_enabled ? TRUE : FALSE, nullptr, list.put());
  if (error != ERROR_SUCCESS) return std::unexpected(error);
  return list;
}

Bytes BytesOf(const WlanBssList& list) noexcept {
  if (!list) return {};
  const auto* const bytes = reinterpret_cast<const uint8_t*>(list.get());
  DWORD size = 0;  // the first field
  std::memcpy(&size, bytes, sizeof size);
  return {bytes, size};
}

}  // namespace vexa
