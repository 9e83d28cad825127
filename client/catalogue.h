// The list of readings: one row per export of the library that reads something, in the order of the output.
#ifndef CLIENT_CATALOGUE_H_
#define CLIENT_CATALOGUE_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <type_traits>

#include "vexa/vexa.h"

namespace vexahealth {

enum class Section { kLibrary, kController, kBattery, kCharger };

// What an answer means: decides its range, its unit and how the table shows it.
enum class Kind {
  kInterfaceVersion,  // major in the high half, minor in the low half
  kHex32,
  kHex8,
  kNumber32,
  kNumber16,
  kTableVersion,
  kBit,
  kFlag,
  kPercent,
  kMillivolts,
  kMilliamps,           // signed: negative while discharging
  kMilliampsRequested,  // signed: what the gauge asks for, not what flows
  kDeciKelvin,
  kDate,
  kCapacity,
  kTimeoutByte,
  kText,
  kByteList,
};

// What must answer before the export is worth calling.
enum class Gate {
  kLibrary,     // nothing: a constant of the library
  kDriver,      // the kernel driver
  kController,  // the EC, with or without a healthy table
  kGauge,       // the gauge behind the EC's SMBus pass-through, which an EC without a table may have too
  kTable,       // a healthy table
  kTable10,     // a healthy table of version 10 or newer; the call may wait for seconds
};

// Answer that may be a failure in disguise, besides VEXA_NO_ANSWER.
enum class Reserved {
  kNone,
  kZero,         // 0 is a true value, but also the answer without a table
  kAllOnes,      // VEXA_NOT_AVAILABLE is the answer without a table
  kZeroIsFault,  // 0 is no true value: the request failed or the machine has none
};

// How an export is called.
enum class Signature { kNumber, kTextBuffer, kTextByValue };

using NumberExport = uint32_t (*)() noexcept;
using TextBufferExport = uint32_t (*)(char*) noexcept;
using TextByValueExport = VexaText (*)() noexcept;

// An export resolved from the library; called only as its row's signature says. Null: the library lacks it.
using AnyExport = void (*)();

template <typename Declared>
consteval Signature SignatureOf() {
  if constexpr (std::is_same_v<Declared, NumberExport>) {
    return Signature::kNumber;
  } else if constexpr (std::is_same_v<Declared, TextBufferExport>) {
    return Signature::kTextBuffer;
  } else {
    static_assert(std::is_same_v<Declared, TextByValueExport>, "no way to call this export");
    return Signature::kTextByValue;
  }
}

struct Row {
  std::string_view key;
  std::string_view label;
  Section section;
  const char* export_name;  // terminated: it goes to the loader
  Signature signature;
  Kind kind;
  Gate gate;
  Reserved reserved = Reserved::kNone;
  size_t text_capacity = 0;  // bytes that a kTextBuffer export may fill, terminator included
};

inline constexpr size_t kRowCount = 35;
extern const std::array<Row, kRowCount> kRows;

// Resolved exports, one per row, in the order of kRows.
using RowExports = std::array<AnyExport, kRowCount>;

// Index of the row with this key; the key must exist.
size_t RowIndex(std::string_view key);

std::string_view SectionTitle(Section section);

// Unit of the number as the export gives it, where it has one.
std::optional<std::string_view> UnitOf(Kind kind);

// True for the kinds whose answer is a signed 16-bit number, sign-extended.
bool IsSigned(Kind kind);

// Largest answer that the export's contract allows; signed kinds are checked as such instead.
uint32_t LargestAnswer(Kind kind);

// True for rows that tell something about the battery, which is not there when no pack is.
bool TellsBattery(const Row& row);

}  // namespace vexahealth

#endif  // CLIENT_CATALOGUE_H_
