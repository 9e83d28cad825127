// The rules for the battery.
#include <algorithm>
#include <chrono>
#include <cstdio>

#include "client/text.h"
#include "client/values.h"
#include "client/verdicts.h"

namespace vexahealth {
namespace {

constexpr std::string_view kCells[] = {"battery.cell_voltage_1", "battery.cell_voltage_2", "battery.cell_voltage_3",
                                       "battery.cell_voltage_4"};

bool NoBattery(const Facts& facts) { return facts.StatusOf("battery.voltage") == Status::kNotPresent; }

void SayNoBattery(Verdict& verdict) {
  verdict.level = Level::kNotThere;
  verdict.finding = "There is no battery in this machine.";
}

std::string Volts(int64_t millivolts) {
  return Printf("%d.%03d V", static_cast<int>(millivolts / 1000), static_cast<int>(millivolts % 1000));
}

// The day of "2026-02-03" or of a longer text that begins so.
std::optional<std::chrono::sys_days> DayOf(const std::string& text) {
  int year = 0;
  unsigned month = 0;
  unsigned day = 0;
  if (std::sscanf(text.c_str(), "%4d-%2u-%2u", &year, &month, &day) != 3) return std::nullopt;
  const auto date = std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day);
  return date.ok() ? std::optional(std::chrono::sys_days(date)) : std::nullopt;
}

std::optional<std::chrono::sys_days> ManufactureDay(const Facts& facts) {
  const Reading* reading = FindReading(facts.report().readings, "battery.manufacture_date");
  const auto* text = reading == nullptr ? nullptr : std::get_if<std::string>(&reading->value);
  return text == nullptr ? std::nullopt : DayOf(*text);
}

// "20 months", "7 years and 1 month", "5 years"
std::string Ago(int months) {
  const auto counted = [](int count, const char* what) {
    return Printf("%d %s%s", count, what, count == 1 ? "" : "s");
  };
  if (months < 24) return counted(months, "month");
  const int rest = months % 12;
  return counted(months / 12, "year") + (rest == 0 ? "" : " and " + counted(rest, "month"));
}

struct Spread {
  int weakest = 0;  // from 1
  int64_t lowest = 0;
  int64_t highest = 0;
  int cells = 0;
};

Spread SpreadOf(const Facts& facts) {
  Spread spread;
  for (size_t i = 0; i < std::size(kCells); ++i) {
    const std::optional<int64_t> cell = facts.Register(kCells[i], 16);
    if (!cell) continue;
    if (spread.cells == 0 || *cell < spread.lowest) {
      spread.lowest = *cell;
      spread.weakest = static_cast<int>(i) + 1;
    }
    spread.highest = std::max(spread.highest, *cell);
    ++spread.cells;
  }
  return spread;
}

}  // namespace

Verdict JudgeWear(const Facts& facts) {
  Verdict verdict{.id = "battery_wear",
                  .title = "Battery wear",
                  .finding = {},
                  .rule = Printf("Watch from %d charge cycles, act from %d. Packs are commonly rated to keep 80 %% of "
                                 "their capacity for 300 to 1000 cycles, by their make.",
                                 kWatchCycles, kWornCycles) +
                          " How much capacity is lost can't be told: no export tells the design capacity. Compare the "
                          "full-charge capacity with the figure on the pack."};
  const std::optional<int64_t> cycles = facts.Register("battery.cycle_count", 16);
  if (NoBattery(facts)) {
    SayNoBattery(verdict);
  } else if (!cycles) {
    verdict.finding = facts.WhyMissing("battery.cycle_count");
  } else {
    const int count = static_cast<int>(*cycles);
    verdict.level = LevelFrom(count, kWatchCycles, kWornCycles);
    verdict.finding = Printf("%d charge cycles: ", count);
    verdict.finding += count >= kWornCycles    ? "expect a worn pack, and plan its replacement."
                       : count >= kWatchCycles ? "expect a shorter run on battery than when it was new."
                                               : "well within what a pack is made for.";
  }
  return verdict;
}

Verdict JudgeAge(const Facts& facts) {
  Verdict verdict{
      .id = "battery_age",
      .title = "Battery age",
      .finding = {},
      .rule = Printf("Watch from %d years after manufacture: lithium-ion cells age unused, too.", kOldBatteryYears)};
  const std::optional<std::chrono::sys_days> made = ManufactureDay(facts);
  const std::optional<std::chrono::sys_days> now = DayOf(facts.report().time);
  if (NoBattery(facts)) {
    SayNoBattery(verdict);
  } else if (facts.StatusOf("battery.manufacture_date") != Status::kOk) {
    verdict.finding = facts.WhyMissing("battery.manufacture_date");
  } else if (!made || !now || *made > *now) {
    verdict.finding = "The pack's manufacture date is not a day in the past.";
  } else {
    const auto months = static_cast<int>((*now - *made).count() * 12 / 365.2425);
    verdict.level = months >= 12 * kOldBatteryYears ? Level::kWatch : Level::kGood;
    verdict.finding = "Made " + Ago(months) + " ago.";
  }
  return verdict;
}

