#include "wmi/firmware_answer.h"

#include <nlohmann/json.hpp>

#include "wmi/decimal.h"

namespace vexa {
namespace {

struct OlderFirmware {
  std::string_view model;
  int32_t below;  // version number from which the newer rule holds
};

// Early firmware of these two models answered a written byte differently.
constexpr OlderFirmware kOlderFirmware[] = {{"K7720MBT", 361}, {"K7720MB", 313}};

// Nothing for a field that is no number.
std::optional<int32_t> VersionNumber(std::string_view field) {
  try {
    return ParseLong(std::wstring(field.begin(), field.end()));
  } catch (const std::logic_error&) {
    return std::nullopt;
  }
}

}  // namespace

std::optional<int32_t> AnswerNumber(std::wstring_view answer) {
  const auto parsed = nlohmann::json::parse(answer.begin(), answer.end(), nullptr, /*allow_exceptions=*/false);
  if (!parsed.is_number_unsigned()) return std::nullopt;
  const auto number = parsed.get<uint64_t>();
  return number <= INT32_MAX ? std::optional(static_cast<int32_t>(number)) : std::nullopt;
}

std::vector<std::string> SplitVersion(std::string_view version) {
  std::vector<std::string> fields;
  for (size_t begin = 0;;) {
    const size_t end = version.find('.', begin);
    fields.emplace_back(version.substr(begin, end - begin));
    if (end == std::string_view::npos) return fields;
    begin = end + 1;
  }
}

bool FollowsOlderWriteRule(const std::vector<std::string>& version_fields) {
  if (version_fields.size() < 2) return false;
  for (const OlderFirmware& older : kOlderFirmware) {
    if (version_fields[0] != older.model) continue;
    const std::optional<int32_t> number = VersionNumber(version_fields[1]);
    return number && *number < older.below;
  }
  return false;
}

bool WriteAccepted(std::wstring_view answer, bool older_rule) {
  return older_rule ? answer != L"4294967295" : answer == L"0";
}

}  // namespace vexa
