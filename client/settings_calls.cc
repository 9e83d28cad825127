#include "client/settings_calls.h"

namespace vexahealth {
namespace {

void Ask(SettingRow row, const SettingExports& exports, SettingAnswers& answers, WideDecoder decode = nullptr) {
  answers[row] = Call(kSettingRows[row], exports.rows[row], nullptr, decode);
}

SettingRow OtherFirmwareRow(SettingRow row) { return row == kLimitSupported ? kFanState : kLimitSupported; }

bool HasSetter(Setting setting, const SettingExports& exports) {
  return setting == Setting::kChargeLimit ? exports.set_limit != nullptr : exports.set_fan != nullptr;
}

void SetLimit(int32_t level, const SettingExports& exports, ChangeFacts& facts) {
  facts.set = exports.set_limit(level, kInitializeCom);
  const std::optional<Answer>& folder = facts.before[kFolderExists];
  const bool has_folder = folder && folder->form == Answer::Form::kNumber && folder->number == 1;
  if (facts.set == 1 && has_folder && exports.remember_limit != nullptr) {
    facts.written = exports.remember_limit(level, kInitializeCom);
  }
}

void SetFan(int32_t on, const SettingExports& exports, ChangeFacts& facts) {
  facts.set = exports.set_fan(static_cast<uint8_t>(on), kInitializeCom);
  Ask(kFanState, exports, facts.after);
}

template <typename Declared>
void ResolveNamed(const Resolver& resolve, const char* name, Declared& function) {
  function = reinterpret_cast<Declared>(resolve(name));
}

}  // namespace

SettingExports ResolveSettings(const Resolver& resolve) {
  SettingExports settings;
  for (size_t i = 0; i < kSettingRowCount; ++i) settings.rows[i] = resolve(kSettingRows[i].export_name);
  ResolveNamed(resolve, "WMISetBatteryHealth", settings.set_limit);
  ResolveNamed(resolve, "WMISetBatteryHealthToUser", settings.remember_limit);
  ResolveNamed(resolve, "WMISetQuietFan", settings.set_fan);
  return settings;
}

SettingAnswers AskSettings(const SettingExports& exports, WideDecoder decode) {
  SettingAnswers answers;
  for (size_t i = 0; i < kSettingRowCount; ++i) Ask(static_cast<SettingRow>(i), exports, answers, decode);
  return answers;
}

ChangeFacts CarryOut(const ChangeRequest& request, const SettingExports& exports) {
  ChangeFacts facts;
  facts.exported = HasSetter(request.setting, exports);
  if (!facts.exported) return facts;
  const SettingRow support = SupportRow(request.setting);
  Ask(support, exports, facts.before);
  if (IsDoubtful(support, facts.before[support])) Ask(OtherFirmwareRow(support), exports, facts.before);
  Ask(RememberedRow(request.setting), exports, facts.before);
  Ask(kFolderExists, exports, facts.before);
  if (request.dry_run || !IsOffered(request.setting, facts.before)) return facts;

  if (request.setting == Setting::kChargeLimit) {
    SetLimit(request.value, exports, facts);
  } else {
    SetFan(request.value, exports, facts);
  }
  Ask(RememberedRow(request.setting), exports, facts.after);
  return facts;
}

}  // namespace vexahealth
