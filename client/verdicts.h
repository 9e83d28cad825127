// What the readings mean, by rules that name their numbers. A verdict never says more than its readings do.
#ifndef CLIENT_VERDICTS_H_
#define CLIENT_VERDICTS_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "client/reading.h"

namespace vexahealth {

// The most urgent first.
enum class Level {
  kAct,
  kWatch,
  kUnknown,  // what it takes to judge is missing
  kGood,
  kNotThere,  // there is nothing to judge
};

// "act", "watch", "unknown", "good" and "not_there".
std::string_view LevelName(Level level);

struct Verdict {
  std::string_view id;
  std::string_view title;
  Level level = Level::kUnknown;
  std::string finding;  // one or two sentences
  std::string rule;     // with its numbers, and where they come from
};

// Limits of the rules. Where the text says "commonly", the number is a rule of thumb of the trade and not a promise of
// this notebook's makers.
inline constexpr int kWatchCycles = 500;
inline constexpr int kWornCycles = 1000;
inline constexpr int kOldBatteryYears = 5;
inline constexpr int kWatchSpreadMillivolts = 50;
inline constexpr int kWeakSpreadMillivolts = 150;
inline constexpr int kEmptyCellMillivolts = 2800;
inline constexpr int kWarmBatteryCelsius = 45;
inline constexpr int kHotBatteryCelsius = 60;
inline constexpr int kWarmProcessorCelsius = 90;
inline constexpr int kHotProcessorCelsius = 100;
inline constexpr int kFanNeededCelsius = 70;
inline constexpr int kWeakSignalDbm = -67;

// Always the same verdicts in the same order, whatever is missing. The report is that of the command "all"; readings
// that it lacks count as not collected.
[[nodiscard]] std::vector<Verdict> Judge(const Report& report);

// The readings of a report as the rules ask for them.
class Facts {
 public:
  explicit Facts(const Report& report) : report_(report) {}

  const Report& report() const { return report_; }
  std::optional<int64_t> Number(std::string_view key) const;
  // The same for a register of so many bits: all ones stand for a register with nothing behind it.
  std::optional<int64_t> Register(std::string_view key, int bits) const;
  std::optional<bool> Flag(std::string_view key) const;
  Status StatusOf(std::string_view key) const;

  // "State of charge: no answer (the EC did not answer)."
  std::string WhyMissing(std::string_view key) const;

 private:
  const Report& report_;
};

// Level of a number that is bad when it is large.
constexpr Level LevelFrom(int64_t number, int64_t watch, int64_t act) {
  return number >= act ? Level::kAct : number >= watch ? Level::kWatch : Level::kGood;
}

// One more finding; the more urgent level stays.
void Worse(Verdict& verdict, Level level, const std::string& text);

// The rules, one each.
Verdict JudgeController(const Facts& facts);
Verdict JudgeWear(const Facts& facts);
Verdict JudgeAge(const Facts& facts);
Verdict JudgeCells(const Facts& facts);
Verdict JudgeProtection(const Facts& facts);
Verdict JudgeBatteryTemperature(const Facts& facts);
Verdict JudgeAdapter(const Facts& facts);
Verdict JudgeProcessorTemperature(const Facts& facts);
Verdict JudgeFans(const Facts& facts);
Verdict JudgeSignal(const Facts& facts);
Verdict JudgeReadings(const Facts& facts);

}  // namespace vexahealth

#endif  // CLIENT_VERDICTS_H_
