#include "client/power_object.h"

#include <algorithm>

#include "client/text.h"

namespace vexahealth {
namespace {

// `count` bits from bit `low` up.
constexpr int Bits(uint32_t word, int low, int count) {
  return static_cast<int>(word >> low & ((uint32_t{1} << count) - 1));
}

int Milliwatts(int millivolts, int milliamps) {
  return static_cast<int>(static_cast<int64_t>(millivolts) * milliamps / 1000);
}

PowerObject Programmable(uint32_t word) {
  PowerObject object{.supply = Supply::kProgrammable,
                     .min_millivolts = 100 * Bits(word, 8, 8),
                     .max_millivolts = 100 * Bits(word, 17, 8),
                     .max_milliamps = 50 * Bits(word, 0, 7),
                     .max_milliwatts = {}};
  object.max_milliwatts = Milliwatts(object.max_millivolts, *object.max_milliamps);
  return object;
}

// Two currents: for 9 to 15 V, and for 15 to 20 V where the source goes that far.
PowerObject AdjustableSpr(uint32_t word) {
  const int below_15_volts = 10 * Bits(word, 10, 10);
  const int above_15_volts = 10 * Bits(word, 0, 10);
  const int largest = above_15_volts > 0 ? 20000 : 15000;
  return {.supply = Supply::kAdjustableSpr,
          .min_millivolts = 9000,
          .max_millivolts = largest,
          .max_milliamps = std::max(below_15_volts, above_15_volts),
          .max_milliwatts = std::max(Milliwatts(15000, below_15_volts), Milliwatts(20000, above_15_volts))};
}

PowerObject Augmented(uint32_t word) {
  switch (Bits(word, 28, 2)) {
    case 0: return Programmable(word);
    case 1:
      return {.supply = Supply::kAdjustableEpr,
              .min_millivolts = 100 * Bits(word, 8, 8),
              .max_millivolts = 100 * Bits(word, 17, 9),
              .max_milliamps = {},
              .max_milliwatts = 1000 * Bits(word, 0, 8)};
    case 2: return AdjustableSpr(word);
    default: return {};
  }
}

// "20", "3.3", "12.05": as many decimals as there are, at most three.
std::string Thousandths(int number) {
  std::string text = Printf("%d.%03d", number / 1000, number % 1000);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text;
}

}  // namespace

PowerObject DecodePowerObject(uint32_t word) {
  const int upper = 50 * Bits(word, 20, 10);
  const int middle = 50 * Bits(word, 10, 10);
  const int lowest = Bits(word, 0, 10);
  switch (Bits(word, 30, 2)) {
    case 0:
      return {.supply = Supply::kFixed,
              .min_millivolts = middle,
              .max_millivolts = middle,
              .max_milliamps = 10 * lowest,
              .max_milliwatts = Milliwatts(middle, 10 * lowest)};
    case 1:
      return {.supply = Supply::kBattery,
              .min_millivolts = middle,
              .max_millivolts = upper,
              .max_milliamps = {},
              .max_milliwatts = 250 * lowest};
    case 2:
      return {.supply = Supply::kVariable,
              .min_millivolts = middle,
              .max_millivolts = upper,
              .max_milliamps = 10 * lowest,
              .max_milliwatts = Milliwatts(upper, 10 * lowest)};
    default: return Augmented(word);
  }
}

std::string SupplyName(Supply supply) {
  switch (supply) {
    case Supply::kFixed: return "fixed";
    case Supply::kBattery: return "battery";
    case Supply::kVariable: return "variable";
    case Supply::kProgrammable: return "pps";
    case Supply::kAdjustableEpr: return "epr_avs";
    case Supply::kAdjustableSpr: return "spr_avs";
    case Supply::kReserved: return "reserved";
  }
  return "reserved";
}

std::string PowerObjectText(uint32_t word) {
  if (word == 0) return "none";
  const PowerObject object = DecodePowerObject(word);
  std::string text = SupplyName(object.supply);
  if (object.supply == Supply::kReserved) return text;
  text += " ";
  if (object.min_millivolts != object.max_millivolts) text += Thousandths(object.min_millivolts) + "-";
  text += Thousandths(object.max_millivolts) + " V";
  if (object.max_milliamps) text += ", " + Thousandths(*object.max_milliamps) + " A";
  if (object.max_milliwatts) text += ", " + Thousandths(*object.max_milliwatts) + " W";
  return text;
}

}  // namespace vexahealth
