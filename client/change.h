// A change of a setting: what was asked for, what happened, and what that proves. Nothing here calls the library.
#ifndef CLIENT_CHANGE_H_
#define CLIENT_CHANGE_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "client/settings_rules.h"

namespace vexahealth {

enum class Setting { kChargeLimit, kQuietFan };

struct ChangeRequest {
  Setting setting = Setting::kChargeLimit;
  int32_t value = 0;     // percent; quiet fan: 1 on, 0 off
  bool dry_run = false;  // find out what would be done, change nothing
};

// The request from its words on the command line, or what is wrong with them.
struct ParsedChange {
  ChangeRequest request;
  std::string error;  // empty: none
};
[[nodiscard]] ParsedChange ParseChange(std::string_view setting, std::string_view value);

// What the calls answered. Nothing: not called.
struct ChangeFacts {
  bool exported = false;  // the library has the export that changes the setting
  SettingAnswers before;
  std::optional<bool> set;      // WMISetBatteryHealth, WMISetQuietFan
  std::optional<bool> written;  // WMISetBatteryHealthToUser
  SettingAnswers after;
};

enum class Outcome {
  kNotTried,      // the library is not loaded
  kNotSupported,  // the firmware does not offer the setting, or does not answer: nothing was sent
  kPlanned,       // a dry run of what would be sent
  kRefused,       // the firmware refused, or did not answer
  kAccepted,
  kNotConfirmed,  // accepted, and then something was not as it should be
};

struct Change {
  ChangeRequest request;
  Outcome outcome = Outcome::kNotTried;
  Value before;                      // the quiet fan's state, the remembered charge limit
  std::optional<bool> accepted;      // by the firmware
  std::optional<bool> file_written;  // the charge limit's setting file; nothing: not tried
  std::optional<bool> reads_back;    // the quiet fan's state, the remembered charge limit
  std::vector<std::string> plan;     // of a dry run
  std::vector<std::string> verified;
  std::vector<std::string> not_verified;
  std::string error;  // why it is none of kPlanned and kAccepted
};

// The export that changes the setting.
const char* SetExport(Setting setting);

// The row whose answer tells whether the firmware offers the setting.
SettingRow SupportRow(Setting setting);
SettingRow RememberedRow(Setting setting);

// Of each row the newest answer.
[[nodiscard]] SettingAnswers NewestAnswers(const ChangeFacts& facts);

// Whether the firmware offers the setting, by the answers before.
bool IsOffered(Setting setting, const SettingAnswers& before);

[[nodiscard]] Change DecideChange(const ChangeRequest& request, const ChangeFacts& facts);

// "charge-limit" and "quiet-fan"; "charge-limit 80 %", "quiet-fan on".
std::string_view SettingName(Setting setting);
std::string RequestedText(const ChangeRequest& request);

// "accepted", "not_supported" and so on.
std::string_view OutcomeName(Outcome outcome);

// Exit code for a library that was loaded.
int ExitCodeFor(Outcome outcome);

}  // namespace vexahealth

#endif  // CLIENT_CHANGE_H_
