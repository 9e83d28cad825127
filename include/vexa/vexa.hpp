// VexaWinIO64.dll for C++23: loaded by its absolute path, started and stopped by scope, and every answer either a value
// or the reason why there is none.
//
// Made by interface/generate.py from interface/exports.json and interface/templates/vexa.hpp: change those.
//
//   auto library = vexa::Library::Load(LR"(C:\Program Files\Vexa\VexaWinIO64.dll)");
//   if (!library) return library.error().code;
//   auto session = library->Start();                                  // InitializeWinIo; its end is ShutdownWinIo
//   if (auto charge = library->BatteryHealthyTable_Rsoc()) std::printf("%u %%\n", *charge);
//   else std::puts(vexa::ReasonName(charge.error()));
//
// A Library may be copied and used from several threads; each export says in its C header which threads may call it and
// how long it may wait. An answer that may be a true reading or a failure (0 of a battery value, for instance) is
// cross-checked by further calls: the pack voltage or temperature and the version of the EC's healthy table.
#ifndef VEXA_VEXA_HPP_
#define VEXA_VEXA_HPP_

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cwctype>
#include <expected>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "vexa.h"

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#endif

namespace vexa {

// Why there is no value.
enum class Reason {
  kNoAnswer,  // asked, and the source did not answer
  kUnsupported,  // this machine, firmware or EC has no such value
  kNotPresent,  // the thing that it tells about is not there
  kNotCollected,  // nothing has been collected
  kRefused,  // the action was not carried out
  kMissingExport,  // this version of the library has no such export
};

constexpr const char* ReasonName(Reason reason) {
  switch (reason) {
    case Reason::kNoAnswer: return "no_answer";
    case Reason::kUnsupported: return "unsupported";
    case Reason::kNotPresent: return "not_present";
    case Reason::kNotCollected: return "not_collected";
    case Reason::kRefused: return "refused";
    case Reason::kMissingExport: return "missing_export";
  }
  return "";
}

template <typename T>
using Answer = std::expected<T, Reason>;

// Texts of the two buffers of WMIGetHDDUsage and WMIGetSSDUsage.
struct DiskUsage {
  std::wstring free_bytes;
  std::wstring serials;
};

// An export as the module gives it; null: the library lacks it.
using AnyFunction = void (*)();

// What is known of an export besides its answers.
struct ExportFacts {
  const char* name;
  uint32_t least_table_version;  // of the EC's healthy table: below it there is no value; 0: no table is needed
  bool on_arm64;                 // ARM64 machines have a source for it
  bool cross_checked;            // an answer that may be a reading or a failure costs further calls
};

// In the order of the names.
inline constexpr std::array<ExportFacts, 180> kExports = {{
    {"Adapter_Clear_Charger_Data", 14, false, false},
    {"Adapter_Clear_Power_Data_Flag", 14, false, false},
    {"Adapter_Read_ChampionPort_Watt", 28, true, false},
    {"Adapter_Read_Charger_Information", 14, false, true},
    {"Adapter_Read_Charger_Interrupt", 14, false, true},
    {"Adapter_Read_Contract_PDO", 14, false, false},
    {"Adapter_Read_PDO", 14, false, false},
    {"Adapter_Read_PDO1", 14, false, false},
    {"Adapter_Read_PDO2", 14, false, false},
    {"Adapter_Read_PDO3", 14, false, false},
    {"Adapter_Read_PDO4", 14, false, false},
    {"Adapter_Read_PDO5", 14, false, false},
    {"Adapter_Read_PDO6", 14, false, false},
    {"Adapter_Read_PDO7", 14, false, false},
    {"Adapter_Read_PDO_Watt", 14, false, false},
    {"Adapter_Read_PD_ADO", 14, false, true},
    {"Adapter_Read_PD_Get_Emark_Other", 23, false, true},
    {"Adapter_Read_PD_Get_Emark_PID", 23, false, true},
    {"Adapter_Read_PD_Get_Emark_VID", 23, false, true},
    {"Adapter_Read_PD_Get_Emark_XID", 23, false, true},
    {"Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion", 14, false, true},
    {"Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion", 14, false, true},
    {"Adapter_Read_PD_Get_Source_Cap_Extend_PID", 14, false, false},
    {"Adapter_Read_PD_Get_Source_Cap_Extend_VID", 14, false, false},
    {"Adapter_Read_PD_Get_Source_Cap_Extend_XID", 14, false, false},
    {"Adapter_Read_PD_Get_Status_EventFlag", 14, false, true},
    {"Adapter_Read_PD_Get_Status_Temperature", 14, false, false},
    {"Adapter_Read_PD_IC_PN", 14, false, false},
    {"Adapter_Read_Power_Big_Data_Config", 14, false, true},
    {"Adapter_Read_Power_Data_Flag", 14, false, true},
    {"Adapter_Read_Standard_Watt", 28, true, false},
    {"Adapter_Read_Sufficient_Watt", 28, true, false},
    {"Adapter_Set_Notify_Control", 23, false, false},
    {"BatteryHealthyTable_ACStatus", 1, true, true},
    {"BatteryHealthyTable_BatteryError", 1, true, true},
    {"BatteryHealthyTable_BatteryInformation", 10, false, false},
    {"BatteryHealthyTable_CellVoltage1", 1, true, true},
    {"BatteryHealthyTable_CellVoltage2", 1, true, true},
    {"BatteryHealthyTable_CellVoltage3", 1, true, true},
    {"BatteryHealthyTable_CellVoltage4", 1, true, true},
    {"BatteryHealthyTable_ChargingCurrent", 1, false, true},
    {"BatteryHealthyTable_ChargingVoltage", 1, true, true},
    {"BatteryHealthyTable_Current", 1, true, true},
    {"BatteryHealthyTable_CycleCount", 1, true, true},
    {"BatteryHealthyTable_DesignVoltage", 1, true, true},
    {"BatteryHealthyTable_DeviceName", 1, true, false},
    {"BatteryHealthyTable_ECChipID", 0, false, false},
    {"BatteryHealthyTable_ECChipName", 0, false, false},
    {"BatteryHealthyTable_FullChargeCapacity", 1, true, true},
    {"BatteryHealthyTable_FullCharged", 1, false, true},
    {"BatteryHealthyTable_GaugeIC", 1, true, true},
    {"BatteryHealthyTable_LidStatus", 1, false, true},
    {"BatteryHealthyTable_ManufactureDate", 1, true, true},
    {"BatteryHealthyTable_ManufactureName", 1, true, false},
    {"BatteryHealthyTable_ManufactureNameBySMBus", 1, true, false},
    {"BatteryHealthyTable_PFStatus", 0, false, false},
    {"BatteryHealthyTable_PackageVoltage", 1, true, true},
    {"BatteryHealthyTable_ReadVendorType", 0, false, false},
    {"BatteryHealthyTable_ReadVersion", 0, false, false},
    {"BatteryHealthyTable_RemainingCapacity", 1, true, true},
    {"BatteryHealthyTable_Rsoc", 1, true, true},
    {"BatteryHealthyTable_SafetyStatus", 0, false, false},
    {"BatteryHealthyTable_SerialNumber", 1, true, true},
    {"BatteryHealthyTable_Temperature", 1, true, true},
    {"BatteryHealthyTable_TimeoutStatus", 1, false, true},
    {"EC_ReadEcChipId", 0, true, false},
    {"EC_ReadEcChipName", 0, true, false},
    {"EC_ReadEcFwRev", 0, true, false},
    {"EC_ReadProjectInformation", 0, false, false},
    {"GetDriverVersion", 0, false, false},
    {"GetInfVersion", 0, true, false},
    {"GetIoDllVersion", 0, true, false},
    {"GetRefCount", 0, false, false},
    {"GetUWPVersion", 0, true, false},
    {"HealthyTable_FanCounts", 1, true, false},
    {"HealthyTable_FanRPM", 1, true, false},
    {"HealthyTable_GetFanTestMode", 1, true, false},
    {"HealthyTable_Read_BoardTS0L_Temperature", 1, true, false},
    {"HealthyTable_Read_Cpu_Temperature", 1, true, false},
    {"HealthyTable_Read_Fan", 1, true, false},
    {"HealthyTable_SetFanIndex", 1, false, false},
    {"HealthyTable_SetFanPwmDuty", 1, false, false},
    {"HealthyTable_SetFanTestMode", 1, true, false},
    {"InitializeWinIo", 0, true, false},
    {"Power_PD_Charging", 8, false, true},
    {"Power_Read_ACDCMode", 0, true, false},
    {"Power_Set_Monitor_PowerDropped", 19, false, false},
    {"Quillo_Read_Cpu_Temperature", 1, true, false},
    {"Quillo_Read_Fan", 1, true, false},
    {"RF_AP_MAC", 0, true, false},
    {"RF_BTConnectedNum", 0, true, false},
    {"RF_BTConnectedType", 0, true, false},
    {"RF_BTIsUsed", 0, true, false},
    {"RF_Net_Connected_Type", 0, true, false},
    {"RF_PhyMode", 0, true, false},
    {"RF_USBHDMIIsUsed", 0, true, false},
    {"RF_USBISTYPEC", 0, true, false},
    {"RF_USBIsTranster", 0, true, false},
    {"RF_USBNum", 0, true, false},
    {"RF_USBPort", 0, true, false},
    {"RF_USB_A_Num", 0, true, false},
    {"RF_USB_C_Num", 0, true, false},
    {"RF_WiFiCardName", 0, true, false},
    {"RF_WiFiChannel", 0, true, false},
    {"RF_WiFiIsConnected", 0, true, false},
    {"RF_WiFiMaxRate", 0, true, false},
    {"RF_WiFiRssi", 0, true, false},
    {"RF_WiFi_2_4G_AP_Ch_Num", 0, true, false},
    {"RF_WiFi_2_4G_AP_Num", 0, true, false},
    {"RF_WiFi_2_4G_AP_RSSI_Num", 0, true, false},
    {"RF_WiFi_5G_AP_Band_Num", 0, true, false},
    {"RF_WiFi_5G_AP_Num", 0, true, false},
    {"RF_WiFi_5G_AP_RSSI_Num", 0, true, false},
    {"RF_WiFi_6G_AP_NUII_Num", 0, true, false},
    {"RF_WiFi_6G_AP_Num", 0, true, false},
    {"RF_WiFi_6G_AP_RSSI_Num", 0, true, false},
    {"RF_WiFi_Main_Aux_Rssi", 0, true, false},
    {"ShutdownWinIo", 0, true, false},
    {"StopWinIoDriver", 0, false, false},
    {"System_Check_S_Mode", 0, true, false},
    {"System_Read_LocalTime", 0, true, false},
    {"System_Read_TabletMode", 0, false, false},
    {"System_Read_VolumeLevel", 0, true, false},
    {"TraceOutput", 0, true, false},
    {"TraceOutputCritical", 0, true, false},
    {"WMICheckAppExist", 0, true, false},
    {"WMICheckBatteryHealthSupport", 0, true, false},
    {"WMICheckQuietFanSupport", 0, true, false},
    {"WMIGet90Number", 0, true, false},
    {"WMIGetAppPath", 0, true, false},
    {"WMIGetBatteryHealth", 0, true, false},
    {"WMIGetBiosManufacture", 0, true, false},
    {"WMIGetBiosReleaseDate", 0, true, false},
    {"WMIGetBiosVersion", 0, true, false},
    {"WMIGetBoardUUID", 0, true, false},
    {"WMIGetCPUArchitecture", 0, true, false},
    {"WMIGetCPUInfo", 0, true, false},
    {"WMIGetCPUUsg", 0, true, false},
    {"WMIGetCardReaderCaption", 0, true, false},
    {"WMIGetComputerFamilyName", 0, true, false},
    {"WMIGetExternMonitorNum", 0, true, false},
    {"WMIGetExternMonitorPropList", 0, true, false},
    {"WMIGetGPUInfo", 0, true, false},
    {"WMIGetGPUUsg", 0, true, false},
    {"WMIGetHDDCaption", 0, true, false},
    {"WMIGetHDDInfo", 0, true, false},
    {"WMIGetHDDList", 0, true, false},
    {"WMIGetHDDModel", 0, true, false},
    {"WMIGetHDDSize", 0, true, false},
    {"WMIGetHDDUsage", 0, true, false},
    {"WMIGetLCDModel", 0, true, false},
    {"WMIGetMacAddress", 0, true, false},
    {"WMIGetMemFrequency", 0, true, false},
    {"WMIGetMemInfo", 0, true, false},
    {"WMIGetMemManufacture", 0, true, false},
    {"WMIGetMemModel", 0, true, false},
    {"WMIGetMemSize", 0, true, false},
    {"WMIGetModelName", 0, true, false},
    {"WMIGetMonitorBrightness", 0, true, false},
    {"WMIGetOSInfo", 0, true, false},
    {"WMIGetPhysicalDiskInfo", 0, true, false},
    {"WMIGetProductName", 0, true, false},
    {"WMIGetQuietFan", 0, true, false},
    {"WMIGetSDCardCaption", 0, true, false},
    {"WMIGetSDCardSize", 0, true, false},
    {"WMIGetSN", 0, true, false},
    {"WMIGetSSDList", 0, true, false},
    {"WMIGetSSDModel", 0, true, false},
    {"WMIGetSSDUsage", 0, true, false},
    {"WMIGetSystemChassisTypes", 0, true, false},
    {"WMIGetType2SN", 0, true, false},
    {"WMIGetWiFiBytesPersec", 0, true, false},
    {"WMIGetWiFiCardName", 0, true, false},
    {"WMISetAppPath", 0, true, false},
    {"WMISetBatteryHealth", 0, true, false},
    {"WMISetBatteryHealthToUser", 0, true, false},
    {"WMISetQuietFan", 0, true, false},
    {"WOA_EC_read", 0, true, false},
    {"WOA_EC_write", 0, true, false},
    {"wmiadd", 0, true, false},
}};

// Null for a name that is no export's.
constexpr const ExportFacts* FindExport(std::string_view name) {
  const auto found = std::ranges::find(kExports, name, &ExportFacts::name);
  return found == kExports.end() ? nullptr : &*found;
}

namespace detail {

struct Reserved {
  uint32_t value;
  Reason reason;
  bool also_reading = false;
};

struct ReservedText {
  std::string_view text;
  Reason reason;
};

enum class Doubt { kNone, kBattery, kVersion };

// Where an export stands in kExports; a name that is not there does not compile.
consteval size_t Place(std::string_view name) {
  size_t place = 0;
  while (name != kExports.at(place).name) ++place;
  return place;
}

struct Functions {
  std::shared_ptr<void> module;
  std::array<AnyFunction, kExports.size()> by_place = {};
  void (*free_text)(void*) = nullptr;  // CoTaskMemFree
};

template <typename Char>
bool SameText(std::basic_string_view<Char> text, std::string_view expected) {
  return std::ranges::equal(text, expected, {}, [](Char c) { return static_cast<uint32_t>(c); },
                            [](char c) { return static_cast<uint32_t>(static_cast<unsigned char>(c)); });
}

template <typename Char>
Answer<std::basic_string<Char>> JudgeText(std::basic_string<Char> text, std::span<const ReservedText> reserved) {
  for (const ReservedText& one : reserved) {
    if (SameText(std::basic_string_view<Char>(text), one.text)) return std::unexpected(one.reason);
  }
  return text;
}

}  // namespace detail

class Library;

// The time between InitializeWinIo and ShutdownWinIo. It keeps the library loaded.
class Session {
 public:
  Session(Session&& other) noexcept : functions_(std::exchange(other.functions_, nullptr)) {}
  Session& operator=(Session&& other) noexcept {
    std::swap(functions_, other.functions_);
    return *this;
  }
  ~Session();

