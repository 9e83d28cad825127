#include "client/change.h"

#include <utility>

#include "client/text.h"

namespace vexahealth {
namespace {

bool FolderExists(const ChangeFacts& facts) { return NumberIn(facts.before, kFolderExists) == 1; }

// "reads as 80 %" for the remembered value, in the words of its setting.
std::string RememberedText(Setting setting, uint32_t number) {
  return Printf(
      setting == Setting::kChargeLimit ? "the remembered limit reads as %u %%" : "the remembered mode reads as %u",
      number);
}

void Plan(const ChangeFacts& facts, Change& change) {
  const ChangeRequest& request = change.request;
  change.plan.push_back(
      Printf("ask the firmware for %s (%s)", RequestedText(request).c_str(), SetExport(request.setting)));
  if (!FolderExists(facts)) {
    change.plan.emplace_back("remember nothing: no application folder is known");
  } else {
    change.plan.push_back(
        Printf("write %d into the setting file of the application folder (%s)", request.value,
               request.setting == Setting::kChargeLimit ? "WMISetBatteryHealthToUser" : "done by WMISetQuietFan"));
  }
}

// Why a remembered value is not the one that was set.
const char* WhyNotRemembered(const ChangeFacts& facts, Setting setting) {
  if (!FolderExists(facts)) return "no application folder is known to remember it";
  if (setting == Setting::kQuietFan) return "the hotkey utility's key, or a setting file that was not written";
  return facts.written == true ? "it comes from the hotkey utility's key, which is not changed here"
                               : "the setting file was not written";
}

// What the remembered value shows after an accepted change. A value that also stands for "unknown" proves something
// only when it was another one before.
void JudgeRemembered(const ChangeFacts& facts, Change& change) {
  const Setting setting = change.request.setting;
  const SettingRow row = RememberedRow(setting);
  const std::optional<uint32_t> before = NumberIn(facts.before, row);
  const std::optional<uint32_t> after = NumberIn(facts.after, row);
  if (!after) {
    change.not_verified.emplace_back("the remembered value: it was not read");
    return;
  }
  const bool matches = *after == static_cast<uint32_t>(change.request.value);
  if (setting == Setting::kChargeLimit) change.reads_back = matches;
  const std::string text = RememberedText(setting, *after);
  if (!matches) {
    change.not_verified.push_back(text + ": " + WhyNotRemembered(facts, setting));
  } else if (before != after) {
    change.verified.push_back(text + (FolderExists(facts) ? ", from the setting file" : ", which it did not before"));
  } else {
    (IsUnknown(row, *after) ? change.not_verified : change.verified)
        .push_back(text + ", as before; " + OriginOf(row, *after, FolderExists(facts)));
  }
}

void JudgeAcceptedLimit(const ChangeFacts& facts, Change& change) {
  if (facts.written) {
    change.file_written = facts.written;
    if (*change.file_written) {
      change.verified.emplace_back("the setting file was written (WMISetBatteryHealthToUser)");
    } else {
      change.outcome = Outcome::kNotConfirmed;
      change.error = "the firmware accepted the charge limit, but the setting file could not be written";
    }
  } else if (FolderExists(facts)) {
    change.outcome = Outcome::kNotConfirmed;
    change.error =
        "the firmware accepted the charge limit; VexaWinIO64.dll does not export WMISetBatteryHealthToUser, so "
        "the setting file was not written";
  }
  JudgeRemembered(facts, change);
  change.not_verified.emplace_back("the limit inside the firmware: it can't be read back");
}

// What the firmware's quiet fan shows after it was asked to switch, accepted or not.
void JudgeFanState(const ChangeFacts& facts, Change& change) {
  const std::optional<uint32_t> after = NumberIn(facts.after, kFanState);
  const bool told = after == 0 || after == 1;
  if (told) change.reads_back = *after == static_cast<uint32_t>(change.request.value);
  const std::string state = !told ? "the firmware does not tell the quiet fan's state any more"
                                  : Printf("the firmware reports its quiet fan as %s", *after == 1 ? "on" : "off");
  (change.reads_back == true ? change.verified : change.not_verified).push_back(state);
  if (change.outcome == Outcome::kAccepted && change.reads_back != true) {
    change.outcome = Outcome::kNotConfirmed;
    change.error = "the firmware accepted " + RequestedText(change.request) + ", but " + state;
  }
}

void Judge(const ChangeFacts& facts, Change& change) {
  const ChangeRequest& request = change.request;
  change.accepted = facts.set == true;
  change.outcome = *change.accepted ? Outcome::kAccepted : Outcome::kRefused;
  if (*change.accepted) {
    change.verified.push_back("the firmware answered that it accepted " + RequestedText(request));
  } else {
    change.error = "the firmware refused " + RequestedText(request) + ", or did not answer";
  }
  if (request.setting == Setting::kQuietFan) {
    JudgeFanState(facts, change);
    if (*change.accepted) JudgeRemembered(facts, change);
  } else if (*change.accepted) {
    JudgeAcceptedLimit(facts, change);
  } else {
    change.not_verified.emplace_back("the limit inside the firmware: it can't be read back");
  }
}

}  // namespace

const char* SetExport(Setting setting) {
  return setting == Setting::kChargeLimit ? "WMISetBatteryHealth" : "WMISetQuietFan";
}

SettingAnswers NewestAnswers(const ChangeFacts& facts) {
  SettingAnswers newest = facts.before;
  for (size_t i = 0; i < kSettingRowCount; ++i) {
    if (facts.after[i]) newest[i] = facts.after[i];
  }
  return newest;
}

bool IsOffered(Setting setting, const SettingAnswers& before) {
  const std::optional<uint32_t> answer = NumberIn(before, SupportRow(setting));
  return setting == Setting::kChargeLimit ? answer == 1 : answer == 0 || answer == 1;
}

Change DecideChange(const ChangeRequest& request, const ChangeFacts& facts) {
  Change change{.request = request};
  const std::vector<Reading> before = DecideSettings(facts.before);
  const bool limit = request.setting == Setting::kChargeLimit;
  change.before = before[limit ? kLimitRemembered : kFanState].value;
  if (!facts.exported) {
    change.outcome = Outcome::kNotSupported;
    change.error = Printf("VexaWinIO64.dll does not export %s", SetExport(request.setting));
  } else if (!IsOffered(request.setting, facts.before)) {
    const std::string& note = before[SupportRow(request.setting)].note;
    change.outcome = Outcome::kNotSupported;
    change.error = std::string("nothing was changed, there is no ") + (limit ? "charge limit" : "quiet fan") +
                   " to set" + (note.empty() ? "" : ": ") + note;
  } else if (request.dry_run) {
    change.outcome = Outcome::kPlanned;
    Plan(facts, change);
  } else {
    Judge(facts, change);
  }
  return change;
}

}  // namespace vexahealth
