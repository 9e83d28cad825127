#include "parts.h"

#include <algorithm>
#include <charconv>

namespace vexa::check {
namespace {

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool SetLimit(std::string_view value, Part& part) {
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), part.limit_s);
  return error == std::errc() && end == value.data() + value.size() && part.limit_s > 0 && part.limit_s <= 3600;
}

// What is wrong; empty when nothing is.
std::string SetKey(std::string_view key, std::string_view value, Part& part) {
  const auto flag = [&](bool& to) { return to = value == "yes", to ? "" : "only \"yes\" is known here"; };
  if (key == "title") return part.title = value, "";
  if (key == "look") return part.look = value, "";
  if (key == "hold") return part.hold = value, "";
  if (key == "run") return part.steps.push_back({Step::Kind::kRun, std::string(value)}), "";
  if (key == "show") return part.steps.push_back({Step::Kind::kShow, std::string(value)}), "";
  if (key == "named-only") return flag(part.named_only);
  if (key == "free-driver") return flag(part.free_driver);
  if (key == "real-driver") return flag(part.real_driver);
  if (key == "limit") return SetLimit(value, part) ? "" : "not 1 to 3600 seconds";
  if (key == "machine") return part.machine = value, value == "x64" || value == "arm64" ? "" : "x64 or arm64";
  return "unknown key \"" + std::string(key) + "\"";
}

}  // namespace

std::expected<std::vector<Part>, std::string> ReadParts(std::string_view text) {
  std::vector<Part> parts;
  for (unsigned number = 1; !text.empty(); ++number) {
    const size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = Trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    const auto wrong = [&](const std::string& why) {
      return std::unexpected("line " + std::to_string(number) + ": " + why);
    };
    if (line.empty() || line.front() == '#') continue;
    if (line.front() == '[') {
      if (line.size() < 3 || line.back() != ']') return wrong("no name");
      const std::string name(line.substr(1, line.size() - 2));
      if (std::ranges::contains(parts, name, &Part::name)) return wrong("\"" + name + "\" is there twice");
      parts.emplace_back().name = name;
      continue;
    }
    const size_t colon = line.find(':');
    if (parts.empty() || colon == std::string_view::npos) return wrong("neither [name] nor \"key: value\"");
    const std::string why = SetKey(Trimmed(line.substr(0, colon)), Trimmed(line.substr(colon + 1)), parts.back());
    if (!why.empty()) return wrong(why);
  }
  return parts;
}

}  // namespace vexa::check
