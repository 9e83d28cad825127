// From what an export answered to a reading. Nothing here calls the library.
//
// On the driver route many exports answer a number that is also a true value when the EC has no healthy table, when the
// table's version could not be read during that call, or (the flags) when an exchange failed. Such an answer is never
// believed by itself. Two facts decide:
//
// - the table's version, read once before everything else, and
// - a cross-check right after the doubtful answer: the pack voltage, read through the same table. Its failures differ
//   from every true value (VEXA_NOT_AVAILABLE without a table, VEXA_NO_ANSWER after a failed exchange), so a plain
//   number proves that the version and the table answered at that moment. This is stronger than reading the version
//   again, which the EC answers without the table. A library without that export leaves only the version.
//
// A fault that hits one register only and is over by the next call can't be told from a true 0; the note says so.
//
// The firmware route has rules of its own: see firmware_rules.h.
#ifndef CLIENT_RULES_H_
#define CLIENT_RULES_H_

#include <cstdint>
#include <optional>
#include <string>

#include "client/reading.h"

namespace vexahealth {

// What the table's version says about the exports behind it.
struct TableState {
  enum class Kind { kUnreadable, kAbsent, kPresent };

  Kind kind = Kind::kUnreadable;
  uint32_t version = 0;
};

enum class CrossCheck {
  kNone,       // the answer was plain
  kConfirmed,  // the source answered right after
  kNoTable,    // the EC now says that it has no table
  kNoAnswer,   // nothing answered right after
};

// What is known when a row's turn comes.
struct Circumstances {
  Route route = Route::kUnknown;
  bool ready = false;
  TableState table;            // driver route
  bool gauge_answers = false;  // firmware route
};

[[nodiscard]] Reading Missing(const Row& row, Status status, std::string note);
[[nodiscard]] Reading Ok(const Row& row, Value value, std::string note = {});
[[nodiscard]] Reading MissingExport(const Row& row);
[[nodiscard]] Reading NotOffered(const Row& row);
[[nodiscard]] Reading OutOfRange(const Row& row, const Answer& answer);

TableState TableStateFrom(const Answer& version);

// The reading of a row that needs no call, because what it depends on is missing.
[[nodiscard]] std::optional<Reading> DecideWithoutCall(const Row& row, const Circumstances& now);

// True when the answer may be a failure in disguise, so that Decide wants a cross-check.
bool NeedsCrossCheck(const Row& row, const Answer& answer, Route route);

// The cross-check of the driver route, from the pack voltage and, read after it, the table's version. The version is
// looked at only where WantsVersion says so: the voltage's export is missing, or its answer says that there is no
// table.
bool WantsVersion(const Answer& voltage);
CrossCheck CrossCheckFrom(const Answer& voltage, const Answer& version);

[[nodiscard]] Reading Decide(const Row& row, const Answer& answer, const Circumstances& now, CrossCheck check);

}  // namespace vexahealth

#endif  // CLIENT_RULES_H_
