#include "client/tests/fake_library.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "client/collect.h"
#include "client/families.h"

#undef VEXA_EXPORT

namespace vexahealth {
namespace {

template <typename Character>
void Copy(Character* buffer, std::string_view text) {
  if (buffer == nullptr) return;
  *std::copy(text.begin(), text.end(), buffer) = Character{};
}

// One call: what it is told by its arguments, and what it answers.
class Call {
 public:
  explicit Call(std::string name) : name_(name), call_(std::move(name)) {}

  template <typename... Arguments>
  uint32_t Answer(Arguments... arguments) {
    const bool com = name_.starts_with("WMI") || name_ == "System_Read_VolumeLevel";
    [[maybe_unused]] size_t left = sizeof...(arguments);
    (Take(arguments, com && --left == 0), ...);
    Script& script = TheScript();
    if (script.before_call) script.before_call(call_);
    script.calls.push_back(call_);
    (Fill(arguments), ...);
    if (const auto found = script.numbers.find(call_); found != script.numbers.end()) return found->second;
    if (const auto found = script.numbers.find(name_); found != script.numbers.end()) return found->second;
    return otherwise_;
  }

  const std::string& text() { return TheScript().texts[name_]; }

 private:
  // The last argument of an export that uses COM says that the call initialises it.
  template <typename Argument>
  void Take(Argument argument, bool com) {
    if constexpr (std::is_integral_v<Argument>) {
      if (com) {
        EXPECT_EQ(argument, Argument{1}) << name_;
      } else {
        call_ += " " + std::to_string(argument);
      }
    }
  }
  template <typename Argument>
  void Fill(Argument argument) {
    if constexpr (std::is_same_v<Argument, wchar_t**>) {
      static std::wstring given;
      given.assign(text().begin(), text().end());
      *argument = given.empty() ? nullptr : given.data();
    } else if constexpr (std::is_same_v<Argument, char*> || std::is_same_v<Argument, wchar_t*>) {
      const std::string& own = buffers_ == 0 ? text() : TheScript().texts[name_ + " 2"];
      Copy(argument, own);
      const bool tells_length = name_.starts_with("WMI") && name_ != "WMIGetAppPath";
      const auto length = static_cast<uint32_t>(own.size());
      otherwise_ = tells_length ? std::max(length, buffers_ == 0 ? 0 : otherwise_) : name_.starts_with("RF_") ? 0 : 1;
      ++buffers_;
    } else if constexpr (std::is_same_v<Argument, VexaPdIcPartNumber*>) {
      const auto length = static_cast<uint32_t>(text().size());
      const auto told = TheScript().numbers.find("told length");
      *argument = {
          .told_length = told == TheScript().numbers.end() ? length : told->second, .length = length, .text = {}};
      std::memcpy(argument->text, text().data(), std::min(text().size(), sizeof argument->text));
      otherwise_ = 1;
    }
  }

