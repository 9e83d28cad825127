#include "client/marked_values.h"

#include <charconv>
#include <optional>

#include "client/json_parts.h"
#include "client/rules.h"
#include "client/values.h"

namespace vexahealth {
namespace {

// The decimal count that is a member of the object; nothing for any other text.
std::optional<uint32_t> CountIn(std::string_view text, std::string_view member) {
  constexpr bool kThrow = false;
  const Json object = Json::parse(text, nullptr, kThrow);
  if (!object.is_object()) return std::nullopt;
  const auto found = object.find(std::string(member));
  if (found == object.end() || !found->is_string()) return std::nullopt;
  const auto& digits = found->get_ref<const std::string&>();
  uint32_t count = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), count);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return count;
}

bool IsMarker(std::string_view text) { return text == VEXA_NOT_COLLECTED_TEXT || text == VEXA_COLLECT_FAILED_TEXT; }

Reading DecideCount(const Row& row, const Answer& answer, const MarkerReasons& reasons) {
  if (answer.form != Answer::Form::kText || IsMarker(answer.text)) return DecideMarkedText(row, answer, reasons);
  const std::optional<uint32_t> count = CountIn(answer.text, row.member);
  if (!count) return Missing(row, Status::kError, "the answer is not an object with this count");
  return Ok(row, int64_t{*count});
}

}  // namespace

Reading DecideMarkedNumber(const Row& row, uint32_t number, const MarkerReasons& reasons) {
  if (number == VEXA_NOT_COLLECTED) return Missing(row, Status::kNotPresent, reasons.not_collected);
  if (number == VEXA_COLLECT_FAILED) return Missing(row, Status::kNoAnswer, reasons.failed);
  if (row.kind == Kind::kDbm) return Ok(row, int64_t{static_cast<int32_t>(number)});
  if (static_cast<int32_t>(number) < 0 || !InRange(row.kind, number)) {
    return OutOfRange(row, {.form = Answer::Form::kNumber, .number = number, .text = {}});
  }
  return Ok(row, ValueFrom(row.kind, number));
}

Reading DecideMarkedText(const Row& row, const Answer& answer, const MarkerReasons& reasons) {
  if (answer.form == Answer::Form::kMissingExport) return MissingExport(row);
  if (answer.form == Answer::Form::kUnterminated) return Missing(row, Status::kError, "the text is not terminated");
  if (answer.text == VEXA_NOT_COLLECTED_TEXT) return Missing(row, Status::kNotPresent, reasons.not_collected);
  if (answer.text == VEXA_COLLECT_FAILED_TEXT) return Missing(row, Status::kNoAnswer, reasons.failed);
  if (answer.text.empty()) return Missing(row, Status::kNotPresent, "the text is empty");
  return Ok(row, answer.text);
}

Reading DecideMarked(const Row& row, const Answer& answer, const MarkerReasons& reasons) {
  if (answer.form == Answer::Form::kMissingExport) return MissingExport(row);
  if (!row.member.empty()) return DecideCount(row, answer, reasons);
  if (row.signature == Signature::kTextByValue) return DecideMarkedText(row, answer, reasons);
  return DecideMarkedNumber(row, answer.number, reasons);
}

const Answer& AnswerCache::Of(const Row& row) {
  const auto [place, added] = answers_.try_emplace(row.export_name);
  if (added) {
    const Context& context = session_.context();
    place->second = Call(row, context.resolve(row.export_name), context.decode, context.decode_wide);
  }
  return place->second;
}

}  // namespace vexahealth
