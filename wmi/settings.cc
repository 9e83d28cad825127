// The battery's charge limit and the quiet fan, in the firmware and where they are remembered.
#include "vexa/settings.h"

#include <optional>
#include <string>

#include "frame/export_wall.h"
#include "frame/line.h"
#include "frame/log.h"
#include "frame/registry.h"
#include "wmi/application_folder.h"
#include "wmi/decimal.h"
#include "wmi/firmware_device.h"
#include "wmi/method_invoker.h"
#include "wmi/settings_text.h"

namespace vexa {
namespace {

// Firmware device ids, as they travel.
constexpr wchar_t kChargingRateDevice[] = L"1179735";  // 0x00120057
constexpr wchar_t kQuietFanDevice[] = L"1114137";      // 0x00110019

// Status words: bit 16 tells that the device is there, the low bits are its value.
constexpr wchar_t kPresentValue0[] = L"65536";
constexpr wchar_t kPresentValue1[] = L"65537";
constexpr wchar_t kAccepted[] = L"1";

constexpr wchar_t kHotkeysKey[] =
    L"SOFTWARE\\Vexa\\Vexa System Control Interface\\VexaOptimization\\Vexa Keyboard Hotkeys";
constexpr wchar_t kBatteryHealthFile[] = L"\\BatteryHealthSetting.txt";
constexpr wchar_t kQuietFanFile[] = L"\\QuietFanSetting.txt";
constexpr uint32_t kFullCharge = 100;

// A finished line, built only when somebody listens.
template <typename... Pieces>
void LogLine(const Pieces&... pieces) noexcept {
  LogBuilt(TraceLevel::kVerbose, [&] { return WideLine(pieces...); });
}

std::wstring DeviceStatus(const wchar_t* device, uint32_t com_flag) {
  return wmiMethod(L"DSTS", {{L"Device_ID", device}}, L"device_status", com_flag);
}

std::wstring ControlDevice(const wchar_t* device, const std::wstring& status, uint32_t com_flag) {
  return wmiMethod(L"DEVS", {{L"Device_ID", device}, {L"Control_status", status}}, L"result", com_flag);
}

// Nothing when there is no application folder.
std::optional<std::wstring> BatteryHealthFile(uint32_t com_flag) {
  return ApplicationFolder(com_flag).transform([](const std::wstring& folder) { return folder + kBatteryHealthFile; });
}

uint32_t CheckBatteryHealthSupport(uint32_t com_flag) {
  const std::wstring answer = DeviceStatus(kChargingRateDevice, com_flag);
  LogLine(L"[WMICheckBatteryHealthSupport] output is ", answer);
  const bool supported = answer == kPresentValue0;
  LogLine(supported ? L"[WMICheckBatteryHealthSupport] Support Battery Health"
                    : L"[WMICheckBatteryHealthSupport] Not Support Battery Health");
  return supported ? 1 : 0;
}

uint32_t SetBatteryHealth(int32_t level, uint32_t com_flag) {
  if (CheckBatteryHealthSupport(com_flag) == 0) return 0;
  const std::wstring answer = ControlDevice(kChargingRateDevice, WideDecimal(level), com_flag);
  LogLine(L"[WMISetBatteryHealth] output is ", answer);
  if (answer != kAccepted) return 0;
  LogLine(L"[WMISetBatteryHealth] set battery health ", level, L" success.");
  return 1;
}

uint32_t SetBatteryHealthToUser(int32_t level, uint32_t com_flag) {
  const std::optional<std::wstring> file = BatteryHealthFile(com_flag);
  if (file) LogLine(L"[WMISetBatteryHealthToUser] fname is ", *file);
  if (!file || !WriteNumberFile(*file, level)) {
    LogLine(L"[WMISetBatteryHealthToUser] fail to set ", level, L" to file");
    return 0;
  }
  LogLine(L"[WMISetBatteryHealthToUser] set ", level, L" to ", *file);
  return 1;
}

uint32_t GetBatteryHealth(uint32_t com_flag) {
  // The key's error text, like every unknown text, means 100.
  if (IsObxWmiDevicePresent()) return ChargeLimitOf(ReadRegistryText(kHotkeysKey, L"ChargingRate"));
  const std::optional<std::wstring> file = BatteryHealthFile(com_flag);
  if (!file) return kFullCharge;
  LogLine(L"[WMIGetBatteryHealth] fname is ", *file);
  const uint32_t level = ReadNumberFile(*file).value_or(kFullCharge);
  LogLine(L"[WMIGetBatteryHealth] BatteryHealth is ", level);
  return level;
}

uint32_t CheckQuietFanSupport(uint32_t com_flag) {
  const std::wstring answer = DeviceStatus(kQuietFanDevice, com_flag);
  LogLine(L"[WMICheckQuietFanSupport] output is ", answer);
  if (answer == kPresentValue0) {
    LogLine(L"[WMICheckQuietFanSupport] Quiet Fan Off");
    return 0;
  }
  if (answer == kPresentValue1) {
    LogLine(L"[WMICheckQuietFanSupport] Quiet Fan On");
    return 1;
  }
  LogLine(L"[WMICheckQuietFanSupport] Not Support Quiet Fan");
  return VEXA_NOT_SUPPORTED;
}

void RememberQuietFan(uint8_t on, const wchar_t* setting, uint32_t com_flag) {
  const std::optional<std::wstring> folder = ApplicationFolder(com_flag);
  if (!FolderExists(folder)) return;
  const std::wstring file = *folder + kQuietFanFile;
  LogLine(L"[WMISetQuietFan] fname is ", file);
  if (WriteNumberFile(file, on)) {
    LogLine(L"[WMISetQuietFan] set ", setting, L" to ", file);
  } else {
    LogLine(L"[WMISetQuietFan] Fail to set ", setting, L" to file");
  }
}

uint32_t SetQuietFan(uint8_t on, uint32_t com_flag) {
  const std::wstring answer = ControlDevice(kQuietFanDevice, on != 0 ? L"1" : L"0", com_flag);
  LogLine(L"[WMISetQuietFan] output is ", answer);
  if (answer != kAccepted) {
    LogLine(L"[WMISetQuietFan] wmi fail ");
    return 0;
  }
  // What the firmware accepted stays accepted, whatever becomes of remembering it.
  return Guarded("WMISetQuietFan", 1u, [=] {
    RememberQuietFan(on, on != 0 ? L"On" : L"Off", com_flag);
    return 1u;
  });
}

uint32_t GetQuietFan(uint32_t com_flag) {
  if (IsObxWmiDevicePresent()) return QuietFanModeOf(ReadRegistryText(kHotkeysKey, L"QuietFan"));
  const std::optional<std::wstring> folder = ApplicationFolder(com_flag);
  const std::wstring file = folder.value_or(L"") + kQuietFanFile;
  if (folder) LogLine(L"[WMIGetQuietFan] fname is ", file);
  if (!FolderExists(folder)) {
    LogLine(L"[WMIGetQuietFan] Fail to get Quiet Fan");
    return 0;
  }
  const uint32_t mode = ReadNumberFile(file).value_or(0);
  LogLine(L"[WMIGetQuietFan] Quiet Fan is ", mode);
  LogLine(mode != 0 ? L"[WMIGetQuietFan] Quiet Fan On" : L"[WMIGetQuietFan] Quiet Fan Off");
  return mode;
}

}  // namespace
}  // namespace vexa