  std::string name_;
  std::string call_;
  uint32_t otherwise_ = VEXA_NO_ANSWER;
  int buffers_ = 0;
};

// The fake of a declared export.
template <size_t place, typename Declared>
struct FakeOf;
template <size_t place, typename Result, typename... Arguments>
struct FakeOf<place, Result (*)(Arguments...) noexcept> {
  static Result Function(Arguments... arguments) noexcept {
    Call call(vexa::kExports[place].name);
    const uint32_t number = call.Answer(arguments...);
    if constexpr (std::is_same_v<Result, VexaText>) {
      VexaText text = {};
      std::memcpy(text.text, call.text().data(), std::min(call.text().size(), sizeof text.text));
      return text;
    } else if constexpr (!std::is_void_v<Result>) {
      return static_cast<Result>(number);
    }
  }
};

constexpr size_t PlaceOf(std::string_view name) {
  return static_cast<size_t>(vexa::FindExport(name) - vexa::kExports.data());
}

const vexa::AnyFunction kFakes[] = {
#define VEXA_EXPORT(name, ...) \
  reinterpret_cast<vexa::AnyFunction>(&FakeOf<PlaceOf(#name), decltype(&::name)>::Function),
#include "tests/sweep/exports.inc"
#undef VEXA_EXPORT
};

std::string_view NameOf(std::string_view key) {
  const Row* row = FindRow(key);
  return row == nullptr ? key : row->export_name;
}

std::string AsItIs(std::string_view text) { return std::string(text); }
std::string Narrowed(std::wstring_view text) { return std::string(text.begin(), text.end()); }

PowerLine g_line = PowerLine::kUnknown;

}  // namespace

void Expected::Check(std::span<const Reading> readings, std::string_view what) const {
  const Reading* reading = FindReading(readings, key);
  ASSERT_NE(reading, nullptr) << what << ", " << key;
  EXPECT_EQ(StatusName(reading->status), StatusName(status)) << what << ", " << key << ": " << reading->note;
  EXPECT_EQ(reading->value, value) << what << ", " << key;
  EXPECT_TRUE(reading->status == Status::kOk || !reading->note.empty()) << what << ", " << key;
}

uint32_t& Script::operator[](std::string_view key) { return numbers[std::string(NameOf(key))]; }
void Script::SetText(std::string_view key, std::string text) { texts[std::string(NameOf(key))] = std::move(text); }
ptrdiff_t Script::Calls(std::string_view call) const { return std::ranges::count(calls, call); }
bool Script::Called(std::string_view part) const {
  return std::ranges::any_of(calls, [part](const std::string& call) { return call.find(part) != std::string::npos; });
}

Script& TheScript() {
  static Script script;
  return script;
}

vexa::Library FakeLibrary() {
  return vexa::Library::Over(
      nullptr,
      [](void*, const char* name) -> vexa::AnyFunction {
        return TheScript().missing.contains(name) ? nullptr : kFakes[PlaceOf(name)];
      },
      [](void*) {});
}

Script HealthyScript() {
  Script script;
  constexpr std::pair<const char*, uint32_t> kNumbers[] = {{"library.dll_version", 0x00010001},
                                                           {"driver.version", 0x00010002},
                                                           {"driver.reference_count", 1},
                                                           {"ec.table_version", 12},
                                                           {"ec.vendor_type", 1},
                                                           {"ec.chip_id", 0x85},
                                                           {"battery.manufacture_date", 0x5694},
                                                           {"battery.serial_number", 40321},
                                                           {"battery.design_voltage", 11580},
                                                           {"battery.cycle_count", 113},
                                                           {"battery.rsoc", 87},
                                                           {"battery.temperature", 2982},
                                                           {"battery.voltage", 11405},
                                                           {"battery.current", 0xFFFFFB2E},
                                                           {"battery.charging_current", 2500},
                                                           {"battery.charging_voltage", 13200},
                                                           {"battery.remaining_capacity", 3500},
                                                           {"battery.full_charge_capacity", 4021},
                                                           {"battery.cell_voltage_1", 3801},
                                                           {"battery.cell_voltage_2", 3803},
                                                           {"battery.cell_voltage_3", 3801},
                                                           {"battery.cell_voltage_4", 0},
                                                           {"battery.gauge_chip", 0x1D},
                                                           {"battery.safety_status", 0},
                                                           {"battery.permanent_failure_status", 0},
                                                           {"battery.error", 0},
                                                           {"battery.fully_charged", 0},
                                                           {"charger.timeout_status", 0},
                                                           {"power.ac_present", 0},
                                                           {"lid.state", 1}};
  for (const auto& [key, number] : kNumbers) script[key] = number;
  script.SetText("ec.chip_name", "EC85x0");
  script.SetText("battery.manufacturer", "ACME");
  script.SetText("battery.manufacturer_smbus", "ACME");
  script.SetText("battery.device_name", "PACK 3S1P");
  script.SetText("battery.manufacture_information", "0x1f,0x2,0xa0");
  return script;
}

Script HealthyFirmwareScript() {
  Script script = HealthyScript();
  for (const char* key : {"driver.version", "driver.reference_count", "battery.charging_current",
                          "charger.timeout_status", "lid.state", "ec.chip_name"}) {
    script[key] = 0;
  }
  for (const char* key : {"ec.table_version", "ec.vendor_type", "ec.chip_id", "battery.safety_status",
                          "battery.permanent_failure_status", "battery.fully_charged"}) {
    script[key] = VEXA_NO_ANSWER;
  }
  script.SetText("ec.chip_name", "");
  script.SetText("battery.manufacture_information", "");
  return script;
}

Context ContextFor(const vexa::Library& library, const Scene& scene) {
  g_line = scene.line;
  return {.library = &library,
          .ready = scene.ready,
          .may_wait = scene.may_wait,
          .route = scene.route,
          .decode = AsItIs,
          .decode_wide = Narrowed,
          .power_line = [] { return g_line; },
          .wanted = {},
          .progress = {}};
}

Report ScriptedReport(const Scene& scene) {
  const vexa::Library library = FakeLibrary();
  const Context context = ContextFor(library, scene);
  return {.library = {.path = "C:\\x\\VexaWinIO64.dll",
                      .loaded = true,
                      .ready = scene.ready,
                      .version = 0x00010001,
                      .route = scene.route},
          .readings = Collect(context),
          .error = {},
          .time = "2026-02-03T08:05:00.000Z"};
}

}  // namespace vexahealth
