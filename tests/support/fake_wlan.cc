#include "tests/support/fake_wlan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <cwchar>

namespace vexa::test {
namespace {

FakeWlan* g_fake = nullptr;

// A real module, so that nothing bad comes of it when the library asks it again after the test.
HMODULE Module() { return GetModuleHandleW(nullptr); }
HANDLE ClientHandle(int number) {
  return reinterpret_cast<HANDLE>(uintptr_t{0xC11E0000} + static_cast<uintptr_t>(number));
}

template <typename Value>
void Append(std::string& bytes, const Value& value) {
  bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

void CopySsid(const std::string& name, DOT11_SSID& ssid) {
  ssid.uSSIDLength = static_cast<ULONG>(name.size());
  std::memcpy(ssid.ucSSID, name.data(), std::min<size_t>(name.size(), sizeof ssid.ucSSID));
}

std::string ListOf(const std::vector<FakeAccessPoint>& access_points) {
  std::string entries, elements;
  for (size_t i = 0; i < access_points.size(); ++i) {
    const FakeAccessPoint& point = access_points[i];
    WLAN_BSS_ENTRY entry{};
    CopySsid(point.ssid, entry.dot11Ssid);
    std::memcpy(entry.dot11Bssid, point.bssid.data(), point.bssid.size());
    entry.lRssi = point.rssi_dbm;
    entry.ulChCenterFrequency = point.frequency_khz;
    entry.ulIeOffset = static_cast<ULONG>((access_points.size() - i) * sizeof entry + elements.size());
    entry.ulIeSize = static_cast<ULONG>(point.elements.size());
    elements += point.elements;
    Append(entries, entry);
  }
  const DWORD header[] = {static_cast<DWORD>(8 + entries.size() + elements.size()),
                          static_cast<DWORD>(access_points.size())};
  std::string list;
  Append(list, header);
  return list + entries + elements;
}

}  // namespace

GUID WlanInterfaceId(size_t index) { return {static_cast<DWORD>(0xA0 + index), 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}}; }

struct FakeWlanHook {
  static const FakeWlanInterface& Interface(HANDLE client, const GUID* id) {
    EXPECT_EQ(client, ClientHandle(g_fake->open_clients));
    const GUID known = WlanInterfaceId(id->Data1 - WlanInterfaceId(0).Data1);
    EXPECT_EQ(std::memcmp(id, &known, sizeof known), 0);
    return g_fake->interfaces.at(id->Data1 - WlanInterfaceId(0).Data1);
  }

  static DWORD WINAPI Open(DWORD version, PVOID, PDWORD negotiated, PHANDLE client) {
    if (g_fake->script_.Fails("WlanOpenHandle", std::to_string(version))) return GetLastError();
    *negotiated = version;
    *client = ClientHandle(++g_fake->open_clients);
    return ERROR_SUCCESS;
  }

  static DWORD WINAPI Enum(HANDLE client, PVOID, PWLAN_INTERFACE_INFO_LIST* list) {
    EXPECT_EQ(client, ClientHandle(g_fake->open_clients));
    if (g_fake->script_.Fails("WlanEnumInterfaces")) return GetLastError();
    *list = nullptr;
    if (g_fake->null_interfaces) return ERROR_SUCCESS;
    std::string bytes;
    const DWORD header[] = {static_cast<DWORD>(g_fake->interfaces.size()), 0};
    Append(bytes, header);
    for (size_t i = 0; i < g_fake->interfaces.size(); ++i) {
      const FakeWlanInterface& adapter = g_fake->interfaces[i];
      WLAN_INTERFACE_INFO info{.InterfaceGuid = WlanInterfaceId(i), .isState = adapter.state};
      std::wmemcpy(info.strInterfaceDescription, adapter.description.data(),
                   std::min(adapter.description.size(), std::size(info.strInterfaceDescription)));
      Append(bytes, info);
    }
    *list = static_cast<PWLAN_INTERFACE_INFO_LIST>(g_fake->HandOut(bytes));
    return ERROR_SUCCESS;
  }

