#include "client/settings_calls.h"

namespace vexahealth {
namespace {

SettingRow OtherFirmwareRow(SettingRow row) { return row == kLimitSupported ? kFanState : kLimitSupported; }

void SetLimit(int32_t level, const vexa::Library& library, ChangeFacts& facts) {
  facts.set = library.WMISetBatteryHealth(level).has_value();
  if (!*facts.set || NumberIn(facts.before, kFolderExists) != 1) return;
  const vexa::Answer<void> written = library.WMISetBatteryHealthToUser(level);
  if (written || written.error() != vexa::Reason::kMissingExport) facts.written = written.has_value();
}

}  // namespace

SettingAnswers AskSettings(const Context& context) {
  SettingAnswers answers;
  for (size_t i = 0; i < kSettingRowCount; ++i) answers[i] = kSettingRows[i].ask(context);
  return answers;
}

ChangeFacts CarryOut(const ChangeRequest& request, const Context& context) {
  ChangeFacts facts;
  const auto ask = [&context](SettingRow row, SettingAnswers& answers) {
    answers[row] = kSettingRows[row].ask(context);
  };
  facts.exported = context.library->Find(SetExport(request.setting)) != nullptr;
  if (!facts.exported) return facts;
  const SettingRow support = SupportRow(request.setting);
  ask(support, facts.before);
  if (IsDoubtful(support, facts.before[support])) ask(OtherFirmwareRow(support), facts.before);
  ask(RememberedRow(request.setting), facts.before);
  ask(kFolderExists, facts.before);
  if (request.dry_run || !IsOffered(request.setting, facts.before)) return facts;

  if (request.setting == Setting::kChargeLimit) {
    SetLimit(request.value, *context.library, facts);
  } else {
    facts.set = context.library->WMISetQuietFan(static_cast<uint8_t>(request.value)).has_value();
    ask(kFanState, facts.after);
  }
  ask(RememberedRow(request.setting), facts.after);
  return facts;
}

}  // namespace vexahealth
