#include "client/settings_rules.h"

#include <algorithm>

#include "client/rules.h"
#include "client/text.h"
#include "client/values.h"

namespace vexahealth {
namespace {

constexpr uint32_t kLargestKeyMode = 3;  // of the quiet fan, in the hotkey utility's key

bool IsPlain(SettingRow row, const std::optional<Answer>& answer) {
  return answer && answer->form == Answer::Form::kNumber && !IsDoubtful(row, answer) &&
         InRange(kSettingRows[row].kind, answer->number);
}

std::optional<bool> FolderExists(const SettingAnswers& answers) {
  const std::optional<Answer>& answer = answers[kFolderExists];
  if (!answer || answer->form != Answer::Form::kNumber || answer->number > 1) return std::nullopt;
  return answer->number == 1;
}

// A doubtful answer of a firmware row, beside the answer of the other one.
Reading Doubtful(SettingRow row, bool firmware_works) {
  const bool limit = row == kLimitSupported;
  if (!firmware_works) {
    return Missing(kSettingRows[row], Status::kNoAnswer,
                   "not supported or no answer, which is one answer here; administrator rights may be missing");
  }
  if (limit) return Ok(kSettingRows[row], false, "the firmware works: it answered for the quiet fan");
  return Missing(kSettingRows[row], Status::kUnsupported, "the firmware works: it answered for the charge limit");
}

Reading DecideFolder(const Answer& answer) {
  const Row& row = kSettingRows[kFolder];
  if (answer.form == Answer::Form::kUnterminated) {
    return Missing(row, Status::kError, "the library wrote past the buffer that it asks for");
  }
  if (answer.number > 1) return OutOfRange(row, answer);
  if (answer.number == 0)
    return Missing(row, Status::kNotPresent, "none is stored, or the signed-in user can't be told");
  if (answer.text.empty()) return Missing(row, Status::kNotPresent, "the stored path is empty");
  return Ok(row, answer.text);
}

Reading DecideFolderExists(const Answer& answer, const std::optional<Answer>& folder) {
  const Row& row = kSettingRows[kFolderExists];
  if (answer.number != 0) return Ok(row, true);
  if (!folder || folder->form == Answer::Form::kMissingExport)
    return Ok(row, false, "or the signed-in user can't be told");
  if (folder->number == 0) return Missing(row, Status::kNotPresent, "no stored path is known");
  return Ok(row, false);
}

}  // namespace

bool IsDoubtful(SettingRow row, const std::optional<Answer>& answer) {
  if (!answer || answer->form != Answer::Form::kNumber) return false;
  return (row == kLimitSupported && answer->number == 0) || (row == kFanState && answer->number == VEXA_NOT_SUPPORTED);
}

bool IsUnknown(SettingRow row, uint32_t number) { return number == (row == kLimitRemembered ? kUnknownLimit : 0); }

std::string OriginOf(SettingRow row, uint32_t number, std::optional<bool> folder_exists) {
  const bool limit = row == kLimitRemembered;
  const bool unknown = IsUnknown(row, number);
  const bool in_key = limit ? std::ranges::find(kChargeLimits, static_cast<int64_t>(number)) != kChargeLimits.end()
                            : number <= kLargestKeyMode;
  if (!in_key) return "from the setting file, which holds any number";
  if (folder_exists == false) {
    return unknown ? Printf("from the hotkey utility's key, or unknown: %u stands for both", number)
                   : "from the hotkey utility's key: no application folder is known";
  }
  return unknown ? Printf("from the hotkey utility's key or the setting file, or unknown: %u stands for all", number)
                 : "from the hotkey utility's key or the setting file";
}

std::vector<Reading> DecideSettings(const SettingAnswers& answers) {
  std::vector<Reading> readings = NothingCollected("not asked", kSettingRows);
  const bool works = IsPlain(kLimitSupported, answers[kLimitSupported]) || IsPlain(kFanState, answers[kFanState]);
  for (size_t i = 0; i < kSettingRowCount; ++i) {
    const auto id = static_cast<SettingRow>(i);
    const Row& row = kSettingRows[i];
    if (!answers[i]) continue;
    const Answer& answer = *answers[i];
    if (answer.form == Answer::Form::kMissingExport) {
      readings[i] = MissingExport(row);
    } else if (id == kFolder) {
      readings[i] = DecideFolder(answer);
    } else if (IsDoubtful(id, answer)) {
      readings[i] = Doubtful(id, works);
    } else if (!InRange(row.kind, answer.number)) {
      readings[i] = OutOfRange(row, answer);
    } else if (id == kLimitRemembered || id == kFanRemembered) {
      readings[i] = Ok(row, ValueFrom(row.kind, answer.number), OriginOf(id, answer.number, FolderExists(answers)));
    } else if (id == kFolderExists) {
      readings[i] = DecideFolderExists(answer, answers[kFolder]);
    } else {
      readings[i] = Ok(row, ValueFrom(row.kind, answer.number),
                       id == kLimitSupported ? "the limit itself can't be read from the firmware" : "");
    }
  }
  return readings;
}

bool FirmwareAnswered(const std::vector<Reading>& settings) {
  return settings[kLimitSupported].status == Status::kOk || settings[kFanState].status == Status::kOk;
}

}  // namespace vexahealth