 private:
  friend class Library;
  explicit Session(std::shared_ptr<const detail::Functions> functions) : functions_(std::move(functions)) {}

  std::shared_ptr<const detail::Functions> functions_;
};

class Library {
 public:
  // Resolves an export by its name; null: the library lacks it.
  using Resolve = AnyFunction (*)(void* module, const char* name);

  // Over a module that somebody else loaded; it is let go with the last copy of this object and the last Session.
  static Library Over(std::shared_ptr<void> module, Resolve resolve, void (*free_text)(void*)) {
    auto functions = std::make_shared<detail::Functions>();
    functions->free_text = free_text;
    for (size_t i = 0; i < kExports.size(); ++i) {
      functions->by_place[i] = resolve(module.get(), kExports[i].name);
    }
    functions->module = std::move(module);
    return Library(std::move(functions));
  }

#ifdef _WIN32
  struct LoadError {
    DWORD code;  // of GetLastError; ERROR_BAD_PATHNAME for a path that is not absolute
  };

  // Loads the file at this absolute path. What it needs comes from its own folder and the system's, never from the
  // current folder or the PATH.
  static std::expected<Library, LoadError> Load(const std::wstring& path) {
    const bool drive = path.size() > 3 && std::iswalpha(static_cast<wint_t>(path[0])) && path[1] == L':' &&
                       (path[2] == L'\\' || path[2] == L'/');
    if (!drive && !path.starts_with(LR"(\\)")) return std::unexpected(LoadError{ERROR_BAD_PATHNAME});
    const HMODULE loaded =
        LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (loaded == nullptr) return std::unexpected(LoadError{GetLastError()});
    std::shared_ptr<void> module(loaded, [](void* m) { FreeLibrary(static_cast<HMODULE>(m)); });
    return Over(std::move(module), &FromModule, &FreeTaskMemory);
  }
#endif

  // Makes the library ready for as long as the session lives. Administrator rights and waits: see InitializeWinIo.
  [[nodiscard]] Answer<Session> Start() const {
    const auto initialize = Get<decltype(&::InitializeWinIo)>(detail::Place("InitializeWinIo"));
    if (initialize == nullptr || Get<decltype(&::ShutdownWinIo)>(detail::Place("ShutdownWinIo")) == nullptr) {
      return std::unexpected(Reason::kMissingExport);
    }
    if (initialize() != 1) return std::unexpected(Reason::kRefused);
    return Session(functions_);
  }

  // An export as it stands in its C header, for what the methods below do not tell; null: the library lacks it.
  AnyFunction Find(std::string_view name) const {
    const ExportFacts* facts = FindExport(name);
    return facts == nullptr ? nullptr : functions_->by_place[static_cast<size_t>(facts - kExports.data())];
  }

