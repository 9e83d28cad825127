// The list of readings: one row per export of the library that reads something, in the order of the output.
#ifndef CLIENT_CATALOGUE_H_
#define CLIENT_CATALOGUE_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <type_traits>

#include "vexa/vexa.h"

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

// Where the value comes from on machines whose gauge is read through the firmware's methods (ARM64). A call of such a
// method that failed answers 0.
enum class OnFirmware {
  kSame,       // the library itself, as everywhere
  kNothing,    // the firmware has no such value; the export answers a constant
  kNeverZero,  // the gauge, which never answers 0 (or an empty name) while it works
  kMayBeZero,  // the gauge, for which 0 is a value like others
  kPlain,      // not the gauge: a failed call answers VEXA_NO_ANSWER, 0 is a value
  kSystem,     // the system's power status; 0 also when the system does not know
};

// Answer that may be a failure in disguise, besides VEXA_NO_ANSWER. Of the driver route.
enum class Reserved {
  kNone,
  kZero,         // 0 is a true value, but also the answer without a table
  kAllOnes,      // VEXA_NOT_AVAILABLE is the answer without a table
  kZeroIsFault,  // 0 is no true value: the request failed or the machine has none
  kNotOffered,   // VEXA_NOT_AVAILABLE: this machine does not tell
};

// How an export is called. "Com" exports take the flag that tells them to initialise COM.
enum class Signature {
  kNumber,
  kTextBuffer,
  kTextByValue,
  kWideBuffer,  // left as it was when there is no text
  kComNumber,
  kComPath,
  kOwn,  // the family's own code calls it
};

using NumberExport = uint32_t (*)() noexcept;
using TextBufferExport = uint32_t (*)(char*) noexcept;
using TextByValueExport = VexaText (*)() noexcept;
using WideBufferExport = void (*)(wchar_t*) noexcept;
using ComNumberExport = uint32_t (*)(uint32_t) noexcept;
using ComPathExport = uint32_t (*)(wchar_t*, uint32_t) noexcept;

// An export resolved from the library; called only as its row's signature says. Null: the library lacks it.
using AnyExport = void (*)();

template <typename Declared>
consteval Signature SignatureOf() {
  if constexpr (std::is_same_v<Declared, NumberExport>) {
    return Signature::kNumber;
  } else if constexpr (std::is_same_v<Declared, TextBufferExport>) {
    return Signature::kTextBuffer;
  } else if constexpr (std::is_same_v<Declared, ComNumberExport>) {
    return Signature::kComNumber;
  } else if constexpr (std::is_same_v<Declared, ComPathExport>) {
    return Signature::kComPath;
  } else if constexpr (std::is_same_v<Declared, WideBufferExport>) {
    return Signature::kWideBuffer;
  } else if constexpr (std::is_same_v<Declared, TextByValueExport>) {
    return Signature::kTextByValue;
  } else {
    return Signature::kOwn;
  }
}

struct Row {
  std::string_view key;
  std::string_view label;
  Section section;
  const char* export_name;  // terminated: it goes to the loader
  Signature signature;
  Kind kind;
  Gate gate = Gate::kLibrary;
  OnFirmware on_firmware = OnFirmware::kSame;
  Reserved reserved = Reserved::kNone;
  size_t text_capacity = 0;      // characters that an export may fill, terminator included
  uint32_t min_version = 0;      // of the healthy table
  bool detail = false;           // a part of another reading, whose line in the table tells it too
  std::string_view member = {};  // of the JSON object that the export answers; empty: the answer is the value
};

inline constexpr size_t kRowCount = 35;
extern const std::array<Row, kRowCount> kRows;

// Finds an export by its name; null when the library lacks it.
using Resolver = std::function<AnyExport(const char*)>;

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
