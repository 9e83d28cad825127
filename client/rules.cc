#include "client/rules.h"

#include <string>
#include <utility>

#include "client/firmware_rules.h"
#include "client/text.h"
#include "client/values.h"

namespace vexahealth {
namespace {

const char* NoAnswerReason(const Row& row) {
  if (row.gate == Gate::kDriver) return "the driver did not answer";
  if (row.gate == Gate::kGauge) return "the gauge did not answer";
  return "the EC did not answer";
}

constexpr const char* kNoTable = "the EC has no healthy table";

Reading FromCrossCheck(const Row& row, const Answer& answer, CrossCheck check) {
  switch (check) {
    case CrossCheck::kNoTable: return Missing(row, Status::kUnsupported, kNoTable);
    case CrossCheck::kConfirmed: break;
    case CrossCheck::kNone:
    case CrossCheck::kNoAnswer:
      return Missing(row, Status::kNoAnswer,
                     Printf("%s may be a failed exchange, and the table did not answer right after",
                            row.reserved == Reserved::kZero ? "0" : "0xffffffff"));
  }
  if (row.reserved == Reserved::kZero || IsSigned(row.kind)) {
    return Ok(row, ValueFrom(row.kind, answer.number), "cross-checked: the table answered right after");
  }
  return Missing(row, Status::kNoAnswer, "0xffffffff: the table's version could not be read during this call");
}

Reading DecideNumber(const Row& row, const Answer& answer, CrossCheck check) {
  const bool from_controller = row.gate != Gate::kLibrary && row.gate != Gate::kDriver;
  if (answer.number == VEXA_NO_ANSWER && from_controller) {
    return Missing(row, Status::kNoAnswer, NoAnswerReason(row));
  }
  if (row.reserved == Reserved::kZeroIsFault && answer.number == 0) {
    return Missing(row, Status::kNoAnswer, NoAnswerReason(row));
  }
  if (row.reserved == Reserved::kNotOffered && answer.number == VEXA_NOT_AVAILABLE) return NotOffered(row);
  if (NeedsCrossCheck(row, answer, Route::kDriver)) return FromCrossCheck(row, answer, check);
  if (!InRange(row.kind, answer.number)) return OutOfRange(row, answer);
  return Ok(row, ValueFrom(row.kind, answer.number), NoteOn(row.kind, answer.number));
}

Reading DecideBufferText(const Row& row, const Answer& answer, const Circumstances& now) {
  if (answer.form == Answer::Form::kUnterminated) {
    return Missing(row, Status::kError, "the library wrote past the buffer that it asks for");
  }
  if (answer.number > 1) return OutOfRange(row, answer);
  if (now.route == Route::kFirmware) return FirmwareName(row, answer);
  if (answer.number == 1 && !answer.text.empty()) return Ok(row, answer.text);
  if (answer.number == 1) return Missing(row, Status::kNoAnswer, "the name is empty");
  if (now.table.kind == TableState::Kind::kAbsent && row.gate != Gate::kController) {
    return Missing(row, Status::kUnsupported, kNoTable);
  }
  return Missing(row, Status::kNoAnswer, NoAnswerReason(row));
}

Reading DecideInformation(const Row& row, const Answer& answer) {
  if (answer.form == Answer::Form::kUnterminated) {
    return Missing(row, Status::kError, "the text is not terminated");
  }
  if (answer.text.empty()) {
    return Missing(row, Status::kNoAnswer, "the EC reports an abnormal precharge time-out or has no data ready");
  }
  return Ok(row, answer.text, HasZeroByte(answer.text) ? "0x0 also stands for a byte that could not be read" : "");
}

}  // namespace

Reading Missing(const Row& row, Status status, std::string note) {
  return {.row = &row, .status = status, .value = {}, .note = std::move(note)};
}

Reading Ok(const Row& row, Value value, std::string note) {
  return {.row = &row, .status = Status::kOk, .value = std::move(value), .note = std::move(note)};
}

Reading OutOfRange(const Row& row, const Answer& answer) {
  return Missing(row, Status::kError, Printf("the answer 0x%x is out of range", answer.number));
}

Reading NotOffered(const Row& row) { return Missing(row, Status::kUnsupported, "this machine does not tell it"); }

Reading MissingExport(const Row& row) {
  return Missing(row, Status::kUnsupported, Printf("VexaWinIO64.dll does not export %s", row.export_name));
}

TableState TableStateFrom(const Answer& version) {
  if (version.form != Answer::Form::kNumber || version.number > LargestAnswer(Kind::kTableVersion)) return {};
  return {.kind = version.number == 0 ? TableState::Kind::kAbsent : TableState::Kind::kPresent,
          .version = version.number};
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
  if (now.table.version < row.min_version) {
    return Missing(row, Status::kUnsupported,
                   Printf("needs healthy-table version %u, this EC has %u", row.min_version, now.table.version));
  }
  return std::nullopt;
}

bool NeedsCrossCheck(const Row& row, const Answer& answer, Route route) {
  if (route == Route::kFirmware) return FirmwareNeedsCrossCheck(row, answer);
  if (answer.form != Answer::Form::kNumber) return false;
  return (row.reserved == Reserved::kZero && answer.number == 0) ||
         (row.reserved == Reserved::kAllOnes && answer.number == VEXA_NOT_AVAILABLE);
}

bool WantsVersion(const Answer& voltage) {
  return voltage.form != Answer::Form::kNumber || voltage.number == VEXA_NOT_AVAILABLE;
}

CrossCheck CrossCheckFrom(const Answer& voltage, const Answer& version) {
  if (!WantsVersion(voltage)) {
    return InRange(Kind::kMillivolts, voltage.number) ? CrossCheck::kConfirmed : CrossCheck::kNoAnswer;
  }
  const TableState table = TableStateFrom(version);
  if (table.kind == TableState::Kind::kAbsent) return CrossCheck::kNoTable;
  const bool only_version = voltage.form != Answer::Form::kNumber;
  return only_version && table.kind == TableState::Kind::kPresent ? CrossCheck::kConfirmed : CrossCheck::kNoAnswer;
}

Reading Decide(const Row& row, const Answer& answer, const Circumstances& now, CrossCheck check) {
  if (answer.form == Answer::Form::kMissingExport) {
    return MissingExport(row);
  }
  switch (row.signature) {
    case Signature::kNumber:
      return now.route == Route::kFirmware && row.gate != Gate::kLibrary ? FirmwareNumber(row, answer, check)
                                                                         : DecideNumber(row, answer, check);
    case Signature::kTextBuffer: return DecideBufferText(row, answer, now);
    case Signature::kTextByValue: return DecideInformation(row, answer);
    default: break;  // decided elsewhere
  }
  return Missing(row, Status::kError, "not a reading of the notebook's state");
}

}  // namespace vexahealth
