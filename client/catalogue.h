// The list of readings: one row per export of the library that reads something, in the order of the output.
#ifndef CLIENT_CATALOGUE_H_
#define CLIENT_CATALOGUE_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "vexa/vexa.hpp"

namespace vexahealth {

// In the order of the output.
enum class Section {
  kLibrary,
  kController,
  kBattery,
  kCharger,
  kAdapter,
  kPowerDelivery,
  kThermal,
  kSystem,
  kWifi,
  kAccessPoints,
  kBluetooth,
  kUsb,
  kMachine,
  kProcessor,
  kStorage,
  kDisplay,
  kNetwork,
  kChargeLimit,
  kQuietFan,
  kApplication,
};
inline constexpr Section kLastSection = Section::kApplication;

// What an answer means: decides its range, its unit and how the table shows it.
enum class Kind {
  kInterfaceVersion,  // major in the high half, minor in the low half
  kHex32,
  kHex16,
  kHex8,
  kNumber32,
  kNumber8,
  kNumber16,
  kTableVersion,
  kBit,
  kFlag,
  kSwitch,  // on or off
  kPercent,
  kStoredPercent,  // a percentage as somebody stored it: any number
  kMillivolts,
  kMilliamps,           // signed: negative while discharging
  kMilliampsRequested,  // signed: what the gauge asks for, not what flows
  kMilliwatts,
  kWatts,
  kDeciKelvin,
  kCelsius,
  kRpm,
  kDbm,
  kMegabits,
  kChannel,
  kStations,     // a number of access points, shown with a bar
  kPowerObject,  // a power data object of the USB Power Delivery standard
  kDate,
  kCapacity,
  kTimeoutByte,
  kArchitecture,  // of the processor, as Win32_Processor numbers it
  kMegatransfers,
  kFourCharacters,  // the first in the top byte
  kRevision,        // two characters, the first in the higher byte
  kText,
  kPath,
  kByteList,
};

// What must answer before the export is worth calling.
enum class Gate {
  kLibrary,     // nothing: a constant of the library
  kDriver,      // the kernel driver
  kController,  // the EC, with or without a healthy table
  kGauge,       // the gauge behind the EC's SMBus pass-through, which an EC without a table may have too
  kTable,       // a healthy table
  kTableWaits,  // the same, and the call may wait for seconds
};

// What a number tells on machines whose gauge is read through the firmware's methods (ARM64). A call of such a method
// that failed answers 0.
enum class OnFirmware {
  kPlain,      // not the gauge: 0 is a value
  kNeverZero,  // the gauge, which never answers 0 (or an empty name) while it works
  kMayBeZero,  // the gauge, for which 0 is a value like others
  kSystem,     // the system's power status; 0 also when the system does not know
};

// What an export told: a number (a signed one by its 32 bits) or a text in UTF-8, or the reason why it told none.
struct Told {
  uint32_t number = 0;
  std::string text;
};
using Answer = vexa::Answer<Told>;

struct Context;
using AskFunction = Answer (*)(const Context&);

struct Row {
  std::string_view key;
  std::string_view label;
  Section section;
  std::string_view export_name;
  AskFunction ask;  // null: the family's own code calls it
  Kind kind;
  Gate gate = Gate::kLibrary;
  OnFirmware on_firmware = OnFirmware::kPlain;
  bool detail = false;           // a part of another reading, whose line in the table tells it too
  bool may_lack = false;         // a machine may lack the thing, so that no answer means its absence
  std::string_view member = {};  // of the JSON object that the export answers; empty: the answer is the value

  // What the interface's catalogue knows of the export.
  constexpr const vexa::ExportFacts& facts() const { return *vexa::FindExport(export_name); }
};

inline constexpr size_t kRowCount = 35;
extern const std::array<Row, kRowCount> kRows;

// Index of the row with this key; the key must exist.
size_t RowIndex(std::string_view key);

std::string_view SectionTitle(Section section);

// Unit of the number as the export gives it, where it has one.
std::optional<std::string_view> UnitOf(Kind kind);

// True for the kinds whose value is a text.
bool IsText(Kind kind);

// True for the kinds whose answer is a signed 16-bit number, sign-extended.
bool IsSigned(Kind kind);

// Largest answer that the export's contract allows; signed kinds are checked as such instead.
uint32_t LargestAnswer(Kind kind);

// True for rows that tell something about the battery, which is not there when no pack is.
bool TellsBattery(const Row& row);

}  // namespace vexahealth

#endif  // CLIENT_CATALOGUE_H_
