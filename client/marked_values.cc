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

}  // namespace

Reading DecideMarked(const Row& row, const Answer& answer, const MarkerReasons& reasons) {
  if (!answer) {
    const bool failed = answer.error() == vexa::Reason::kNoAnswer || answer.error() == vexa::Reason::kRefused;
    return Missing(row, answer.error(), failed ? reasons.failed : reasons.not_collected);
  }
  if (!row.member.empty()) {
    const std::optional<uint32_t> count = CountIn(answer->text, row.member);
    return count ? Ok(row, int64_t{*count})
                 : Missing(row, Status::kError, "the answer is not an object with this count");
  }
  if (row.kind == Kind::kText) {
    return answer->text.empty() ? Missing(row, Status::kNotPresent, "the text is empty") : Ok(row, answer->text);
  }
  if (row.kind == Kind::kDbm) return Ok(row, int64_t{static_cast<int32_t>(answer->number)});
  return static_cast<int32_t>(answer->number) < 0 ? OutOfRange(row, answer->number) : InItsRange(row, *answer);
}

const Answer& AnswerCache::Of(const Row& row) {
  const auto found = answers_.find(row.export_name);
  return found != answers_.end() ? found->second : answers_.emplace(row.export_name, row.ask(context_)).first->second;
}

}  // namespace vexahealth
