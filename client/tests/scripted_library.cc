#include "client/tests/scripted_library.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace vexahealth {
namespace {

void Enter(size_t index) {
  Script& script = TheScript();
  if (script.before_call) script.before_call(kRows[index].key);
  script.calls.push_back(kRows[index].key);
}

uint32_t NumberOr(size_t index, uint32_t otherwise) {
  const auto& numbers = TheScript().numbers;
  const auto number = numbers.find(kRows[index].key);
  return number == numbers.end() ? otherwise : number->second;
}

template <size_t index>
uint32_t AnswerNumber() noexcept {
  Enter(index);
  return NumberOr(index, VEXA_NO_ANSWER);
}

template <size_t index>
uint32_t FillText(char* buffer) noexcept {
  Enter(index);
  const std::string& text = TheScript().texts[kRows[index].key];
  std::memcpy(buffer, text.c_str(), text.size() + 1);
  return NumberOr(index, 1);
}

template <size_t index>
VexaText AnswerText() noexcept {
  Enter(index);
  const std::string& text = TheScript().texts[kRows[index].key];
  VexaText result = {};
  std::memcpy(result.text, text.data(), std::min(text.size(), sizeof result.text));
  return result;
}

template <size_t index>
AnyExport ExportFor() {
  switch (kRows[index].signature) {
    case Signature::kNumber: return reinterpret_cast<AnyExport>(&AnswerNumber<index>);
    case Signature::kTextBuffer: return reinterpret_cast<AnyExport>(&FillText<index>);
    case Signature::kTextByValue: return reinterpret_cast<AnyExport>(&AnswerText<index>);
    default: break;  // of other families
  }
  return nullptr;
}

}  // namespace

Script& TheScript() {
  static Script script;
  return script;
}

Script HealthyScript() {
  Script script;
  script.numbers = {{"library.dll_version", 0x00010001},
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
  script.texts = {{"ec.chip_name", "EC85x0"},
                  {"battery.manufacturer", "ACME"},
                  {"battery.manufacturer_smbus", "ACME"},
                  {"battery.device_name", "PACK 3S1P"},
                  {"battery.manufacture_information", "0x1f,0x2,0xa0"}};
  return script;
}

Script HealthyFirmwareScript() {
  Script script = HealthyScript();
  for (const char* key : {"driver.version", "driver.reference_count", "battery.charging_current",
                          "charger.timeout_status", "lid.state", "ec.chip_name"}) {
    script.numbers[key] = 0;
  }
  for (const char* key : {"ec.table_version", "ec.vendor_type", "ec.chip_id", "battery.safety_status",
                          "battery.permanent_failure_status", "battery.fully_charged"}) {
    script.numbers[key] = VEXA_NO_ANSWER;
  }
  script.texts["ec.chip_name"].clear();
  script.texts["battery.manufacture_information"].clear();
  return script;
}

Resolver ScriptedExports(std::string_view without) {
  static const auto exports = []<size_t... index>(std::index_sequence<index...>) {
    return std::array<AnyExport, kRowCount>{ExportFor<index>()...};
  }(std::make_index_sequence<kRowCount>());
  return [without](const char* name) -> AnyExport {
    const auto row =
        std::ranges::find_if(kRows, [name](const Row& r) { return std::string_view(r.export_name) == name; });
    if (row == kRows.end() || row->key == without) return nullptr;
    return exports[static_cast<size_t>(row - kRows.begin())];
  };
}

}  // namespace vexahealth