Verdict JudgeCells(const Facts& facts) {
  Verdict verdict{
      .id = "cell_balance",
      .title = "Cell balance",
      .finding = {},
      .rule = Printf("Watch when the highest and the lowest cell differ by %d mV, act from %d mV, or when a "
                     "cell is below %s. Load and a low charge widen the spread: look again at rest before "
                     "replacing a pack.",
                     kWatchSpreadMillivolts, kWeakSpreadMillivolts, Volts(kEmptyCellMillivolts).c_str())};
  const Spread spread = SpreadOf(facts);
  if (NoBattery(facts)) {
    SayNoBattery(verdict);
    return verdict;
  }
  if (spread.cells == 0) {
    verdict.finding = facts.WhyMissing(kCells[0]);
    return verdict;
  }
  if (spread.lowest < kEmptyCellMillivolts) {
    verdict.level = Level::kAct;
    verdict.finding = Printf("Cell %d is at %s only.", spread.weakest, Volts(spread.lowest).c_str());
    return verdict;
  }
  if (spread.cells == 1) {
    verdict.finding = "One cell told its voltage: there is nothing to compare it with.";
    return verdict;
  }
  const auto difference = static_cast<int>(spread.highest - spread.lowest);
  verdict.level = LevelFrom(difference, kWatchSpreadMillivolts, kWeakSpreadMillivolts);
  verdict.finding = Printf("%d cells within %d mV of each other", spread.cells, difference);
  verdict.finding += verdict.level == Level::kGood ? "." : Printf("; cell %d is the lowest.", spread.weakest);
  return verdict;
}

Verdict JudgeProtection(const Facts& facts) {
  Verdict verdict{.id = "battery_protection",
                  .title = "Battery protection",
                  .finding = {},
                  .rule =
                      "Act when the EC reports a battery error or the gauge a permanent failure (any bit of its "
                      "failure status); watch when the gauge's safety status has a bit set."};
  if (NoBattery(facts)) {
    SayNoBattery(verdict);
    return verdict;
  }
  const std::optional<bool> error = facts.Flag("battery.error");
  const std::optional<int64_t> failed = facts.Register("battery.permanent_failure_status", 32);
  const std::optional<int64_t> safety = facts.Register("battery.safety_status", 32);
  verdict.level = Level::kGood;
  if (error == true) Worse(verdict, Level::kAct, "The EC reports a battery error.");
  if (failed.value_or(0) != 0) {
    Worse(verdict, Level::kAct,
          Printf("The gauge reports a permanent failure: 0x%08x.", static_cast<uint32_t>(*failed)));
  }
  if (safety.value_or(0) != 0) {
    Worse(verdict, Level::kWatch,
          Printf("A protection of the gauge is tripped: 0x%08x.", static_cast<uint32_t>(*safety)));
  }
  if (!error && !failed && !safety) {
    verdict.level = Level::kUnknown;
    verdict.finding = "Neither the EC nor the gauge tells about errors.";
  } else if (verdict.level == Level::kGood) {
    verdict.finding = failed && safety ? "No error, no permanent failure, no protection tripped."
                                       : "No error among what could be read; the gauge's own status was not.";
  }
  return verdict;
}

Verdict JudgeBatteryTemperature(const Facts& facts) {
  Verdict verdict{.id = "battery_temperature",
                  .title = "Battery temperature",
                  .finding = {},
                  .rule = Printf("Watch from %d °C and below 0 °C, act from %d °C: lithium-ion cells are commonly "
                                 "charged between 0 and %d °C, and discharged up to %d °C.",
                                 kWarmBatteryCelsius, kHotBatteryCelsius, kWarmBatteryCelsius, kHotBatteryCelsius)};
  const std::optional<int64_t> temperature = facts.Register("battery.temperature", 16);
  if (NoBattery(facts)) {
    SayNoBattery(verdict);
  } else if (!temperature) {
    verdict.finding = facts.WhyMissing("battery.temperature");
  } else {
    const int64_t hundredths = *temperature * 10 - 27315;  // of a degree Celsius
    const bool watch = hundredths < 0 || hundredths >= 100 * kWarmBatteryCelsius;
    verdict.level = hundredths >= 100 * kHotBatteryCelsius ? Level::kAct : watch ? Level::kWatch : Level::kGood;
    verdict.finding = "The pack is at " + CelsiusText(*temperature) + " °C.";
  }
  return verdict;
}

}  // namespace vexahealth
