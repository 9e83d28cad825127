#include "client/html_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

#include "client/text.h"
#include "client/values.h"

namespace vexahealth {
namespace {

// Lists whose pieces begin with, or hold, a number of bytes.
constexpr std::array<std::string_view, 8> kSizes = {
    "inventory.memory", "inventory.memory_size", "inventory.disks",    "inventory.disk_sizes",
    "inventory.hdd",    "inventory.hdd_free",    "inventory.ssd_free", "inventory.removable_disk_sizes"};

std::string_view Reference(char character) {
  switch (character) {
    case '&': return "&amp;";
    case '<': return "&lt;";
    case '>': return "&gt;";
    case '"': return "&quot;";
    case '\'': return "&#39;";
    default: return {};
  }
}

std::string Escaped(std::string_view text) {
  std::string result;
  for (const char character : text) {
    const std::string_view reference = Reference(character);
    if (reference.empty()) {
      result += character;
    } else {
      result += reference;
    }
  }
  return result;
}

// "512.1 GB" for a number of at least a million.
std::optional<std::string> SizeText(std::string_view digits) {
  uint64_t bytes = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), bytes);
  if (error != std::errc() || end != digits.data() + digits.size() || bytes < 1000000) return std::nullopt;
  constexpr uint64_t kGibibyte = uint64_t{1} << 30;
  if (bytes % kGibibyte == 0) return Printf("%llu\u00a0GiB", static_cast<unsigned long long>(bytes / kGibibyte));
  const bool mega = bytes < 1000000000;
  const uint64_t tenth = mega ? 100000 : 100000000;
  const uint64_t tenths = bytes / tenth + (bytes % tenth >= tenth / 2 ? 1 : 0);
  return Printf("%llu.%llu\u00a0%s", static_cast<unsigned long long>(tenths / 10),
                static_cast<unsigned long long>(tenths % 10), mega ? "MB" : "GB");
}

std::string WithSizes(std::string_view piece) {
  std::string result;
  for (bool first = true;; first = false) {
    const size_t end = std::min(piece.find(','), piece.size());
    const std::string_view field = piece.substr(0, end);
    const std::optional<std::string> size = SizeText(field);
    result += (first ? "" : ", ") + (size ? *size : std::string(field));
    if (end == piece.size()) return result;
    piece.remove_prefix(end + 1);
  }
}

// Each device of a list on its own line.
std::string ListValue(std::string_view text, bool sizes) {
  std::string result;
  for (bool first = true;; first = false) {
    const size_t end = std::min(text.find(';'), text.size());
    const std::string piece(text.substr(0, end));
    result += (first ? "" : "<br>") + HtmlText(sizes ? WithSizes(piece) : piece);
    if (end == text.size()) return result;
    text.remove_prefix(end + 1);
  }
}

// "2025-03-17" of "20250317000000.000000+000".
std::optional<std::string> CimDay(std::string_view text) {
  const std::string_view digits = text.substr(0, 8);
  if (text.size() != 25 || text[14] != '.' || digits.find_first_not_of("0123456789") != std::string_view::npos) {
    return std::nullopt;
  }
  return std::string(digits.substr(0, 4)) + "-" + std::string(digits.substr(4, 2)) + "-" +
         std::string(digits.substr(6, 2));
}

}  // namespace

std::string HtmlText(std::string_view text) { return Escaped(EscapeForTerminal(text, Backslash::kKeep)); }

std::string JsonForScript(std::string_view json) {
  std::string result;
  for (const char character : json) {
    switch (character) {
      case '<': result += "\\u003c"; break;
      case '>': result += "\\u003e"; break;
      case '&': result += "\\u0026"; break;
      default: result += character;
    }
  }
  return result;
}

std::string Element(std::string_view name, std::string_view attributes, std::string_view content) {
  std::string element = "<" + std::string(name);
  if (!attributes.empty()) element += " " + std::string(attributes);
  return element + ">" + std::string(content) + "</" + std::string(name) + ">";
}

std::string WithMinusSign(std::string text, const Reading& reading) {
  const bool number = std::holds_alternative<int64_t>(reading.value);
  if (number && text.starts_with('-')) text.replace(0, 1, "\u2212");
  return text;
}

std::string HtmlValue(const Reading& reading) {
  const Row& row = *reading.row;
  if (const auto* text = std::get_if<std::string>(&reading.value)) {
    if (row.key == "inventory.bios_date") {
      if (const std::optional<std::string> day = CimDay(*text)) return *day;
    }
    if (row.key.starts_with("inventory.")) {
      return ListValue(*text, std::ranges::find(kSizes, row.key) != kSizes.end());
    }
  }
  if (row.kind == Kind::kStations) {
    const auto* count = std::get_if<int64_t>(&reading.value);
    return count == nullptr ? "-" : std::to_string(*count);
  }
  return Escaped(WithMinusSign(FriendlyText(reading), reading));
}

}  // namespace vexahealth
