#include "client/rules.h"

#include <string>
#include <utility>

#include "client/firmware_rules.h"
#include "client/text.h"
#include "client/values.h"

namespace vexahealth {
namespace {

constexpr const char* kNoTable = "the EC has no healthy table";

const char* NoAnswerReason(const Row& row) {
  if (row.kind == Kind::kByteList) return "the EC reports an abnormal precharge time-out or has no data ready";
  if (row.gate == Gate::kDriver) return "the driver did not answer";
  if (row.gate == Gate::kGauge) return "the gauge did not answer";
  return "the EC did not answer";
}

Reading DecideMissing(const Row& row, vexa::Reason reason, const Circumstances& now) {
  if (reason == vexa::Reason::kUnsupported) {
    if (row.gate == Gate::kController) return Missing(row, reason, "this machine does not tell it");
    return Missing(row, Status::kNoAnswer, "the table's version could not be read during this call");
  }
  if (row.gate == Gate::kGauge && now.table.kind == TableState::Kind::kAbsent && row.kind == Kind::kText) {
    return Missing(row, Status::kUnsupported, kNoTable);
  }
  return Missing(row, reason, NoAnswerReason(row));
}

// A number that is cross-checked where it is 0 or, when signed, all ones.
std::string NoteOnNumber(const Row& row, uint32_t number) {
  const bool doubtful = number == 0 || (number == VEXA_NOT_AVAILABLE && IsSigned(row.kind));
  if (row.facts().cross_checked && doubtful) return "cross-checked: the table answered right after";
  return NoteOn(row.kind, number);
}

}  // namespace

Reading Missing(const Row& row, Status status, std::string note) {
  return {.row = &row, .status = status, .value = {}, .note = std::move(note)};
}

Reading Missing(const Row& row, vexa::Reason reason, std::string note) {
  switch (reason) {
    case vexa::Reason::kMissingExport:
      return Missing(row, Status::kUnsupported, "VexaWinIO64.dll does not export " + std::string(row.export_name));
    case vexa::Reason::kUnsupported: return Missing(row, Status::kUnsupported, std::move(note));
    case vexa::Reason::kNotCollected:  // nothing was there to collect from
    case vexa::Reason::kNotPresent: return Missing(row, Status::kNotPresent, std::move(note));
    case vexa::Reason::kNoAnswer:
    case vexa::Reason::kRefused: break;
  }
  return Missing(row, Status::kNoAnswer, std::move(note));
}

Reading Ok(const Row& row, Value value, std::string note) {
  return {.row = &row, .status = Status::kOk, .value = std::move(value), .note = std::move(note)};
}

Reading OutOfRange(const Row& row, uint32_t number) {
  return Missing(row, Status::kError, Printf("the answer 0x%x is out of range", number));
}

Reading InItsRange(const Row& row, const Told& told, std::string note) {
  if (row.kind == Kind::kText || row.kind == Kind::kPath || row.kind == Kind::kByteList) {
    return Ok(row, told.text, std::move(note));
  }
  if (!InRange(row.kind, told.number)) return OutOfRange(row, told.number);
  return Ok(row, ValueFrom(row.kind, told.number), std::move(note));
}

TableState TableStateFrom(const Answer& version) {
  if (!version || version->number > LargestAnswer(Kind::kTableVersion)) return {};
  return {.kind = version->number == 0 ? TableState::Kind::kAbsent : TableState::Kind::kPresent,
          .version = version->number};
}

std::optional<Reading> DecideWithoutCall(const Row& row, const Circumstances& now) {
  if (row.gate == Gate::kLibrary) return std::nullopt;
  if (!now.ready) return Missing(row, Status::kNotCollected, "the library is not ready: InitializeWinIo answered 0");
  if (now.route == Route::kFirmware) return FirmwareWithoutCall(row, now.gauge_answers);
  if (row.gate == Gate::kDriver || row.gate == Gate::kController) return std::nullopt;
  if (now.table.kind == TableState::Kind::kUnreadable) {
    return Missing(row, Status::kNoAnswer, "the version of the healthy table can't be read");
  }
  if (row.gate == Gate::kGauge) return std::nullopt;
  if (now.table.kind == TableState::Kind::kAbsent) return Missing(row, Status::kUnsupported, kNoTable);
  if (const uint32_t least = row.facts().least_table_version; now.table.version < least) {
    return Missing(row, Status::kUnsupported,
                   Printf("needs healthy-table version %u, this EC has %u", least, now.table.version));
  }
  return std::nullopt;
}

Reading Decide(const Row& row, const Answer& answer, const Circumstances& now) {
  if (!answer) return DecideMissing(row, answer.error(), now);
  if (row.kind == Kind::kText && answer->text.empty()) return Missing(row, Status::kNoAnswer, "the name is empty");
  if (row.kind == Kind::kText) return Ok(row, answer->text);
  if (row.kind != Kind::kByteList) return InItsRange(row, *answer, NoteOnNumber(row, answer->number));
  return Ok(row, answer->text, HasZeroByte(answer->text) ? "0x0 also stands for a byte that could not be read" : "");
}

}  // namespace vexahealth
