#include "client/collect.h"

#include <array>
#include <cassert>
#include <optional>
#include <utility>

#include "client/presence.h"
#include "client/rules.h"

namespace vexahealth {
namespace {

// Takes the text up to its terminator, which must stand within the first `capacity` bytes.
void TakeText(std::string_view bytes, size_t capacity, TextDecoder decode, Answer& answer) {
  const size_t length = bytes.find('\0');
  if (length >= capacity) {
    answer.form = Answer::Form::kUnterminated;
    return;
  }
  answer.form = Answer::Form::kText;
  answer.text = decode(bytes.substr(0, length));
}

Answer CallTextBuffer(const Row& row, TextBufferExport fill, TextDecoder decode) {
  assert(row.text_capacity <= VEXA_TEXT_CAPACITY);
  // Larger than what the export asks for, and ended: a library that writes too much is found out, not
  // suffered.
  std::array<char, VEXA_TEXT_CAPACITY + 1> buffer{};
  Answer answer;
  answer.number = fill(buffer.data());
  TakeText({buffer.data(), buffer.size()}, row.text_capacity, decode, answer);
  return answer;
}

Answer CallTextByValue(TextByValueExport fetch, TextDecoder decode) {
  const VexaText text = fetch();
  Answer answer;
  TakeText({text.text, sizeof text.text}, sizeof text.text, decode, answer);
  return answer;
}

Answer Call(const Row& row, AnyExport function, TextDecoder decode) {
  if (function == nullptr) return {};
  switch (row.signature) {
    case Signature::kNumber:
      return {
          .form = Answer::Form::kNumber, .number = reinterpret_cast<NumberExport>(function)(), .text = {}};
    case Signature::kTextBuffer:
      return CallTextBuffer(row, reinterpret_cast<TextBufferExport>(function), decode);
    case Signature::kTextByValue:
      return CallTextByValue(reinterpret_cast<TextByValueExport>(function), decode);
  }
  return {};
}

Answer CallRow(std::string_view key, const RowExports& exports) {
  const size_t index = RowIndex(key);
  return Call(kRows[index], exports[index], nullptr);
}

CrossCheck CrossCheckNow(const RowExports& exports) {
  const Answer voltage = CallRow("battery.voltage", exports);
  return CrossCheckFrom(voltage, WantsVersion(voltage) ? CallRow("ec.table_version", exports) : Answer{});
}

Reading CollectRow(size_t index, const RowExports& exports, const Circumstances& now, TextDecoder decode) {
  const Row& row = kRows[index];
  if (std::optional<Reading> decided = DecideWithoutCall(row, now)) return std::move(*decided);
  const Answer answer = Call(row, exports[index], decode);
  const CrossCheck check = NeedsCrossCheck(row, answer) ? CrossCheckNow(exports) : CrossCheck::kNone;
  return Decide(row, answer, now, check);
}

}  // namespace

std::vector<Reading> Collect(const RowExports& exports, const CollectOptions& options) {
  Circumstances now{.route = options.route, .ready = options.ready, .table = {}};
  if (options.ready) now.table = TableStateFrom(CallRow("ec.table_version", exports));

  constexpr size_t kWaiting = kRowCount - 1;  // the export that may wait for seconds
  std::vector<Reading> readings = NothingCollected("left out: it can wait for 3 seconds");
  for (size_t i = 0; i < kWaiting; ++i) readings[i] = CollectRow(i, exports, now, options.decode);

  const bool absent = BatteryAbsent(readings);
  if (std::optional<Reading> decided = DecideWithoutCall(kRows[kWaiting], now)) {
    readings[kWaiting] = std::move(*decided);
  } else if (options.may_wait && !absent) {
    readings[kWaiting] = CollectRow(kWaiting, exports, now, options.decode);
  }
  if (absent) {
    MarkBatteryAbsent(readings);
  } else {
    MarkAbsentCells(readings);
  }
  return readings;
}

}  // namespace vexahealth
