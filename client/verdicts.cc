#include "client/verdicts.h"

#include <algorithm>

#include "client/plain_words.h"
#include "client/text.h"

namespace vexahealth {

std::string_view LevelName(Level level) {
  switch (level) {
    case Level::kAct: return "act";
    case Level::kWatch: return "watch";
    case Level::kUnknown: return "unknown";
    case Level::kGood: return "good";
    case Level::kNotThere: return "not_there";
  }
  return "unknown";
}

std::optional<int64_t> Facts::Number(std::string_view key) const {
  const Reading* reading = FindReading(report_.readings, key);
  const auto* number = reading == nullptr ? nullptr : std::get_if<int64_t>(&reading->value);
  return number == nullptr ? std::nullopt : std::optional(*number);
}

std::optional<int64_t> Facts::Register(std::string_view key, int bits) const {
  const std::optional<int64_t> number = Number(key);
  return number == (int64_t{1} << bits) - 1 ? std::nullopt : number;
}

std::optional<bool> Facts::Flag(std::string_view key) const {
  const Reading* reading = FindReading(report_.readings, key);
  const auto* flag = reading == nullptr ? nullptr : std::get_if<bool>(&reading->value);
  return flag == nullptr ? std::nullopt : std::optional(*flag);
}

Status Facts::StatusOf(std::string_view key) const {
  const Reading* reading = FindReading(report_.readings, key);
  return reading == nullptr ? Status::kNotCollected : reading->status;
}

std::string Facts::WhyMissing(std::string_view key) const {
  const Reading* reading = FindReading(report_.readings, key);
  if (reading == nullptr) return std::string(key) + ": not asked.";
  std::string text = std::string(reading->row->label) + ": " + std::string(StatusWord(reading->status));
  if (reading->status == Status::kOk)
    return std::string(reading->row->label) + ": all bits are set, which is no value.";
  if (!reading->note.empty()) text += " (" + reading->note + ")";
  return text + ".";
}

void Worse(Verdict& verdict, Level level, const std::string& text) {
  verdict.level = std::min(verdict.level, level);
  verdict.finding += (verdict.finding.empty() ? "" : " ") + text;
}

std::vector<Verdict> Judge(const Report& report) {
  const Facts facts(report);
  return {JudgeController(facts), JudgeWear(facts),       JudgeAge(facts),
          JudgeCells(facts),      JudgeProtection(facts), JudgeBatteryTemperature(facts),
          JudgeAdapter(facts),    JudgeFans(facts),       JudgeProcessorTemperature(facts),
          JudgeSignal(facts),     JudgeReadings(facts)};
}

}  // namespace vexahealth
