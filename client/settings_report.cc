#include "client/settings_report.h"

#include <utility>

#include "client/json_parts.h"
#include "client/table.h"
#include "client/text.h"

namespace vexahealth {
namespace {

Json FactJson(const std::optional<bool>& fact) { return fact ? Json(*fact) : Json(); }

Json TextsJson(const std::vector<std::string>& texts) {
  Json list = Json::array();
  for (const std::string& text : texts) list.push_back(WellFormedUtf8(text));
  return list;
}

Json ChangeJson(const Change& change) {
  const bool fan = change.request.setting == Setting::kQuietFan;
  return {{"setting", SettingName(change.request.setting)},
          {"requested", fan ? Json(change.request.value != 0) : Json(change.request.value)},
          {"dry_run", change.request.dry_run},
          {"outcome", OutcomeName(change.outcome)},
          {"before", ValueJson(change.before)},
          {"accepted", FactJson(change.accepted)},
          {"file_written", FactJson(change.file_written)},
          {"reads_back", FactJson(change.reads_back)},
          {"plan", TextsJson(change.plan)},
          {"verified", TextsJson(change.verified)},
          {"not_verified", TextsJson(change.not_verified)}};
}

std::string_view OutcomeWords(Outcome outcome) {
  switch (outcome) {
    case Outcome::kNotTried: return "not tried";
    case Outcome::kNotSupported: return "not supported, nothing was changed";
    case Outcome::kPlanned: return "dry run, nothing was changed";
    case Outcome::kRefused: return "refused";
    case Outcome::kAccepted: return "accepted by the firmware";
    case Outcome::kNotConfirmed: return "accepted by the firmware, but not confirmed";
  }
  return "not tried";
}

void AppendTexts(std::string& table, std::string_view label, const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    table += "  " + std::string(label) + std::string(14 - label.size(), ' ') + EscapeForTerminal(text) + "\n";
  }
}

std::string ChangeText(const Change& change) {
  std::string text = "\n" + RequestedText(change.request) + ": " + std::string(OutcomeWords(change.outcome)) + "\n";
  AppendTexts(text, "would", change.plan);
  AppendTexts(text, "verified", change.verified);
  AppendTexts(text, "not verified", change.not_verified);
  return text;
}

}  // namespace

std::string SettingsJson(const SettingsReport& report) {
  Json document = Document();
  document["command"] = report.change ? "settings set" : "settings";
  document["time"] = TextOrNull(report.time);
  document["error"] = TextOrNull(report.error);
  document["library"] = LibraryJson(report.library);
  if (report.change) document["change"] = ChangeJson(*report.change);
  AddReadings(document, "readings", report.settings);
  return Dump(document);
}

std::string SettingsTable(const SettingsReport& report) {
  std::vector<Reading> shown;
  for (const Reading& reading : report.settings) {
    if (!report.change || reading.status != Status::kNotCollected) shown.push_back(reading);
  }
  return LibraryLine(report.library) + (report.change ? ChangeText(*report.change) : "") +
         SectionsText(shown, !report.library.loaded);
}

}  // namespace vexahealth
