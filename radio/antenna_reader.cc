// The libraries are the vendors' own and not part of the system: they are loaded by absolute path only, and what they
// answer is bytes of a length that is checked. The functions' parameters and the records are this library's reading of
// them.
#include "radio/antenna_reader.h"

#include <array>
#include <cstring>
#include <optional>
#include <string>

#include "frame/handles.h"
#include "frame/line.h"
#include "frame/log.h"
#include "frame/present_device.h"
#include "radio/antenna_records.h"

namespace vexa {
namespace {

using Library = Owner<HMODULE, FreeLibrary>;

// The system waits for the component to have gathered its statistics.
constexpr DWORD kIntelSettleMs = 1000;
// A software component: its hardware id begins with "SWC", but the enumerator of its device is SWD.
constexpr wchar_t kIntelEnumerator[] = L"SWD";
constexpr wchar_t kIntelHardwareId[] = L"SWC\\VID_8086&PID_PIE&SID_0001";
constexpr wchar_t kIntelLibraryValue[] = L"LibraryPath";
using WifiGetAdapterList = uint32_t(void* list, uint32_t* size);  // 0: success; size: capacity in, length out
using WifiGetBSSConfigurationStatistics = uint32_t(const void* adapter, void* record, uint32_t* size);

constexpr wchar_t kRealtekFile[] = L"wlanCliDLL.dll";
constexpr uint32_t kStatisticsOid = 0xFFEDD012;
using DLL_findRealtekWlanNics = BOOL(uint32_t* count);
using DLL_QueryOid = BOOL(uint32_t oid, void* result, uint32_t capacity, uint32_t* size);

template <typename Function>
Function* Resolve(const Library& library, const char* name) {
  return reinterpret_cast<Function*>(GetProcAddress(library.get(), name));
}

bool IsAbsolute(std::wstring_view path) {
  return path.size() > 3 && path[1] == L':' && path[2] == L'\\' && path.find(L'/') == path.npos &&
         path.find(L"..") == path.npos;
}

// From its own folder and the system's only.
Library Load(const std::wstring& path) {
  if (!IsAbsolute(path)) return {};
  return Library(
      LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32));
}

// A record of a vendor's library, as long as the library says; nothing when it says that it wrote more than there is
// room for.
template <size_t kCapacity>
struct Record {
  [[nodiscard]] Bytes bytes() const { return size > kCapacity ? Bytes() : Bytes(data.data(), size); }

  std::array<uint8_t, kCapacity> data{};
  uint32_t size = kCapacity;
};

std::wstring IntelLibraryPath(const PresentDevice& component) {
  const RegistryKey key = component.OpenKey();
  wchar_t path[MAX_PATH] = {};
  DWORD size = sizeof path - sizeof path[0];
  DWORD type = REG_NONE;
  if (!key || RegQueryValueExW(key.get(), kIntelLibraryValue, nullptr, &type, reinterpret_cast<BYTE*>(path), &size) !=
                  ERROR_SUCCESS) {
    return {};
  }
  return type == REG_SZ ? path : L"";
}

AntennaReadings ReadIntel(const PresentDevice& component, const GUID& interface_id, const MacAddress& bssid) {
  const Library library = Load(IntelLibraryPath(component));
  if (!library) return {};
  LogInfo("Get main_rssi_final and aux_rssi_final from Intel API.");
  Sleep(kIntelSettleMs);
  auto* const list_adapters = Resolve<WifiGetAdapterList>(library, "WifiGetAdapterList");
  auto* const read_statistics =
      Resolve<WifiGetBSSConfigurationStatistics>(library, "WifiGetBSSConfigurationStatistics");
  if (list_adapters == nullptr || read_statistics == nullptr) return {};

  AdapterId adapter;
  static_assert(sizeof adapter == sizeof interface_id);
  std::memcpy(adapter.data(), &interface_id, sizeof adapter);
  Record<1024> adapters;
  if (list_adapters(adapters.data.data(), &adapters.size) != 0) return {};
  if (!AdapterListHolds(adapters.bytes(), adapter)) return {};
  Record<256> statistics;
  if (read_statistics(adapter.data(), statistics.data.data(), &statistics.size) != 0) return {};
  return ReadBssStatistics(statistics.bytes(), bssid);
}

// Beside the host program; relative, and so not loaded, when the system does not tell where that is.
std::wstring RealtekLibraryPath() {
  constexpr DWORD kLongestPath = 32768;
  std::wstring path(kLongestPath, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), kLongestPath));
  path.resize(path.find_last_of(L"\\/") + 1);
  return path + kRealtekFile;
}

bool HasRealtekAdapter(const Library& library) {
  auto* const find_adapters = Resolve<DLL_findRealtekWlanNics>(library, "DLL_findRealtekWlanNics");
  if (find_adapters == nullptr) {
    LogInfo("[DLL_findRealtekWlanNics] Get rtk api fail.");
    return false;
  }
  uint32_t count = 0;
  if (!find_adapters(&count)) {
    LogInfo("[DriverBinding] No realtek network interface controllers.");
    return false;
  }
  if (count == 0) LogInfo("[DriverBinding] Error: adapter count = 0.");
  return count != 0;
}

AntennaReadings ReadRealtek() {
  const std::wstring path = RealtekLibraryPath();
  const Library library = Load(path);
  if (!library) {
    LogBuilt(TraceLevel::kVerbose, [&] { return WideLine(L"Load rtk dll fail. Path: ", path); });
    return {};
  }
  if (!HasRealtekAdapter(library)) return {};
  auto* const query = Resolve<DLL_QueryOid>(library, "DLL_QueryOid");
  if (query == nullptr) {
    LogInfo("[DLL_QueryOid] Get rtk api fail.");
    return {};
  }
  Record<256> statistics;
  if (!query(kStatisticsOid, statistics.data.data(), static_cast<uint32_t>(statistics.data.size()), &statistics.size)) {
    LogInfo("[QueryWlanStatisticInfo] Error: OID Query failed!!");
    return {};
  }
  LogInfo("Get main_rssi_final and aux_rssi_final from RTK API");
  return ReadStatisticsOid(statistics.bytes());
}

}  // namespace

void ReadAntennas(const GUID& interface_id, const MacAddress& bssid, std::optional<int32_t> access_point_dbm,
                  int32_t& main_dbm, int32_t& aux_dbm) {
  if (access_point_dbm) {
    LogInfo("Get main_rssi_final and aux_rssi_final from connectAPEntry->lRssi");
    main_dbm = aux_dbm = *access_point_dbm;
  }
  const std::optional<PresentDevice> intel = PresentDevice::Find(kIntelEnumerator, kIntelHardwareId);
  const AntennaReadings readings = intel ? ReadIntel(*intel, interface_id, bssid) : ReadRealtek();
  main_dbm = readings.main_dbm.value_or(main_dbm);
  aux_dbm = readings.aux_dbm.value_or(aux_dbm);
  if (!access_point_dbm) return;
  if (!readings.main_dbm) LogInfo("Get main_rssi_final from connectAPEntry->lRssi");
  if (!readings.aux_dbm) LogInfo("Get aux_rssi_final from connectAPEntry->lRssi");
}

}  // namespace vexa