uint32_t WMICheckBatteryHealthSupport(uint32_t com_flag) noexcept {
  return vexa::Guarded("WMICheckBatteryHealthSupport", 0u, [=] { return vexa::CheckBatteryHealthSupport(com_flag); });
}

uint32_t WMIGetBatteryHealth(uint32_t com_flag) noexcept {
  return vexa::Guarded("WMIGetBatteryHealth", vexa::kFullCharge, [=] { return vexa::GetBatteryHealth(com_flag); });
}

uint32_t WMISetBatteryHealth(int32_t level, uint32_t com_flag) noexcept {
  return vexa::Guarded("WMISetBatteryHealth", 0u, [=] { return vexa::SetBatteryHealth(level, com_flag); });
}

uint32_t WMISetBatteryHealthToUser(int32_t level, uint32_t com_flag) noexcept {
  return vexa::Guarded("WMISetBatteryHealthToUser", 0u, [=] { return vexa::SetBatteryHealthToUser(level, com_flag); });
}

uint32_t WMICheckQuietFanSupport(uint32_t com_flag) noexcept {
  return vexa::Guarded("WMICheckQuietFanSupport", uint32_t{VEXA_NOT_SUPPORTED},
                       [=] { return vexa::CheckQuietFanSupport(com_flag); });
}

uint32_t WMIGetQuietFan(uint32_t com_flag) noexcept {
  return vexa::Guarded("WMIGetQuietFan", 0u, [=] { return vexa::GetQuietFan(com_flag); });
}

uint32_t WMISetQuietFan(uint8_t on, uint32_t com_flag) noexcept {
  return vexa::Guarded("WMISetQuietFan", 0u, [=] { return vexa::SetQuietFan(on, com_flag); });
}