  static DWORD WINAPI Query(HANDLE client, const GUID* id, WLAN_INTF_OPCODE code, PVOID, PDWORD size, PVOID* data,
                            PWLAN_OPCODE_VALUE_TYPE) {
    const FakeWlanInterface& adapter = Interface(client, id);
    const bool is_channel = code == wlan_intf_opcode_channel_number;
    if (!is_channel) EXPECT_EQ(code, wlan_intf_opcode_current_connection);
    if (g_fake->script_.Fails(is_channel ? "channel" : "connection")) return GetLastError();
    std::string bytes;
    if (is_channel) {
      Append(bytes, adapter.channel);
      bytes.resize(std::min<size_t>(bytes.size(), g_fake->channel_bytes));
    } else {
      WLAN_CONNECTION_ATTRIBUTES attributes{};
      CopySsid(adapter.ssid, attributes.wlanAssociationAttributes.dot11Ssid);
      std::memcpy(attributes.wlanAssociationAttributes.dot11Bssid, adapter.bssid.data(), adapter.bssid.size());
      attributes.wlanAssociationAttributes.dot11PhyType = static_cast<DOT11_PHY_TYPE>(adapter.phy_type);
      Append(bytes, attributes);
      bytes.resize(std::min<size_t>(bytes.size(), g_fake->connection_bytes));
    }
    *size = static_cast<DWORD>(bytes.size());
    *data = bytes.empty() ? nullptr : g_fake->HandOut(bytes);
    return ERROR_SUCCESS;
  }

  static DWORD WINAPI BssListOf(HANDLE client, const GUID* id, const PDOT11_SSID ssid, DOT11_BSS_TYPE type,
                                WINBOOL secured, PVOID, PWLAN_BSS_LIST* list) {
    const FakeWlanInterface& adapter = Interface(client, id);
    EXPECT_EQ(type, dot11_BSS_type_infrastructure);
    const std::string name =
        ssid == nullptr ? ""
                        : std::string(reinterpret_cast<const char*>(ssid->ucSSID), std::min(ssid->uSSIDLength, 32ul));
    // Recorded as what it asks for: the own network's open or secured access points, or all there are.
    const char* const wanted = ssid == nullptr ? "all" : secured ? "own secured" : "own open";
    if (ssid == nullptr) EXPECT_TRUE(secured);
    if (g_fake->script_.Fails("WlanGetNetworkBssList", wanted)) return GetLastError();
    *list = nullptr;
    if (g_fake->null_bss_lists) return ERROR_SUCCESS;
    std::vector<FakeAccessPoint> found;
    for (const FakeAccessPoint& point : adapter.access_points) {
      if (ssid == nullptr || (point.ssid == name && point.secured == (secured != FALSE))) found.push_back(point);
    }
    *list = static_cast<PWLAN_BSS_LIST>(g_fake->HandOut(ListOf(found)));
    return ERROR_SUCCESS;
  }

  static VOID WINAPI Free(PVOID memory) { EXPECT_EQ(g_fake->memory_.erase(memory), 1u) << "freed without being open"; }

  static HMODULE WINAPI Load(LPCWSTR name, HANDLE file, DWORD flags) {
    if (std::wcscmp(name, L"wlanapi.dll") != 0) {
      return g_fake->load_.Original<HMODULE WINAPI(LPCWSTR, HANDLE, DWORD)>()(name, file, flags);
    }
    EXPECT_EQ(flags, DWORD{LOAD_LIBRARY_SEARCH_SYSTEM32});
    if (!g_fake->missing_library) return Module();
    SetLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
  }
  static FARPROC WINAPI Find(HMODULE module, LPCSTR name) {
    const std::pair<std::string, void*> functions[] = {{"WlanOpenHandle", reinterpret_cast<void*>(Open)},
                                                       {"WlanEnumInterfaces", reinterpret_cast<void*>(Enum)},
                                                       {"WlanQueryInterface", reinterpret_cast<void*>(Query)},
                                                       {"WlanGetNetworkBssList", reinterpret_cast<void*>(BssListOf)},
                                                       {"WlanFreeMemory", reinterpret_cast<void*>(Free)}};
    if (module != Module()) return g_fake->find_.Original<FARPROC WINAPI(HMODULE, LPCSTR)>()(module, name);
    for (const auto& [function, address] : functions) {
      if (function == name && !g_fake->missing_functions.contains(name)) return reinterpret_cast<FARPROC>(address);
    }
    SetLastError(ERROR_PROC_NOT_FOUND);
    return nullptr;
  }
};

FakeWlan::FakeWlan(CallScript& script)
    : script_(script), load_("LoadLibraryExW", FakeWlanHook::Load), find_("GetProcAddress", FakeWlanHook::Find) {
  g_fake = this;
  network.list = {{71, 1, true, true}};
}

FakeWlan::~FakeWlan() {
  EXPECT_EQ(open_memory(), 0u) << "never freed";
  g_fake = nullptr;
}

void* FakeWlan::HandOut(const std::string& bytes) {
  auto buffer = std::make_unique<GuardedBuffer>(bytes.size());
  std::memcpy(buffer->data(), bytes.data(), bytes.size());
  void* const memory = buffer->data();
  memory_[memory] = std::move(buffer);
  return memory;
}

}  // namespace vexa::test
