// From what an export told to a reading. Nothing here calls the library.
//
// vexa.hpp tells values from reserved answers, and cross-checks an answer that may be either. Two things are known here
// beside that: the version of the EC's healthy table, read once before everything else, without which an export is not
// worth a call; and what a value must look like. A fault that hits one register only and is over by the next call can't
// be told from a true 0; the note says so.
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

// What is known when a row's turn comes.
struct Circumstances {
  Route route = Route::kUnknown;
  bool ready = false;
  TableState table;            // driver route
  bool gauge_answers = false;  // firmware route
};

[[nodiscard]] Reading Missing(const Row& row, Status status, std::string note);
[[nodiscard]] Reading Ok(const Row& row, Value value, std::string note = {});
[[nodiscard]] Reading OutOfRange(const Row& row, uint32_t number);

// With the status that goes with the reason; the note of a missing export is its name.
[[nodiscard]] Reading Missing(const Row& row, vexa::Reason reason, std::string note);

// The value of a number or a text in its row's range.
[[nodiscard]] Reading InItsRange(const Row& row, const Told& told, std::string note = {});

TableState TableStateFrom(const Answer& version);

// The reading of a row that needs no call, because what it depends on is missing.
[[nodiscard]] std::optional<Reading> DecideWithoutCall(const Row& row, const Circumstances& now);

[[nodiscard]] Reading Decide(const Row& row, const Answer& answer, const Circumstances& now);

}  // namespace vexahealth

#endif  // CLIENT_RULES_H_