  // Speeds of all fans, in the order of their indexes; selects each in turn, for all programs.
  Answer<std::vector<Answer<uint32_t>>> HealthyTable_Read_Fan() const {
    const auto function = Get<decltype(&::HealthyTable_Read_Fan)>(detail::Place("HealthyTable_Read_Fan"));
    const auto counts = Get<decltype(&::HealthyTable_FanCounts)>(detail::Place("HealthyTable_FanCounts"));
    if (function == nullptr || counts == nullptr) return std::unexpected(Reason::kMissingExport);
    const uint32_t count = counts();
    if (count == VEXA_NO_ANSWER) return std::unexpected(Reason::kNoAnswer);
    std::vector<uint32_t> slots(VEXA_FAN_SLOTS, VEXA_NO_ANSWER);
    function(slots.data());
    std::vector<Answer<uint32_t>> speeds;
    for (size_t i = 0; i < std::min<size_t>(count, slots.size()); ++i) {
      if (slots[i] == VEXA_NO_ANSWER) {
        speeds.emplace_back(std::unexpected(Reason::kNoAnswer));
      } else if (slots[i] == VEXA_NOT_AVAILABLE) {
        speeds.emplace_back(std::unexpected(Reason::kUnsupported));
      } else {
        speeds.emplace_back(slots[i]);
      }
    }
    return speeds;
  }

  // ---- Start-up, shut-down and versions ----

  // Version word of the kernel driver.
  Answer<uint32_t> GetDriverVersion() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::GetDriverVersion)>(69, Table{{{0u, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Version of this interface: always 0x00010001, major version in the high half.
  Answer<uint32_t> GetIoDllVersion() const {
    return Number<uint32_t, decltype(&::GetIoDllVersion)>(71, {}, detail::Doubt::kNone);
  }

  // The kernel driver's own count of its users, over all processes.
  Answer<uint32_t> GetRefCount() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::GetRefCount)>(72, Table{{{0u, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Stops the driver service.
  Answer<void> StopWinIoDriver(uint32_t holds_mutex) const {
    using Table = std::array<detail::Reserved, 1>;
    return Done<decltype(&::StopWinIoDriver)>(118, Table{{{0u, Reason::kRefused}}}, holds_mutex);
  }

  // x + 1, wrapping at 32 bits: tells that the library is loaded and called rightly.
  Answer<uint32_t> wmiadd(uint32_t x) const {
    return Number<uint32_t, decltype(&::wmiadd)>(179, {}, detail::Doubt::kNone, x);
  }

  // ---- A caller's own lines in the trace ----

  // Writes a line at level 4 (informational).
  void TraceOutput(std::wstring_view text) const {
    Line<decltype(&::TraceOutput)>(123, text);
  }

  // Writes a line at level 1 (critical).
  void TraceOutputCritical(std::wstring_view text) const {
    Line<decltype(&::TraceOutputCritical)>(124, text);
  }

  // ---- Battery, charger and EC identity from the healthy table ----

  // 1: external power is present.
  Answer<bool> BatteryHealthyTable_ACStatus() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<bool, decltype(&::BatteryHealthyTable_ACStatus)>(
        33, Table{{{0u, Reason::kNoAnswer, true}}}, detail::Doubt::kBattery);
  }

  // 1: the EC reports a battery error.
  Answer<bool> BatteryHealthyTable_BatteryError() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<bool, decltype(&::BatteryHealthyTable_BatteryError)>(
        34, Table{{{0u, Reason::kNoAnswer, true}}}, detail::Doubt::kBattery);
  }

  // The 32 bytes of the battery's manufacture information as "0x.." texts, joined by commas.
  Answer<std::string> BatteryHealthyTable_BatteryInformation() const {
    using Texts = std::array<detail::ReservedText, 1>;
    return Returned<decltype(&::BatteryHealthyTable_BatteryInformation)>(35, Texts{{{"", Reason::kNoAnswer}}});
  }

  // Voltage of cell 1; a pack with fewer cells reports 0 for the others. A number of 16 bits, in mV.
  Answer<uint32_t> BatteryHealthyTable_CellVoltage1() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_CellVoltage1)>(
        36, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0u, Reason::kUnsupported, true}}}, detail::Doubt::kBattery);
  }

