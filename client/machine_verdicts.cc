// The rules for the controller, the adapter, the fans, the processor, the radio and the readings as a whole.
#include <algorithm>
#include <map>

#include "client/plain_words.h"
#include "client/text.h"
#include "client/verdicts.h"

namespace vexahealth {
namespace {

constexpr int kFans = 5;

std::string FanKey(int fan) { return Printf("fan.%d.speed", fan); }

// Watts, when there is such a figure.
std::optional<int> Watts(const Facts& facts, std::string_view key) {
  constexpr int64_t kNoFigure = 65534;  // some firmware makes this of "no such value"
  const std::optional<int64_t> watts = facts.Number(key);
  if (!watts || *watts == 0 || *watts >= kNoFigure) return std::nullopt;
  return static_cast<int>(*watts);
}

std::string WattsText(int64_t milliwatts) {
  return milliwatts % 1000 == 0
             ? Printf("%d W", static_cast<int>(milliwatts / 1000))
             : Printf("%d.%d W", static_cast<int>(milliwatts / 1000), static_cast<int>(milliwatts % 1000 / 100));
}

bool FirmwareAnswers(const Facts& facts) {
  return std::ranges::any_of(facts.report().readings, [](const Reading& reading) {
    return reading.status == Status::kOk && reading.row->gate != Gate::kLibrary &&
           reading.row->on_firmware != OnFirmware::kSystem;
  });
}

}  // namespace

Verdict JudgeController(const Facts& facts) {
  Verdict verdict{.id = "controller",
                  .title = "Embedded controller",
                  .finding = {},
                  .rule =
                      "Act when the library can't work or nothing of the embedded controller (EC) answers; watch "
                      "when the EC has no healthy table, from which nearly all of its values come."};
  const std::optional<int64_t> version = facts.Number("ec.table_version");
  if (!facts.report().error.empty()) {
    Worse(verdict, Level::kAct, Capital(facts.report().error) + ".");
  } else if (facts.report().library.route == Route::kFirmware) {
    const bool answers = FirmwareAnswers(facts);
    verdict.level = answers ? Level::kGood : Level::kAct;
    verdict.finding = answers ? "Answers through the firmware's methods." : "No method of the firmware answered.";
  } else if (!version) {
    Worse(verdict, Level::kAct, "It did not answer. " + facts.WhyMissing("ec.table_version"));
  } else if (*version == 0) {
    Worse(verdict, Level::kWatch, "It answers, but has no healthy table.");
  } else {
    verdict.level = Level::kGood;
    verdict.finding = Printf("Answers; its healthy table has version %d.", static_cast<int>(*version));
  }
  return verdict;
}

Verdict JudgeAdapter(const Facts& facts) {
  Verdict verdict{.id = "adapter_power",
                  .title = "Power adapter",
                  .finding = {},
                  .rule =
                      "Watch when the USB Power Delivery contract promises fewer watts than the machine says are "
                      "enough for it."};
  const std::optional<bool> by_controller = facts.Flag("power.ac_present");
  const std::optional<bool> external = by_controller ? by_controller : facts.Flag("adapter.online");
  const std::optional<int64_t> contract = facts.Number("adapter.contract.max_power");
  const std::optional<int> enough = Watts(facts, "adapter.sufficient_power");
  if (external == false) {
    verdict.level = Level::kNotThere;
    verdict.finding = "The machine runs on its battery.";
  } else if (!external) {
    verdict.finding = facts.WhyMissing("power.ac_present");
  } else if (!contract) {
    verdict.finding = "External power is there. " + facts.WhyMissing("adapter.contract.max_power");
  } else if (!enough) {
    verdict.finding = "The contract promises " + WattsText(*contract) + "; how much is enough is not told.";
  } else {
    verdict.level = *contract < 1000 * *enough ? Level::kWatch : Level::kGood;
    verdict.finding = "The contract promises " + WattsText(*contract) + Printf("; %d W are enough.", *enough);
  }
  return verdict;
}

Verdict JudgeFans(const Facts& facts) {
  Verdict verdict{.id = "fans",
                  .title = "Fans",
                  .finding = {},
                  .rule = Printf("Act when a fan stands still while the processor is at %d °C or more; watch when the "
                                 "fans are in test mode. A fan that stands still on a cool machine is as it should be.",
                                 kFanNeededCelsius)};
  const std::optional<int64_t> count = facts.Register("fan.count", 8);
  const std::optional<int64_t> processor = facts.Register("temperature.cpu", 8);
  if (count == 0) {
    verdict.level = Level::kNotThere;
    verdict.finding = "The machine tells of no fans.";
    return verdict;
  }
  int running = 0;
  int silent = 0;
  verdict.level = Level::kGood;
  for (int fan = 1; fan <= kFans; ++fan) {
    const std::optional<int64_t> speed = facts.Register(FanKey(fan), 16);
    if (facts.StatusOf(FanKey(fan)) == Status::kNoAnswer) ++silent;
    if (!speed) continue;
    ++running;
    if (*speed != 0) continue;
    if (processor.value_or(0) >= kFanNeededCelsius) {
      Worse(verdict, Level::kAct, Printf("Fan %d stands still at %d °C.", fan, static_cast<int>(*processor)));
    } else {
      Worse(verdict, processor ? Level::kGood : Level::kUnknown,
            Printf("Fan %d stands still%s.", fan, processor ? ", and the processor is cool" : ""));
    }
  }
  if (running == 0) {
    verdict.level = Level::kUnknown;
    verdict.finding = facts.WhyMissing(count ? FanKey(1) : "fan.count");
    return verdict;
  }
  if (facts.Number("fan.test_mode").value_or(0) != 0) Worse(verdict, Level::kWatch, "The fans are in test mode.");
  if (silent > 0) Worse(verdict, Level::kUnknown, Printf("%d did not answer.", silent));
  if (verdict.finding.empty()) verdict.finding = Printf("%d fan%s running.", running, running == 1 ? " is" : "s are");
  return verdict;
}

Verdict JudgeProcessorTemperature(const Facts& facts) {
  Verdict verdict{.id = "processor_temperature",
                  .title = "Processor temperature",
                  .finding = {},
                  .rule = Printf("Watch from %d °C, act from %d °C, near which processors commonly slow down. One look "
                                 "only: a short peak under load is no fault.",
                                 kWarmProcessorCelsius, kHotProcessorCelsius)};
  const std::optional<int64_t> celsius = facts.Register("temperature.cpu", 8);
  if (!celsius) {
    verdict.finding = facts.WhyMissing("temperature.cpu");
    return verdict;
  }
  verdict.level = LevelFrom(*celsius, kWarmProcessorCelsius, kHotProcessorCelsius);
  verdict.finding = Printf("The processor is at %d °C.", static_cast<int>(*celsius));
  return verdict;
}

Verdict JudgeSignal(const Facts& facts) {
  Verdict verdict{
      .id = "wifi_signal",
      .title = "Wi-Fi signal",
      .finding = {},
      .rule = Printf("Watch below \u2212%d dBm, a limit that radio planning commonly sets for voice and video.",
                     -kWeakSignalDbm)};
  const std::optional<int64_t> signal = facts.Number("wifi.rssi");
  const bool connected = facts.Flag("wifi.connected").value_or(false);
  if (facts.Flag("wifi.connected") == false || facts.StatusOf("wifi.connected") == Status::kNotPresent) {
    verdict.level = Level::kNotThere;
    verdict.finding = "Wi-Fi is not connected.";
  } else if (!connected || !signal) {
    verdict.finding = facts.WhyMissing(connected ? "wifi.rssi" : "wifi.connected");
  } else {
    verdict.level = *signal < kWeakSignalDbm ? Level::kWatch : Level::kGood;
    verdict.finding = Printf("The access point arrives with \u2212%d dBm.", -static_cast<int>(*signal));
  }
  return verdict;
}

Verdict JudgeReadings(const Facts& facts) {
  Verdict verdict{.id = "readings",
                  .title = "Readings",
                  .finding = {},
                  .rule =
                      "Watch when something did not answer, or answered what no value can look like. Values that "
                      "this machine does not offer are no fault."};
  std::map<Status, int> counts;
  for (const Reading& reading : facts.report().readings) ++counts[reading.status];
  const auto all = static_cast<int>(facts.report().readings.size());
  const int read = counts[Status::kOk];
  verdict.finding = Printf("%d of %d have a value.", read, all);
  verdict.level = read > 0 ? Level::kGood : Level::kUnknown;
  if (const int silent = counts[Status::kNoAnswer]) Worse(verdict, Level::kWatch, Printf("%d did not answer.", silent));
  if (const int broken = counts[Status::kError]) {
    Worse(verdict, Level::kWatch, Printf("%d answered out of %s range.", broken, broken == 1 ? "its" : "their"));
  }
  return verdict;
}

}  // namespace vexahealth
