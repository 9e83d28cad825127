#include "client/settings_rules.h"

#include <algorithm>

#include "client/rules.h"
#include "client/text.h"
#include "client/values.h"

namespace vexahealth {
namespace {

constexpr uint32_t kLargestKeyMode = 3;  // of the quiet fan, in the hotkey utility's key

bool IsPlain(SettingRow row, const std::optional<Answer>& answer) {
  return answer && *answer && !IsDoubtful(row, answer);
}

std::optional<bool> FolderExists(const SettingAnswers& answers) {
  const std::optional<uint32_t> exists = NumberIn(answers, kFolderExists);
  return exists ? std::optional(*exists == 1) : std::nullopt;
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

Reading DecideFolderExists(const Row& row, bool exists, const std::optional<Answer>& folder) {
  if (exists) return Ok(row, true);
  if (!folder || (!*folder && folder->error() == vexa::Reason::kMissingExport)) {
    return Ok(row, false, "or the signed-in user can't be told");
  }
  return *folder ? Ok(row, false) : Missing(row, Status::kNotPresent, "no stored path is known");
}

Reading DecideSetting(SettingRow id, const SettingAnswers& answers, bool firmware_works) {
  const Row& row = kSettingRows[id];
  const Answer& answer = *answers[id];
  if (IsDoubtful(id, answer)) return Doubtful(id, firmware_works);
  if (!answer) return Missing(row, answer.error(), "none is stored, or the signed-in user can't be told");
  switch (id) {
    case kFolder:
      return answer->text.empty() ? Missing(row, Status::kNotPresent, "the stored path is empty")
                                  : Ok(row, answer->text);
    case kLimitRemembered:
    case kFanRemembered: return InItsRange(row, *answer, OriginOf(id, answer->number, FolderExists(answers)));
    case kFolderExists: return DecideFolderExists(row, answer->number == 1, answers[kFolder]);
    case kLimitSupported: return InItsRange(row, *answer, "the limit itself can't be read from the firmware");
    default: return InItsRange(row, *answer);
  }
}

}  // namespace

std::optional<uint32_t> NumberIn(const SettingAnswers& answers, SettingRow row) {
  const std::optional<Answer>& answer = answers[row];
  return answer && *answer ? std::optional((*answer)->number) : std::nullopt;
}

bool IsDoubtful(SettingRow row, const std::optional<Answer>& answer) {
  if (!answer) return false;
  if (row == kFanState) return !*answer && answer->error() == vexa::Reason::kUnsupported;
  return row == kLimitSupported && *answer && (*answer)->number == 0;
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
    if (answers[i]) readings[i] = DecideSetting(static_cast<SettingRow>(i), answers, works);
  }
  return readings;
}

bool FirmwareAnswered(const std::vector<Reading>& settings) {
  return settings[kLimitSupported].status == Status::kOk || settings[kFanState].status == Status::kOk;
}

}  // namespace vexahealth
