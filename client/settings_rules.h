// From what the settings' exports answered to readings. Nothing here calls the library.
//
// Both firmware questions have one answer for "no such setting" and "no answer" alike. Which it is tells the other one:
// a firmware that answers it works, so the doubtful answer then means "no such setting".
//
// Remembered values are kept outside the firmware: in the registry key of the hotkey utility where its device is there,
// else in a file of the application folder. No export tells which; some values can only come from one of them.
#ifndef CLIENT_SETTINGS_RULES_H_
#define CLIENT_SETTINGS_RULES_H_

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "client/reading.h"
#include "client/settings_catalogue.h"

namespace vexahealth {

// One per row of kSettingRows; nothing for those that were not asked.
using SettingAnswers = std::array<std::optional<Answer>, kSettingRowCount>;

// The number of a row that told one.
std::optional<uint32_t> NumberIn(const SettingAnswers& answers, SettingRow row);

// True when the answer of one of the two firmware rows may mean that the firmware did not answer.
bool IsDoubtful(SettingRow row, const std::optional<Answer>& answer);

// One reading per row, kNotCollected for those not asked.
[[nodiscard]] std::vector<Reading> DecideSettings(const SettingAnswers& answers);

// True for the remembered number that also stands for "unknown": 100 % and mode 0.
bool IsUnknown(SettingRow row, uint32_t number);

// Where a remembered number comes from, as far as it shows. folder_exists: nothing when that is not known.
std::string OriginOf(SettingRow row, uint32_t number, std::optional<bool> folder_exists);

// True when one of the two firmware rows is ok: the firmware told something.
bool FirmwareAnswered(const std::vector<Reading>& settings);

}  // namespace vexahealth

#endif  // CLIENT_SETTINGS_RULES_H_
