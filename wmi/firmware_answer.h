// The firmware's answers as text. Pure.
#ifndef VEXA_WMI_FIRMWARE_ANSWER_H_
#define VEXA_WMI_FIRMWARE_ANSWER_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vexa {

// The number of an answer; nothing for an empty text, one that is no whole number, and one above 2147483647.
[[nodiscard]] std::optional<int32_t> AnswerNumber(std::wstring_view answer);

// The fields of a firmware version between its dots: model, version number, and so on.
[[nodiscard]] std::vector<std::string> SplitVersion(std::string_view version);

// Whether this firmware answers a written byte by the older rule.
[[nodiscard]] bool FollowsOlderWriteRule(const std::vector<std::string>& version_fields);

// Kept: the older rule takes everything but -1, an empty answer included; the newer one takes "0" alone.
[[nodiscard]] bool WriteAccepted(std::wstring_view answer, bool older_rule);

}  // namespace vexa

#endif  // VEXA_WMI_FIRMWARE_ANSWER_H_
