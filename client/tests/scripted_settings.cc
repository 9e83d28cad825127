#include "client/tests/scripted_settings.h"

#include <algorithm>
#include <string_view>

namespace vexahealth {
namespace {

SettingsMachine& Enter(std::string call, uint32_t com_flag) {
  TheMachine().calls.push_back(std::move(call));
  TheMachine().com_flags.push_back(com_flag);
  return TheMachine();
}

uint32_t LimitSupported(uint32_t com_flag) noexcept {
  const SettingsMachine& machine = Enter("WMICheckBatteryHealthSupport", com_flag);
  return machine.firmware_answers && machine.offers_limit ? 1 : 0;
}

uint32_t LimitRemembered(uint32_t com_flag) noexcept {
  const SettingsMachine& machine = Enter("WMIGetBatteryHealth", com_flag);
  if (machine.key_limit) return *machine.key_limit;
  return machine.folder_exists ? machine.limit_file.value_or(100) : 100;
}

uint32_t FanState(uint32_t com_flag) noexcept {
  const SettingsMachine& machine = Enter("WMICheckQuietFanSupport", com_flag);
  return machine.firmware_answers && machine.fan ? *machine.fan : VEXA_NOT_SUPPORTED;
}

uint32_t FanRemembered(uint32_t com_flag) noexcept {
  const SettingsMachine& machine = Enter("WMIGetQuietFan", com_flag);
  if (machine.key_mode) return *machine.key_mode;
  return machine.folder_exists ? machine.fan_file.value_or(0) : 0;
}

uint32_t Folder(wchar_t* path, uint32_t com_flag) noexcept {
  const SettingsMachine& machine = Enter("WMIGetAppPath", com_flag);
  const std::wstring text = machine.folder.value_or(L"ERROR_READREG");
  std::copy_n(text.c_str(), text.size() + 1, path);
  return machine.folder ? 1 : 0;
}

uint32_t FolderExists(uint32_t com_flag) noexcept { return Enter("WMICheckAppExist", com_flag).folder_exists ? 1 : 0; }

uint32_t SetLimit(int32_t level, uint32_t com_flag) noexcept {
  const SettingsMachine& machine = Enter("WMISetBatteryHealth " + std::to_string(level), com_flag);
  return machine.firmware_answers && !machine.refuses ? 1 : 0;
}

uint32_t RememberLimit(int32_t level, uint32_t com_flag) noexcept {
  SettingsMachine& machine = Enter("WMISetBatteryHealthToUser " + std::to_string(level), com_flag);
  if (!machine.folder_exists || machine.files_are_read_only) return 0;
  machine.limit_file = static_cast<uint32_t>(level);
  return 1;
}

uint32_t SetFan(uint8_t on, uint32_t com_flag) noexcept {
  SettingsMachine& machine = Enter("WMISetQuietFan " + std::to_string(on), com_flag);
  if (!machine.firmware_answers || machine.refuses) return 0;
  if (!machine.fan_is_stuck) machine.fan = on;
  if (machine.folder_exists && !machine.files_are_read_only) machine.fan_file = on;
  return 1;
}

}  // namespace

SettingsMachine& TheMachine() {
  static SettingsMachine machine;
  return machine;
}

SettingExports ScriptedSettings() {
  SettingExports exports;
  exports.rows = {reinterpret_cast<AnyExport>(&LimitSupported), reinterpret_cast<AnyExport>(&LimitRemembered),
                  reinterpret_cast<AnyExport>(&FanState),       reinterpret_cast<AnyExport>(&FanRemembered),
                  reinterpret_cast<AnyExport>(&Folder),         reinterpret_cast<AnyExport>(&FolderExists)};
  exports.set_limit = &SetLimit;
  exports.remember_limit = &RememberLimit;
  exports.set_fan = &SetFan;
  return exports;
}

}  // namespace vexahealth
