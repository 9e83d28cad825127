// A firmware with its settings and the places that remember them, as the library shows it: plain functions with state.
#ifndef CLIENT_TESTS_SCRIPTED_SETTINGS_H_
#define CLIENT_TESTS_SCRIPTED_SETTINGS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "client/settings_catalogue.h"

namespace vexahealth {

struct SettingsMachine {
  bool firmware_answers = true;
  bool offers_limit = true;
  std::optional<uint32_t> fan = 0;  // nothing: the firmware has none
  bool refuses = false;
  bool fan_is_stuck = false;          // accepts and does not switch
  std::optional<uint32_t> key_limit;  // of the hotkey utility; nothing: its device is not there
  std::optional<uint32_t> key_mode;
  std::optional<std::wstring> folder;  // as stored
  bool folder_exists = false;
  bool files_are_read_only = false;
  std::optional<uint32_t> limit_file;
  std::optional<uint32_t> fan_file;

  std::vector<std::string> calls;  // names of the exports, "WMISetBatteryHealth 80"
  std::vector<uint32_t> com_flags;
};

// The machine that the exports below work on.
SettingsMachine& TheMachine();

SettingExports ScriptedSettings();

}  // namespace vexahealth

#endif  // CLIENT_TESTS_SCRIPTED_SETTINGS_H_