  // Voltage of cell 2; a pack with fewer cells reports 0 for the others. A number of 16 bits, in mV.
  Answer<uint32_t> BatteryHealthyTable_CellVoltage2() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_CellVoltage2)>(
        37, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0u, Reason::kUnsupported, true}}}, detail::Doubt::kBattery);
  }

  // Voltage of cell 3; a pack with fewer cells reports 0 for the others. A number of 16 bits, in mV.
  Answer<uint32_t> BatteryHealthyTable_CellVoltage3() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_CellVoltage3)>(
        38, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0u, Reason::kUnsupported, true}}}, detail::Doubt::kBattery);
  }

  // Voltage of cell 4; a pack with fewer cells reports 0 for the others. A number of 16 bits, in mV.
  Answer<uint32_t> BatteryHealthyTable_CellVoltage4() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_CellVoltage4)>(
        39, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0u, Reason::kUnsupported, true}}}, detail::Doubt::kBattery);
  }

  // Charging current that the gauge asks for. A signed number of 16 bits, in mA.
  Answer<int32_t> BatteryHealthyTable_ChargingCurrent() const {
    using Table = std::array<detail::Reserved, 3>;
    return Number<int32_t, decltype(&::BatteryHealthyTable_ChargingCurrent)>(
        40, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0xFFFFFFFFu, Reason::kUnsupported, true},
        {0u, Reason::kUnsupported, true}}}, detail::Doubt::kBattery);
  }

  // Charging voltage that the gauge asks for. A number of 16 bits, in mV.
  Answer<uint32_t> BatteryHealthyTable_ChargingVoltage() const {
    using Table = std::array<detail::Reserved, 3>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_ChargingVoltage)>(
        41, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0xFFFFFFFFu, Reason::kUnsupported},
        {0u, Reason::kNoAnswer, true}}}, detail::Doubt::kBattery);
  }

  // Current; negative while discharging. A signed number of 16 bits, in mA.
  Answer<int32_t> BatteryHealthyTable_Current() const {
    using Table = std::array<detail::Reserved, 3>;
    return Number<int32_t, decltype(&::BatteryHealthyTable_Current)>(
        42, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0xFFFFFFFFu, Reason::kUnsupported, true},
        {0u, Reason::kNoAnswer, true}}}, detail::Doubt::kBattery);
  }

  // Charge cycles so far.
  Answer<uint32_t> BatteryHealthyTable_CycleCount() const {
    using Table = std::array<detail::Reserved, 3>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_CycleCount)>(
        43, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0xFFFFFFFFu, Reason::kUnsupported},
        {0u, Reason::kNoAnswer, true}}}, detail::Doubt::kBattery);
  }

  // Design voltage. A number of 16 bits, in mV.
  Answer<uint32_t> BatteryHealthyTable_DesignVoltage() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_DesignVoltage)>(
        44, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0u, Reason::kUnsupported, true}}}, detail::Doubt::kBattery);
  }

  // Device name of the battery from the gauge (register 0x21), at most 32 characters.
  Answer<std::string> BatteryHealthyTable_DeviceName() const {
    using Table = std::array<detail::Reserved, 1>;
    return Text<char, decltype(&::BatteryHealthyTable_DeviceName)>(45, 33, Table{{{0u, Reason::kNoAnswer}}}, {});
  }

  // Chip id of the EC.
  Answer<uint32_t> BatteryHealthyTable_ECChipID() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_ECChipID)>(
        46, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Name of the EC chip, at most 14 characters.
  Answer<std::string> BatteryHealthyTable_ECChipName() const {
    using Table = std::array<detail::Reserved, 1>;
    return Text<char, decltype(&::BatteryHealthyTable_ECChipName)>(47, 15, Table{{{0u, Reason::kNoAnswer}}}, {});
  }

  // Full-charge capacity in the gauge's unit: mAh, or 10 mWh as bit 15 of the battery mode says. A number of 16 bits,
  // in mAh or 10 mWh.
  Answer<uint32_t> BatteryHealthyTable_FullChargeCapacity() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_FullChargeCapacity)>(
        48, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0u, Reason::kUnsupported, true}}}, detail::Doubt::kBattery);
  }

  // 1: the battery is fully charged.
  Answer<bool> BatteryHealthyTable_FullCharged() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<bool, decltype(&::BatteryHealthyTable_FullCharged)>(
        49, Table{{{0x7FFFFFFFu, Reason::kUnsupported}, {0u, Reason::kNoAnswer, true}}}, detail::Doubt::kBattery);
  }

  // Code of the gauge chip.
  Answer<uint32_t> BatteryHealthyTable_GaugeIC() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_GaugeIC)>(
        50, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0u, Reason::kUnsupported, true}}}, detail::Doubt::kBattery);
  }

  // Lid state byte of the EC.
  Answer<uint32_t> BatteryHealthyTable_LidStatus() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_LidStatus)>(
        51, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0u, Reason::kUnsupported, true}}}, detail::Doubt::kBattery);
  }

  // Date of manufacture: day in bits 0-4, month in bits 5-8, year since 1980 in bits 9-15. A number of 16 bits, in
  // packed date.
  Answer<uint32_t> BatteryHealthyTable_ManufactureDate() const {
    using Table = std::array<detail::Reserved, 3>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_ManufactureDate)>(
        52, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0xFFFFFFFFu, Reason::kUnsupported},
        {0u, Reason::kNoAnswer, true}}}, detail::Doubt::kBattery);
  }

  // Manufacturer of the battery from the healthy table, at most 16 characters.
  Answer<std::string> BatteryHealthyTable_ManufactureName() const {
    using Table = std::array<detail::Reserved, 1>;
    return Text<char, decltype(&::BatteryHealthyTable_ManufactureName)>(53, 33, Table{{{0u, Reason::kNoAnswer}}}, {});
  }

  // Manufacturer of the battery from the gauge itself (register 0x20), at most 32 characters.
  Answer<std::string> BatteryHealthyTable_ManufactureNameBySMBus() const {
    using Table = std::array<detail::Reserved, 1>;
    return Text<char, decltype(&::BatteryHealthyTable_ManufactureNameBySMBus)>(
        54, 33, Table{{{0u, Reason::kNoAnswer}}}, {});
  }

  // Permanent-failure status of the gauge (register 0x53).
  Answer<uint32_t> BatteryHealthyTable_PFStatus() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_PFStatus)>(
        55, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Voltage of the pack. A number of 16 bits, in mV.
  Answer<uint32_t> BatteryHealthyTable_PackageVoltage() const {
    using Table = std::array<detail::Reserved, 3>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_PackageVoltage)>(
        56, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0xFFFFFFFFu, Reason::kUnsupported},
        {0u, Reason::kNoAnswer, true}}}, detail::Doubt::kBattery);
  }

  // Bit 7 of the EC's project information.
  Answer<bool> BatteryHealthyTable_ReadVendorType() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<bool, decltype(&::BatteryHealthyTable_ReadVendorType)>(
        57, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Version of the healthy table, 0 to 255; 0: the EC has none.
  Answer<uint32_t> BatteryHealthyTable_ReadVersion() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_ReadVersion)>(
        58, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Remaining capacity in the gauge's unit: mAh, or 10 mWh as bit 15 of the battery mode says. A number of 16 bits,
  // in mAh or 10 mWh.
  Answer<uint32_t> BatteryHealthyTable_RemainingCapacity() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_RemainingCapacity)>(
        59, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0u, Reason::kUnsupported, true}}}, detail::Doubt::kBattery);
  }

  // Relative state of charge, of the full-charge capacity. A number of 16 bits, in %.
  Answer<uint32_t> BatteryHealthyTable_Rsoc() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_Rsoc)>(
        60, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0u, Reason::kUnsupported, true}}}, detail::Doubt::kBattery);
  }

  // Safety status of the gauge (register 0x51).
  Answer<uint32_t> BatteryHealthyTable_SafetyStatus() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_SafetyStatus)>(
        61, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Serial number.
  Answer<uint32_t> BatteryHealthyTable_SerialNumber() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_SerialNumber)>(
        62, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0u, Reason::kUnsupported, true}}}, detail::Doubt::kBattery);
  }

  // Temperature of the pack. A number of 16 bits, in 0.1 K.
  Answer<uint32_t> BatteryHealthyTable_Temperature() const {
    using Table = std::array<detail::Reserved, 3>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_Temperature)>(
        63, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0xFFFFFFFFu, Reason::kUnsupported},
        {0u, Reason::kNoAnswer, true}}}, detail::Doubt::kBattery);
  }

  // Charge-error status byte of the EC; 0: no charge time-out.
  Answer<uint32_t> BatteryHealthyTable_TimeoutStatus() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::BatteryHealthyTable_TimeoutStatus)>(
        64, Table{{{0u, Reason::kNoAnswer, true}}}, detail::Doubt::kBattery);
  }

  // ---- Power adapter, USB Power Delivery and the power source ----

  // Clears the charger interrupt and then the charger information.
  Answer<void> Adapter_Clear_Charger_Data() const {
    using Table = std::array<detail::Reserved, 2>;
    return Done<decltype(&::Adapter_Clear_Charger_Data)>(
        0, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0u, Reason::kRefused}}});
  }

  // Clears all data flags.
  Answer<void> Adapter_Clear_Power_Data_Flag() const {
    using Table = std::array<detail::Reserved, 1>;
    return Done<decltype(&::Adapter_Clear_Power_Data_Flag)>(1, Table{{{0u, Reason::kRefused}}});
  }

  // Wattage of the adapter at the champion port. A number of 16 bits, in W.
  Answer<uint32_t> Adapter_Read_ChampionPort_Watt() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::Adapter_Read_ChampionPort_Watt)>(
        2, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Charger information byte.
  Answer<uint32_t> Adapter_Read_Charger_Information() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::Adapter_Read_Charger_Information)>(
        3, Table{{{0u, Reason::kUnsupported, true}}}, detail::Doubt::kVersion);
  }

  // Charger interrupt byte.
  Answer<uint32_t> Adapter_Read_Charger_Interrupt() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::Adapter_Read_Charger_Interrupt)>(
        4, Table{{{0u, Reason::kUnsupported, true}}}, detail::Doubt::kVersion);
  }

  // The PDO that the contract rests on; 0: no contract. A number of 32 bits, in PDO.
  Answer<uint32_t> Adapter_Read_Contract_PDO() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::Adapter_Read_Contract_PDO)>(
        5, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // One PDO of the attached source; 0: the source has none at this place. A number of 32 bits, in PDO.
  Answer<uint32_t> Adapter_Read_PDO(uint32_t index) const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::Adapter_Read_PDO)>(
        6, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0x7FFFFFFFu, Reason::kNoAnswer}}},
        detail::Doubt::kNone, index);
  }

  // PDO 1 of the attached source; 0: the source has none at this place. A number of 32 bits, in PDO.
  Answer<uint32_t> Adapter_Read_PDO1() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::Adapter_Read_PDO1)>(
        7, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // PDO 2 of the attached source; 0: the source has none at this place. A number of 32 bits, in PDO.
  Answer<uint32_t> Adapter_Read_PDO2() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::Adapter_Read_PDO2)>(
        8, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // PDO 3 of the attached source; 0: the source has none at this place. A number of 32 bits, in PDO.
  Answer<uint32_t> Adapter_Read_PDO3() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::Adapter_Read_PDO3)>(
        9, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // PDO 4 of the attached source; 0: the source has none at this place. A number of 32 bits, in PDO.
  Answer<uint32_t> Adapter_Read_PDO4() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::Adapter_Read_PDO4)>(
        10, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // PDO 5 of the attached source; 0: the source has none at this place. A number of 32 bits, in PDO.
  Answer<uint32_t> Adapter_Read_PDO5() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::Adapter_Read_PDO5)>(
        11, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // PDO 6 of the attached source; 0: the source has none at this place. A number of 32 bits, in PDO.
  Answer<uint32_t> Adapter_Read_PDO6() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::Adapter_Read_PDO6)>(
        12, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // PDO 7 of the attached source; 0: the source has none at this place. A number of 32 bits, in PDO.
  Answer<uint32_t> Adapter_Read_PDO7() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::Adapter_Read_PDO7)>(
        13, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // The EC's wattage record of the PDOs, as the EC holds it.
  Answer<uint32_t> Adapter_Read_PDO_Watt() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::Adapter_Read_PDO_Watt)>(
        14, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Type byte of the last alert data object.
  Answer<uint32_t> Adapter_Read_PD_ADO() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::Adapter_Read_PD_ADO)>(
        15, Table{{{0u, Reason::kUnsupported, true}}}, detail::Doubt::kVersion);
  }

  // What else the cable's electronic marker tells.
  Answer<uint32_t> Adapter_Read_PD_Get_Emark_Other() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::Adapter_Read_PD_Get_Emark_Other)>(
        16, Table{{{0u, Reason::kUnsupported, true}}}, detail::Doubt::kVersion);
  }

  // Product id of the cable's electronic marker.
  Answer<uint32_t> Adapter_Read_PD_Get_Emark_PID() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::Adapter_Read_PD_Get_Emark_PID)>(
        17, Table{{{0u, Reason::kUnsupported, true}}}, detail::Doubt::kVersion);
  }

  // Vendor id of the cable's electronic marker.
  Answer<uint32_t> Adapter_Read_PD_Get_Emark_VID() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::Adapter_Read_PD_Get_Emark_VID)>(
        18, Table{{{0u, Reason::kUnsupported, true}}}, detail::Doubt::kVersion);
  }

  // Id that the certification gave the cable.
  Answer<uint32_t> Adapter_Read_PD_Get_Emark_XID() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::Adapter_Read_PD_Get_Emark_XID)>(
        19, Table{{{0u, Reason::kUnsupported, true}}}, detail::Doubt::kVersion);
  }

  // Firmware version of the source.
  Answer<uint32_t> Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion)>(
        20, Table{{{0u, Reason::kUnsupported, true}}}, detail::Doubt::kVersion);
  }

  // Hardware version of the source.
  Answer<uint32_t> Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion)>(
        21, Table{{{0u, Reason::kUnsupported, true}}}, detail::Doubt::kVersion);
  }

  // Product id of the source.
  Answer<uint32_t> Adapter_Read_PD_Get_Source_Cap_Extend_PID() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::Adapter_Read_PD_Get_Source_Cap_Extend_PID)>(
        22, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // USB vendor id of the source.
  Answer<uint32_t> Adapter_Read_PD_Get_Source_Cap_Extend_VID() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::Adapter_Read_PD_Get_Source_Cap_Extend_VID)>(
        23, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Id that the certification gave the source; 0: none.
  Answer<uint32_t> Adapter_Read_PD_Get_Source_Cap_Extend_XID() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::Adapter_Read_PD_Get_Source_Cap_Extend_XID)>(
        24, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Event flags of the source's status.
  Answer<uint32_t> Adapter_Read_PD_Get_Status_EventFlag() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::Adapter_Read_PD_Get_Status_EventFlag)>(
        25, Table{{{0u, Reason::kUnsupported, true}}}, detail::Doubt::kVersion);
  }

  // Temperature inside the source. A number of 8 bits, in degC.
  Answer<uint32_t> Adapter_Read_PD_Get_Status_Temperature() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::Adapter_Read_PD_Get_Status_Temperature)>(
        26, Table{{{0u, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Part number of the PD controller.
  Answer<VexaPdIcPartNumber> Adapter_Read_PD_IC_PN() const {
    return Filled<VexaPdIcPartNumber, decltype(&::Adapter_Read_PD_IC_PN)>(27);
  }

  // Configuration byte of the EC's power data.
  Answer<uint32_t> Adapter_Read_Power_Big_Data_Config() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::Adapter_Read_Power_Big_Data_Config)>(
        28, Table{{{0u, Reason::kUnsupported, true}}}, detail::Doubt::kVersion);
  }

  // Data flags: which of the EC's power data are new. Above table version 23 reading clears them.
  Answer<uint32_t> Adapter_Read_Power_Data_Flag() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::Adapter_Read_Power_Data_Flag)>(
        29, Table{{{0u, Reason::kUnsupported, true}}}, detail::Doubt::kVersion);
  }

  // Wattage of the adapter that the machine is sold with. A number of 16 bits, in W.
  Answer<uint32_t> Adapter_Read_Standard_Watt() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::Adapter_Read_Standard_Watt)>(
        30, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Least wattage that is enough for the machine. A number of 16 bits, in W.
  Answer<uint32_t> Adapter_Read_Sufficient_Watt() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::Adapter_Read_Sufficient_Watt)>(
        31, Table{{{0xFFFFFFFFu, Reason::kUnsupported}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Sets the notification control byte.
  Answer<void> Adapter_Set_Notify_Control(uint8_t value) const {
    using Table = std::array<detail::Reserved, 1>;
    return Done<decltype(&::Adapter_Set_Notify_Control)>(32, Table{{{0u, Reason::kRefused}}}, value);
  }

  // 1: the machine runs on a USB-PD source.
  Answer<bool> Power_PD_Charging() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<bool, decltype(&::Power_PD_Charging)>(
        84, Table{{{0u, Reason::kUnsupported, true}}}, detail::Doubt::kVersion);
  }

  // Power line as the system knows it: 0 on battery, 1 on external power.
  Answer<bool> Power_Read_ACDCMode() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<bool, decltype(&::Power_Read_ACDCMode)>(85, Table{{{255u, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Has the EC watch for drops of the power, or no longer.
  Answer<void> Power_Set_Monitor_PowerDropped(uint32_t enable) const {
    using Table = std::array<detail::Reserved, 1>;
    return Done<decltype(&::Power_Set_Monitor_PowerDropped)>(86, Table{{{0u, Reason::kRefused}}}, enable);
  }

  // ---- Fans and temperatures ----

  // Number of fans.
  Answer<uint32_t> HealthyTable_FanCounts() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::HealthyTable_FanCounts)>(
        74, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Speed of the selected fan. A number of 16 bits, in rpm.
  Answer<uint32_t> HealthyTable_FanRPM() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::HealthyTable_FanRPM)>(
        75, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0xFFFFFFFFu, Reason::kUnsupported}}}, detail::Doubt::kNone);
  }

  // Test mode of the fans: 0 off; on x64 the EC's byte as it is.
  Answer<uint32_t> HealthyTable_GetFanTestMode() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::HealthyTable_GetFanTestMode)>(
        76, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Temperature of board sensor 0; 0 also when there is no board sensor. A number of 8 bits, in degC.
  Answer<uint32_t> HealthyTable_Read_BoardTS0L_Temperature() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::HealthyTable_Read_BoardTS0L_Temperature)>(
        77, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Temperature of the CPU. A number of 8 bits, in degC.
  Answer<uint32_t> HealthyTable_Read_Cpu_Temperature() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::HealthyTable_Read_Cpu_Temperature)>(
        78, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Selects the fan that HealthyTable_FanRPM and HealthyTable_SetFanPwmDuty speak of.
  Answer<void> HealthyTable_SetFanIndex(uint32_t index) const {
    using Table = std::array<detail::Reserved, 1>;
    return Done<decltype(&::HealthyTable_SetFanIndex)>(80, Table{{{0u, Reason::kRefused}}}, index);
  }

  // Sets the duty of the selected fan's PWM signal, in the EC's own steps; it lasts while test mode is on.
  Answer<void> HealthyTable_SetFanPwmDuty(uint8_t duty) const {
    using Table = std::array<detail::Reserved, 1>;
    return Done<decltype(&::HealthyTable_SetFanPwmDuty)>(81, Table{{{0u, Reason::kRefused}}}, duty);
  }

  // Turns the fans' test mode on or off. Turning on takes the fan mutex and keeps it until the same thread turns it
  // off.
  Answer<void> HealthyTable_SetFanTestMode(uint32_t mode) const {
    using Table = std::array<detail::Reserved, 1>;
    return Done<decltype(&::HealthyTable_SetFanTestMode)>(82, Table{{{0u, Reason::kRefused}}}, mode);
  }

  // Temperature of the CPU, as HealthyTable_Read_Cpu_Temperature. A number of 8 bits, in degC.
  Answer<uint32_t> Quillo_Read_Cpu_Temperature() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::Quillo_Read_Cpu_Temperature)>(
        87, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Speed of one fan, under the fan mutex. A number of 16 bits, in rpm.
  Answer<uint32_t> Quillo_Read_Fan(int32_t index) const {
    using Table = std::array<detail::Reserved, 3>;
    return Number<uint32_t, decltype(&::Quillo_Read_Fan)>(
        88, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0xFFFFFFFFu, Reason::kUnsupported},
        {0u, Reason::kNotPresent, true}}}, detail::Doubt::kNone, index);
  }

  // ---- Identity of the embedded controller ----

  // Chip id.
  Answer<uint32_t> EC_ReadEcChipId() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::EC_ReadEcChipId)>(
        65, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // The first four characters of the chip's name, the first in the top byte. A number of 32 bits, in 4 characters.
  Answer<uint32_t> EC_ReadEcChipName() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::EC_ReadEcChipName)>(
        66, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Firmware revision: its two characters, the first in bits 8-15. A number of 16 bits, in 2 characters.
  Answer<uint32_t> EC_ReadEcFwRev() const {
    using Table = std::array<detail::Reserved, 3>;
    return Number<uint32_t, decltype(&::EC_ReadEcFwRev)>(
        67, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}, {0xFFFFu, Reason::kUnsupported},
        {0x7FFFu, Reason::kUnsupported}}}, detail::Doubt::kNone);
  }

  // Project information byte; bit 7: the EC reports a firmware revision. Never kept.
  Answer<uint32_t> EC_ReadProjectInformation() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::EC_ReadProjectInformation)>(
        68, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // ---- The EC byte by byte over the firmware ----

  // Reads one byte of an EC table.
  Answer<int32_t> WOA_EC_read(uint8_t offset, uint8_t table) const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<int32_t, decltype(&::WOA_EC_read)>(
        177, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone, offset, table);
  }

  // Writes one byte of an EC table.
  Answer<void> WOA_EC_write(uint8_t offset, uint8_t table, uint8_t value) const {
    using Table = std::array<detail::Reserved, 1>;
    return Done<decltype(&::WOA_EC_write)>(178, Table{{{0u, Reason::kRefused}}}, offset, table, value);
  }

  // ---- Firmware settings: charge limit and quiet fan ----

  // 1 when the stored application folder exists.
  Answer<bool> WMICheckAppExist(uint32_t com_flag = 1) const {
    return Number<bool, decltype(&::WMICheckAppExist)>(125, {}, detail::Doubt::kNone, com_flag);
  }

  // 1 when the firmware can limit the charge, 0 when not or when it does not answer.
  Answer<bool> WMICheckBatteryHealthSupport(uint32_t com_flag = 1) const {
    return Number<bool, decltype(&::WMICheckBatteryHealthSupport)>(126, {}, detail::Doubt::kNone, com_flag);
  }

  // The firmware's quiet fan: 1 on, 0 off.
  Answer<bool> WMICheckQuietFanSupport(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<bool, decltype(&::WMICheckQuietFanSupport)>(
        127, Table{{{0xFFFFFFFFu, Reason::kUnsupported}}}, detail::Doubt::kNone, com_flag);
  }

  // The application folder of the signed-in user.
  Answer<std::wstring> WMIGetAppPath(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return Text<wchar_t, decltype(&::WMIGetAppPath)>(129, 260, Table{{{0u, Reason::kNotPresent}}}, {}, com_flag);
  }

  // The remembered charge limit; 100 for everything unknown. A number of 32 bits, in %.
  Answer<uint32_t> WMIGetBatteryHealth(uint32_t com_flag = 1) const {
    return Number<uint32_t, decltype(&::WMIGetBatteryHealth)>(130, {}, detail::Doubt::kNone, com_flag);
  }

  // The remembered quiet-fan mode: 1 to 3; 0 for everything unknown.
  Answer<uint32_t> WMIGetQuietFan(uint32_t com_flag = 1) const {
    return Number<uint32_t, decltype(&::WMIGetQuietFan)>(162, {}, detail::Doubt::kNone, com_flag);
  }

  // Remembers the application folder of the signed-in user.
  Answer<void> WMISetAppPath(const std::wstring& path, uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return Done<decltype(&::WMISetAppPath)>(173, Table{{{0u, Reason::kRefused}}}, path.c_str(), com_flag);
  }

  // Tells the firmware to charge to this level.
  Answer<void> WMISetBatteryHealth(int32_t level, uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return Done<decltype(&::WMISetBatteryHealth)>(174, Table{{{0u, Reason::kRefused}}}, level, com_flag);
  }

  // Writes the level into the battery-health file of the application folder.
  Answer<void> WMISetBatteryHealthToUser(int32_t level, uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return Done<decltype(&::WMISetBatteryHealthToUser)>(175, Table{{{0u, Reason::kRefused}}}, level, com_flag);
  }

  // Switches the firmware's quiet fan.
  Answer<void> WMISetQuietFan(uint8_t on, uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return Done<decltype(&::WMISetQuietFan)>(176, Table{{{0u, Reason::kRefused}}}, on, com_flag);
  }

  // ---- System inventory ----

  // The fifth of the firmware's OEM strings, the order number.
  Answer<std::wstring> WMIGet90Number(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGet90Number)>(128, 256, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Manufacturer of the baseboard.
  Answer<std::wstring> WMIGetBiosManufacture(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetBiosManufacture)>(131, 256, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Date of the BIOS in CIM form.
  Answer<std::wstring> WMIGetBiosReleaseDate(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetBiosReleaseDate)>(132, 64, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Name of the BIOS, which carries its version.
  Answer<std::wstring> WMIGetBiosVersion(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetBiosVersion)>(133, 256, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // UUID of the machine.
  Answer<std::wstring> WMIGetBoardUUID(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetBoardUUID)>(134, 64, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Architecture by Win32_Processor: 0 x86, 5 ARM, 9 x64, 12 ARM64.
  Answer<uint32_t> WMIGetCPUArchitecture(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::WMIGetCPUArchitecture)>(
        135, Table{{{0xFFFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone, com_flag);
  }

  // Name of each processor.
  Answer<std::wstring> WMIGetCPUInfo(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetCPUInfo)>(136, 512, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Load of the last listed processor; WMI measures it while it answers, for about a second. A number of 16 bits, in
  // %.
  Answer<uint32_t> WMIGetCPUUsg(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::WMIGetCPUUsg)>(
        137, Table{{{0xFFFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone, com_flag);
  }

  // Caption of the built-in card reader, when it is of the known kind.
  Answer<std::wstring> WMIGetCardReaderCaption(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetCardReaderCaption)>(138, 1024, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Product family.
  Answer<std::wstring> WMIGetComputerFamilyName(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetComputerFamilyName)>(139, 256, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Number of external monitors; 0 also when the query failed.
  Answer<uint32_t> WMIGetExternMonitorNum(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::WMIGetExternMonitorNum)>(
        140, Table{{{0u, Reason::kNoAnswer, true}}}, detail::Doubt::kNone, com_flag);
  }

  // "instance name,vot=technology" of each external monitor.
  Answer<std::wstring> WMIGetExternMonitorPropList(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetExternMonitorPropList)>(
        141, 4096, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Caption of each video controller.
  Answer<std::wstring> WMIGetGPUInfo(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetGPUInfo)>(142, 1024, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Load of the graphics engines of all processes, added up, 0 to 100; 0 also when there is no engine. A number of 16
  // bits, in %.
  Answer<uint32_t> WMIGetGPUUsg(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::WMIGetGPUUsg)>(
        143, Table{{{0xFFFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone, com_flag);
  }

  // Caption of each fixed disk of any kind.
  Answer<std::wstring> WMIGetHDDCaption(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetHDDCaption)>(144, 2048, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // "model,size in bytes,media type" of each hard disk.
  Answer<std::wstring> WMIGetHDDInfo(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetHDDInfo)>(145, 4096, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Device id of each hard disk.
  Answer<std::wstring> WMIGetHDDList(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetHDDList)>(146, 1024, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Model of each hard disk.
  Answer<std::wstring> WMIGetHDDModel(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetHDDModel)>(147, 2048, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Size in bytes of each fixed disk of any kind.
  Answer<std::wstring> WMIGetHDDSize(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetHDDSize)>(148, 1024, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Free space of the hard disks' volumes.
  Answer<DiskUsage> WMIGetHDDUsage(uint32_t com_flag = 1) const {
    return TwoTexts<decltype(&::WMIGetHDDUsage)>(149, 4096, com_flag);
  }

  // Name of each monitor that tells one.
  Answer<std::wstring> WMIGetLCDModel(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetLCDModel)>(150, 512, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Address of each physical adapter.
  Answer<std::wstring> WMIGetMacAddress(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetMacAddress)>(151, 1024, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Configured speed of the last listed memory module in MT/s as decimal text; "-1" when it can't be told.
  Answer<std::wstring> WMIGetMemFrequency(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    using Texts = std::array<detail::ReservedText, 1>;
    return LongText<decltype(&::WMIGetMemFrequency)>(
        152, 16, Table{{{0u, Reason::kNoAnswer}}}, Texts{{{"-1", Reason::kNoAnswer}}}, com_flag);
  }

  // "manufacturer,part number,capacity in bytes,speed in MT/s,slot" of each memory module.
  Answer<std::wstring> WMIGetMemInfo(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetMemInfo)>(153, 4096, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Manufacturer of each memory module.
  Answer<std::wstring> WMIGetMemManufacture(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetMemManufacture)>(154, 1024, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Part number of each memory module.
  Answer<std::wstring> WMIGetMemModel(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetMemModel)>(155, 1024, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Capacity of each memory module in bytes.
  Answer<std::wstring> WMIGetMemSize(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetMemSize)>(156, 1024, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Product name of the baseboard.
  Answer<std::wstring> WMIGetModelName(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetModelName)>(157, 256, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Brightness of the built-in display. A number of 8 bits, in %.
  Answer<uint32_t> WMIGetMonitorBrightness(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::WMIGetMonitorBrightness)>(
        158, Table{{{0xFFFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone, com_flag);
  }

  // Caption and architecture of the operating system.
  Answer<std::wstring> WMIGetOSInfo(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetOSInfo)>(159, 256, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // "model,size in bytes,media type,device id" of each disk; media type 3: hard disk, 4: solid-state disk.
  Answer<std::wstring> WMIGetPhysicalDiskInfo(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetPhysicalDiskInfo)>(160, 4096, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Product name of the system.
  Answer<std::wstring> WMIGetProductName(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetProductName)>(161, 256, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Caption of each removable disk.
  Answer<std::wstring> WMIGetSDCardCaption(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetSDCardCaption)>(163, 1024, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // "size in bytes,caption" of each removable disk.
  Answer<std::wstring> WMIGetSDCardSize(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetSDCardSize)>(164, 2048, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Serial number of the system.
  Answer<std::wstring> WMIGetSN(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetSN)>(165, 256, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Device id of each solid-state disk.
  Answer<std::wstring> WMIGetSSDList(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetSSDList)>(166, 1024, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Model of each solid-state disk.
  Answer<std::wstring> WMIGetSSDModel(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetSSDModel)>(167, 2048, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Free space of the solid-state disks' volumes.
  Answer<DiskUsage> WMIGetSSDUsage(uint32_t com_flag = 1) const {
    return TwoTexts<decltype(&::WMIGetSSDUsage)>(168, 4096, com_flag);
  }

  // Form of the machine by its first chassis type: "Notebook", "Desktop" or "unknown".
  Answer<std::wstring> WMIGetSystemChassisTypes(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetSystemChassisTypes)>(169, 16, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Serial number of the baseboard.
  Answer<std::wstring> WMIGetType2SN(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetType2SN)>(170, 256, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // "received,sent" of the Wi-Fi adapter in bytes per second.
  Answer<std::wstring> WMIGetWiFiBytesPersec(uint32_t com_flag = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return LongText<decltype(&::WMIGetWiFiBytesPersec)>(171, 256, Table{{{0u, Reason::kNoAnswer}}}, {}, com_flag);
  }

  // Name of the Wi-Fi adapter.
  Answer<std::wstring> WMIGetWiFiCardName(uint8_t com_flag = 1) const {
    return Allocated<decltype(&::WMIGetWiFiCardName)>(172, com_flag);
  }

  // ---- Wi-Fi: the link and the access points around it ----

  // Vendor prefix of the connected access point's address, "00:11:22".
  Answer<std::string> RF_AP_MAC() const {
    using Texts = std::array<detail::ReservedText, 2>;
    return Text<char, decltype(&::RF_AP_MAC)>(
        89, 13, {}, Texts{{{"init_string", Reason::kNotCollected}, {"error_string", Reason::kNoAnswer}}});
  }

  // Kind of the connection, such as "802.11ax".
  Answer<std::string> RF_PhyMode() const {
    using Texts = std::array<detail::ReservedText, 2>;
    return Returned<decltype(&::RF_PhyMode)>(
        94, Texts{{{"init_string", Reason::kNotCollected}, {"error_string", Reason::kNoAnswer}}});
  }

  // Description of the Wi-Fi adapter.
  Answer<std::wstring> RF_WiFiCardName() const {
    using Table = std::array<detail::Reserved, 2>;
    using Texts = std::array<detail::ReservedText, 2>;
    return Text<wchar_t, decltype(&::RF_WiFiCardName)>(
        102, 256, Table{{{22u, Reason::kRefused}, {0x7FFFFFFFu, Reason::kNoAnswer}}},
        Texts{{{"init_string", Reason::kNotCollected}, {"error_string", Reason::kNoAnswer}}});
  }

  // Channel number of the connected interface.
  Answer<uint32_t> RF_WiFiChannel() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::RF_WiFiChannel)>(
        103, Table{{{0xFFFFFC18u, Reason::kNotCollected}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // 1: a Wi-Fi interface is connected, 0: none is.
  Answer<bool> RF_WiFiIsConnected() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<bool, decltype(&::RF_WiFiIsConnected)>(
        104, Table{{{0xFFFFFC18u, Reason::kNotCollected}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Greatest rate that the connected access point can receive; 0: its beacon does not tell. A number of 32 bits, in
  // Mbit/s.
  Answer<uint32_t> RF_WiFiMaxRate() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::RF_WiFiMaxRate)>(
        105, Table{{{0xFFFFFC18u, Reason::kNotCollected}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Signal strength of the connected access point. A signed number of 32 bits, in dBm.
  Answer<int32_t> RF_WiFiRssi() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<int32_t, decltype(&::RF_WiFiRssi)>(
        106, Table{{{0xFFFFFC18u, Reason::kNotCollected}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Access points on 2.4 GHz by channel, as JSON with text counts.
  Answer<std::string> RF_WiFi_2_4G_AP_Ch_Num() const {
    using Texts = std::array<detail::ReservedText, 2>;
    return Returned<decltype(&::RF_WiFi_2_4G_AP_Ch_Num)>(
        107, Texts{{{"init_string", Reason::kNotCollected}, {"error_string", Reason::kNoAnswer}}});
  }

  // Access points on 2.4 GHz.
  Answer<uint32_t> RF_WiFi_2_4G_AP_Num() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::RF_WiFi_2_4G_AP_Num)>(
        108, Table{{{0xFFFFFC18u, Reason::kNotCollected}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Access points on 2.4 GHz by signal strength, as JSON with text counts.
  Answer<std::string> RF_WiFi_2_4G_AP_RSSI_Num() const {
    using Texts = std::array<detail::ReservedText, 2>;
    return Returned<decltype(&::RF_WiFi_2_4G_AP_RSSI_Num)>(
        109, Texts{{{"init_string", Reason::kNotCollected}, {"error_string", Reason::kNoAnswer}}});
  }

  // Access points on 5 GHz by band, as JSON with text counts.
  Answer<std::string> RF_WiFi_5G_AP_Band_Num() const {
    using Texts = std::array<detail::ReservedText, 2>;
    return Returned<decltype(&::RF_WiFi_5G_AP_Band_Num)>(
        110, Texts{{{"init_string", Reason::kNotCollected}, {"error_string", Reason::kNoAnswer}}});
  }

  // Access points on 5 GHz.
  Answer<uint32_t> RF_WiFi_5G_AP_Num() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::RF_WiFi_5G_AP_Num)>(
        111, Table{{{0xFFFFFC18u, Reason::kNotCollected}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Access points on 5 GHz by signal strength, as JSON with text counts.
  Answer<std::string> RF_WiFi_5G_AP_RSSI_Num() const {
    using Texts = std::array<detail::ReservedText, 2>;
    return Returned<decltype(&::RF_WiFi_5G_AP_RSSI_Num)>(
        112, Texts{{{"init_string", Reason::kNotCollected}, {"error_string", Reason::kNoAnswer}}});
  }

  // Access points on 6 GHz by band, as JSON with text counts.
  Answer<std::string> RF_WiFi_6G_AP_NUII_Num() const {
    using Texts = std::array<detail::ReservedText, 2>;
    return Returned<decltype(&::RF_WiFi_6G_AP_NUII_Num)>(
        113, Texts{{{"init_string", Reason::kNotCollected}, {"error_string", Reason::kNoAnswer}}});
  }

  // Access points on 6 GHz.
  Answer<uint32_t> RF_WiFi_6G_AP_Num() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::RF_WiFi_6G_AP_Num)>(
        114, Table{{{0xFFFFFC18u, Reason::kNotCollected}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Access points on 6 GHz by signal strength, as JSON with text counts.
  Answer<std::string> RF_WiFi_6G_AP_RSSI_Num() const {
    using Texts = std::array<detail::ReservedText, 2>;
    return Returned<decltype(&::RF_WiFi_6G_AP_RSSI_Num)>(
        115, Texts{{{"init_string", Reason::kNotCollected}, {"error_string", Reason::kNoAnswer}}});
  }

  // Signal strength at the main and at the auxiliary antenna in dBm, "-52:-58".
  Answer<std::string> RF_WiFi_Main_Aux_Rssi() const {
    using Texts = std::array<detail::ReservedText, 1>;
    return Returned<decltype(&::RF_WiFi_Main_Aux_Rssi)>(116, Texts{{{"0:0", Reason::kNotCollected}}});
  }

  // ---- Bluetooth, USB, HDMI and the kind of network link ----

  // Connected devices on the last radio that has any.
  Answer<uint32_t> RF_BTConnectedNum() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<uint32_t, decltype(&::RF_BTConnectedNum)>(
        90, Table{{{0xFFFFFC18u, Reason::kNotPresent}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // The kinds of the connected Bluetooth devices, one word for each, each ended by ";".
  Answer<std::string> RF_BTConnectedType() const {
    using Texts = std::array<detail::ReservedText, 3>;
    return Returned<decltype(&::RF_BTConnectedType)>(
        91, Texts{{{"init_string", Reason::kNotPresent}, {"error_string", Reason::kNoAnswer},
        {"", Reason::kNoAnswer}}});
  }

  // 1: Bluetooth devices are connected.
  Answer<bool> RF_BTIsUsed() const {
    using Table = std::array<detail::Reserved, 2>;
    return Number<bool, decltype(&::RF_BTIsUsed)>(
        92, Table{{{0xFFFFFC18u, Reason::kNotPresent}, {0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // The kind of the network link: "ETHERNET", "WWANPP2", "WIFI".
  Answer<std::string> RF_Net_Connected_Type() const {
    using Texts = std::array<detail::ReservedText, 2>;
    return Returned<decltype(&::RF_Net_Connected_Type)>(
        93, Texts{{{"Unknow", Reason::kNotPresent}, {"", Reason::kNoAnswer}}});
  }

  // 1: an HDMI monitor was connected while collecting.
  Answer<bool> RF_USBHDMIIsUsed() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<bool, decltype(&::RF_USBHDMIIsUsed)>(
        95, Table{{{0u, Reason::kNoAnswer, true}}}, detail::Doubt::kNone);
  }

  // Whether a USB device is plugged into a type-C port: 2 type C, 1 other.
  Answer<uint32_t> RF_USBISTYPEC(const std::wstring& device_instance_id) const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::RF_USBISTYPEC)>(
        96, Table{{{0u, Reason::kNotPresent}}}, detail::Doubt::kNone, device_instance_id.c_str());
  }

  // 1: a disk was busy while collecting.
  Answer<bool> RF_USBIsTranster() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<bool, decltype(&::RF_USBIsTranster)>(
        97, Table{{{0u, Reason::kNoAnswer, true}}}, detail::Doubt::kNone);
  }

  // USB mass-storage devices by USB version, as JSON with text counts.
  Answer<std::string> RF_USBNum() const {
    using Texts = std::array<detail::ReservedText, 2>;
    return Returned<decltype(&::RF_USBNum)>(98, Texts{{{"init_string", Reason::kNoAnswer}, {"", Reason::kNoAnswer}}});
  }

  // Port number of each of these devices, each followed by ","; empty when there is none.
  Answer<std::string> RF_USBPort() const {
    using Texts = std::array<detail::ReservedText, 1>;
    return Returned<decltype(&::RF_USBPort)>(99, Texts{{{"init_string", Reason::kNoAnswer}}});
  }

  // User-accessible ports with a device on them whose connector is not type C.
  Answer<uint32_t> RF_USB_A_Num() const {
    return Number<uint32_t, decltype(&::RF_USB_A_Num)>(100, {}, detail::Doubt::kNone);
  }

  // User-accessible type-C ports with a device on them.
  Answer<uint32_t> RF_USB_C_Num() const {
    return Number<uint32_t, decltype(&::RF_USB_C_Num)>(101, {}, detail::Doubt::kNone);
  }

  // ---- State of the operating system and installed versions ----

  // Driver version of the device "Vexa System Control Interface V2".
  Answer<std::wstring> GetInfVersion() const {
    using Texts = std::array<detail::ReservedText, 1>;
    return Text<wchar_t, decltype(&::GetInfVersion)>(70, 64, {}, Texts{{{"", Reason::kNotPresent}}});
  }

  // Version of the companion app from the store.
  Answer<std::wstring> GetUWPVersion() const {
    using Texts = std::array<detail::ReservedText, 1>;
    return Text<wchar_t, decltype(&::GetUWPVersion)>(73, 64, {}, Texts{{{"", Reason::kNotPresent}}});
  }

  // 1: Windows runs in S mode; 0 also when the system can't tell.
  Answer<bool> System_Check_S_Mode() const {
    return Number<bool, decltype(&::System_Check_S_Mode)>(119, {}, detail::Doubt::kNone);
  }

  // The local time as "2026-02-03 09:05:00".
  Answer<std::string> System_Read_LocalTime() const {
    using Table = std::array<detail::Reserved, 1>;
    return Text<char, decltype(&::System_Read_LocalTime)>(120, 20, Table{{{0u, Reason::kRefused}}}, {});
  }

  // The EC's tablet-mode byte; 0: a notebook, also on machines whose EC reports no firmware revision.
  Answer<uint32_t> System_Read_TabletMode() const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<uint32_t, decltype(&::System_Read_TabletMode)>(
        121, Table{{{0x7FFFFFFFu, Reason::kNoAnswer}}}, detail::Doubt::kNone);
  }

  // Master volume of the default speaker, cut to a whole number; muting does not show. A signed number of 32 bits, in
  // %.
  Answer<int32_t> System_Read_VolumeLevel(uint8_t initialize_com = 1) const {
    using Table = std::array<detail::Reserved, 1>;
    return Number<int32_t, decltype(&::System_Read_VolumeLevel)>(
        122, Table{{{0xFFFFFFFFu, Reason::kNotPresent}}}, detail::Doubt::kNone, initialize_com);
  }

 private:
  friend class Session;

  explicit Library(std::shared_ptr<const detail::Functions> functions) : functions_(std::move(functions)) {}

#ifdef _WIN32
  static AnyFunction FromModule(void* module, const char* name) {
    return reinterpret_cast<AnyFunction>(
        reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name)));
  }

  static void FreeTaskMemory(void* memory) {
    using Free = void(WINAPI*)(void*);
    static const HMODULE ole = LoadLibraryExW(L"ole32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    const auto free = ole == nullptr ? nullptr : reinterpret_cast<Free>(FromModule(ole, "CoTaskMemFree"));
    if (free != nullptr) free(memory);
  }
#endif

  template <typename Function>
  Function Get(size_t place) const {
    return reinterpret_cast<Function>(functions_->by_place[place]);
  }

  // The answer of a plain reading for the cross-check; what is no plain number counts as none.
  uint32_t Ask(size_t place) const {
    const auto read = Get<uint32_t (*)()>(place);
    return read == nullptr ? VEXA_NO_ANSWER : read();
  }

  // Nothing: the doubtful answer is a true reading.
  std::optional<Reason> Doubtful(const ExportFacts& facts, detail::Doubt doubt) const {
    constexpr auto kIsPlain = [](uint32_t answer) {
      return answer != 0 && answer != VEXA_NO_ANSWER && answer != VEXA_NOT_AVAILABLE;
    };
    const size_t voltage_place = detail::Place("BatteryHealthyTable_PackageVoltage");
    const bool ask_battery = doubt == detail::Doubt::kBattery && functions_->by_place[voltage_place] != nullptr;
    const uint32_t voltage = ask_battery ? Ask(voltage_place) : VEXA_NO_ANSWER;
    // A firmware call that failed answers 0 too: the pack's temperature stands in for its voltage.
    const bool answered = kIsPlain(voltage) || (ask_battery && voltage == 0 &&
                                                kIsPlain(Ask(detail::Place("BatteryHealthyTable_Temperature"))));
    if (answered && facts.on_arm64) return std::nullopt;
    const uint32_t version = Ask(detail::Place("BatteryHealthyTable_ReadVersion"));
    // A battery without a version: an ARM64 machine, whose gauge is asked through the firmware.
    if (version == VEXA_NO_ANSWER) return answered ? Reason::kUnsupported : Reason::kNoAnswer;
    if (version < facts.least_table_version) return Reason::kUnsupported;
    if (ask_battery && (voltage == VEXA_NO_ANSWER || voltage == VEXA_NOT_AVAILABLE)) return Reason::kNoAnswer;
    return std::nullopt;
  }

  template <typename Value, typename Function, typename... Arguments>
  Answer<Value> Number(size_t place, std::span<const detail::Reserved> reserved, detail::Doubt doubt,
                       Arguments... arguments) const {
    const auto function = Get<Function>(place);
    if (function == nullptr) return std::unexpected(Reason::kMissingExport);
    const auto answer = static_cast<uint32_t>(function(arguments...));
    for (const detail::Reserved& one : reserved) {
      if (one.value != answer) continue;
      if (!one.also_reading) return std::unexpected(one.reason);
      if (doubt == detail::Doubt::kNone) break;
      if (const std::optional<Reason> reason = Doubtful(kExports[place], doubt)) return std::unexpected(*reason);
      break;
    }
    if constexpr (std::is_same_v<Value, bool>) {
      if (answer > 1) return std::unexpected(Reason::kNoAnswer);  // no flag has such an answer
      return answer != 0;
    } else {
      return static_cast<Value>(answer);
    }
  }

  template <typename Function, typename... Arguments>
  Answer<void> Done(size_t place, std::span<const detail::Reserved> reserved, Arguments... arguments) const {
    const Answer<uint32_t> answer = Number<uint32_t, Function>(place, reserved, detail::Doubt::kNone, arguments...);
    if (!answer) return std::unexpected(answer.error());
    if (*answer != 1) return std::unexpected(Reason::kRefused);
    return {};
  }

  // A text in a buffer of known capacity; it stays empty when the export leaves the buffer as it was.
  template <typename Char, typename Function, typename... Arguments>
  Answer<std::basic_string<Char>> Text(size_t place, size_t capacity, std::span<const detail::Reserved> reserved,
                                       std::span<const detail::ReservedText> texts, Arguments... arguments) const {
    const auto function = Get<Function>(place);
    if (function == nullptr) return std::unexpected(Reason::kMissingExport);
    std::basic_string<Char> text(capacity, Char{});
    if constexpr (std::is_void_v<decltype(function(text.data(), arguments...))>) {
      function(text.data(), arguments...);
    } else {
      const uint32_t answer = function(text.data(), arguments...);
      for (const detail::Reserved& one : reserved) {
        if (one.value == answer) return std::unexpected(one.reason);
      }
    }
    text.resize(std::min(text.find(Char{}), text.size()));
    return detail::JudgeText(std::move(text), texts);
  }

  // A text whose length the export tells when it is given no buffer. What it answers then may be longer, when hardware
  // was plugged in meanwhile, so there is room for twice as much.
  template <typename Function>
  Answer<std::wstring> LongText(size_t place, size_t capacity, std::span<const detail::Reserved> reserved,
                                std::span<const detail::ReservedText> texts, uint32_t com_flag) const {
    const auto function = Get<Function>(place);
    if (function == nullptr) return std::unexpected(Reason::kMissingExport);
    const size_t length = function(nullptr, com_flag);
    return Text<wchar_t, Function>(place, std::max(capacity, 2 * length + 1), reserved, texts, com_flag);
  }

  template <typename Function>
  Answer<DiskUsage> TwoTexts(size_t place, size_t capacity, uint32_t com_flag) const {
    const auto function = Get<Function>(place);
    if (function == nullptr) return std::unexpected(Reason::kMissingExport);
    const size_t room = std::max(capacity, 2 * size_t{function(nullptr, nullptr, com_flag)} + 1);
    std::wstring first(room, L'\0');
    std::wstring second(room, L'\0');
    if (function(first.data(), second.data(), com_flag) == 0) return std::unexpected(Reason::kNoAnswer);
    return DiskUsage{first.c_str(), second.c_str()};
  }

  template <typename Function>
  Answer<std::wstring> Allocated(size_t place, uint8_t com_flag) const {
    const auto function = Get<Function>(place);
    if (function == nullptr) return std::unexpected(Reason::kMissingExport);
    wchar_t* given = nullptr;
    function(&given, com_flag);
    if (given == nullptr) return std::unexpected(Reason::kNoAnswer);
    std::wstring text = given;
    functions_->free_text(given);
    if (text.empty()) return std::unexpected(Reason::kNoAnswer);
    return text;
  }

  template <typename Function>
  Answer<std::string> Returned(size_t place, std::span<const detail::ReservedText> texts) const {
    const auto function = Get<Function>(place);
    if (function == nullptr) return std::unexpected(Reason::kMissingExport);
    const VexaText text = function();
    const std::string_view characters(text.text, sizeof text.text);
    return detail::JudgeText(std::string(characters.substr(0, characters.find('\0'))), texts);
  }

  template <typename Record, typename Function>
  Answer<Record> Filled(size_t place) const {
    const auto function = Get<Function>(place);
    if (function == nullptr) return std::unexpected(Reason::kMissingExport);
    Record record = {};
    if (function(&record) != 1) return std::unexpected(Reason::kNoAnswer);
    return record;
  }

  template <typename Function>
  void Line(size_t place, std::wstring_view text) const {
    const auto function = Get<Function>(place);
    if (function != nullptr) function(static_cast<int32_t>(text.size() * sizeof(wchar_t)), text.data());
  }

  std::shared_ptr<const detail::Functions> functions_;
};

inline Session::~Session() {
  if (functions_ == nullptr) return;
  const auto shutdown =
      reinterpret_cast<decltype(&::ShutdownWinIo)>(functions_->by_place[detail::Place("ShutdownWinIo")]);
  shutdown();
}

}  // namespace vexa

#endif  // VEXA_VEXA_HPP_
