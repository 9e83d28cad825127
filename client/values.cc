#include "client/values.h"

#include <chrono>
#include <cstdlib>
#include <limits>

#include "client/power_object.h"
#include "client/text.h"

namespace vexahealth {
namespace {

// One block for each, so that groups compare at a glance.
std::string BarText(uint32_t count) {
  constexpr uint32_t kLongest = 24;
  std::string bar;
  for (uint32_t i = 0; i < count && i < kLongest; ++i) bar += "\u2588";
  return count > kLongest ? bar + "+" : bar;
}

std::string FriendlyNumber(Kind kind, int64_t value) {
  const int number = static_cast<int>(value);
  const auto word = static_cast<uint32_t>(value);
  switch (kind) {
    case Kind::kHex32: return Printf("0x%08x", word);
    case Kind::kHex16:
    case Kind::kDate: return Printf("0x%04x", word);
    case Kind::kHex8: return Printf("0x%02x", word);
    case Kind::kTimeoutByte: return word == 0 ? "none" : Printf("0x%02x", word);
    case Kind::kPercent:
    case Kind::kStoredPercent: return Printf("%u %%", word);
    case Kind::kMillivolts: return Printf("%u.%03u V", word / 1000, word % 1000);
    case Kind::kMilliamps:
      if (number == 0) return "0 mA";
      return Printf("%+d mA, %s", number, number < 0 ? "discharging" : "charging");
    case Kind::kMilliampsRequested: return Printf("%d mA", number);
    case Kind::kMilliwatts: return Printf("%u.%03u W", word / 1000, word % 1000);
    case Kind::kStations: return Printf("%3u ", word) + BarText(word);
    case Kind::kPowerObject: return PowerObjectText(word) + Printf(" (0x%08x)", word);
    case Kind::kWatts:
    case Kind::kCelsius:
    case Kind::kRpm:
    case Kind::kDbm:
    case Kind::kMegatransfers:
    case Kind::kMegabits: return Printf("%d ", number) + std::string(UnitOf(kind).value_or(""));
    case Kind::kDeciKelvin: return CelsiusText(value) + Printf(" °C (%u.%u K)", word / 10, word % 10);
    default: return Printf("%u", word);
  }
}

// The lowest `count` bytes, the highest first; ends at a zero.
std::string Characters(uint32_t packed, int count) {
  std::string text;
  for (int i = count - 1; i >= 0; --i) {
    const auto character = static_cast<char>(packed >> (8 * i));
    if (character == '\0') break;
    text += character;
  }
  return text;
}

std::string ArchitectureName(uint32_t number) {
  switch (number) {
    case 0: return "x86";
    case 5: return "ARM";
    case 9: return "x64";
    case VEXA_CPU_ARCHITECTURE_ARM64: return "ARM64";
    default: return Printf("%u", number);
  }
}

}  // namespace

std::string RevisionText(uint32_t answer) { return Characters(answer, 2); }

bool InRange(Kind kind, uint32_t answer) {
  if (IsSigned(kind)) {
    const auto milliamps = static_cast<int32_t>(answer);
    return milliamps >= std::numeric_limits<int16_t>::min() && milliamps <= std::numeric_limits<int16_t>::max();
  }
  return answer <= LargestAnswer(kind);
}

std::optional<std::string> DateText(uint32_t packed) {
  const unsigned day = packed & 0x1F;
  const unsigned month = packed >> 5 & 0x0F;
  const int year = 1980 + static_cast<int>(packed >> 9 & 0x7F);
  const auto date = std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day);
  if (!date.ok()) return std::nullopt;
  return Printf("%d-%02u-%02u", year, month, day);
}

std::string CelsiusText(int64_t deci_kelvin) {
  const int64_t hundredths = deci_kelvin * 10 - 27315;
  const int64_t tenths = (std::abs(hundredths) + 5) / 10;  // half away from zero
  return Printf("%s%d.%d", hundredths < 0 ? "-" : "", static_cast<int>(tenths / 10), static_cast<int>(tenths % 10));
}

Value ValueFrom(Kind kind, uint32_t answer) {
  switch (kind) {
    case Kind::kInterfaceVersion: return Printf("%u.%u", answer >> 16, answer & 0xFFFF);
    case Kind::kFlag:
    case Kind::kSwitch: return answer != 0;
    case Kind::kFourCharacters: return Characters(answer, 4);
    case Kind::kRevision: return RevisionText(answer);
    case Kind::kArchitecture: return ArchitectureName(answer);
    case Kind::kMilliamps:
    case Kind::kMilliampsRequested: return static_cast<int64_t>(static_cast<int32_t>(answer));
    case Kind::kDate:
      if (std::optional<std::string> date = DateText(answer)) return *date;
      break;
    default: break;
  }
  return static_cast<int64_t>(answer);
}

std::string NoteOn(Kind kind, uint32_t answer) {
  if (kind == Kind::kDate && !DateText(answer)) return "not a day of the calendar: the packed date as it came";
  if (kind == Kind::kTableVersion && answer == 0) return "the EC has no healthy table";
  if (kind == Kind::kCapacity) return "mAh or 10 mWh: no export tells which";
  return {};
}

bool HasZeroByte(std::string_view byte_list) {
  while (!byte_list.empty()) {
    const size_t comma = byte_list.find(',');
    if (byte_list.substr(0, comma) == "0x0") return true;
    if (comma == std::string_view::npos) break;
    byte_list.remove_prefix(comma + 1);
  }
  return false;
}

std::string FriendlyText(const Reading& reading) {
  if (const auto* text = std::get_if<std::string>(&reading.value)) {
    return EscapeForTerminal(*text, reading.row->kind == Kind::kPath ? Backslash::kKeep : Backslash::kDouble);
  }
  if (const auto* flag = std::get_if<bool>(&reading.value)) {
    if (reading.row->kind == Kind::kSwitch) return *flag ? "on" : "off";
    return *flag ? "yes" : "no";
  }
  if (const auto* number = std::get_if<int64_t>(&reading.value)) return FriendlyNumber(reading.row->kind, *number);
  return "-";
}

}  // namespace vexahealth
