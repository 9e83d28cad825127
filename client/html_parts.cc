#include "client/html_parts.h"

#include <algorithm>
#include <utility>

#include "client/html_text.h"
#include "client/masking.h"
#include "client/plain_words.h"
#include "client/values.h"

namespace vexahealth {
namespace {

// "14.600" and "V" of "14.600 V"; what stands in brackets is left to the table.
std::pair<std::string, std::string> Split(const Reading& reading) {
  std::string text = WithMinusSign(FriendlyText(reading), reading);
  if (std::holds_alternative<std::string>(reading.value)) return {text, ""};
  text = text.substr(0, text.find(" ("));
  const size_t blank = text.find(' ');
  return {text.substr(0, blank), blank == std::string::npos ? "" : text.substr(blank + 1)};
}

std::string NoteCell(const Reading& reading) {
  return reading.note.empty() ? "" : Element("span", "class=\"note\"", HtmlText(reading.note));
}

}  // namespace

std::string SectionBlock(std::string_view id, std::string_view title, std::string_view content) {
  return "<section id=\"" + std::string(id) + "\">\n<h2>" + HtmlText(title) + "</h2>\n" + std::string(content) +
         "</section>\n";
}

std::string Tile(const Reading& reading) {
  const std::string label = Element("dt", "", HtmlText(reading.row->label));
  if (reading.status != Status::kOk) {
    return Element("div", "class=\"tile missing\"",
                   label + Element("dd", "", HtmlText(Capital(StatusWord(reading.status)))));
  }
  const auto [number, unit] = Split(reading);
  const bool text = std::holds_alternative<std::string>(reading.value);
  std::string value = Element("b", text ? "class=\"text\"" : "", HtmlText(number));
  if (!unit.empty()) value += " " + Element("span", "class=\"unit\"", HtmlText(unit));
  return Element("div", "class=\"tile\"", label + Element("dd", "", value));
}

std::string Tiles(std::span<const Reading> readings, std::initializer_list<std::string_view> keys) {
  std::string tiles;
  for (const std::string_view key : keys) {
    if (const Reading* reading = FindReading(readings, key)) tiles += Tile(*reading) + "\n";
  }
  return Element("dl", "class=\"tiles\"", tiles) + "\n";
}

std::string ReadingsTable(std::span<const Reading> readings, Section section, std::string_view title,
                          const std::function<bool(const Row&)>& leave_out) {
  std::string rows;
  std::vector<const Reading*> missing;
  for (const Reading& reading : readings) {
    const Row& row = *reading.row;
    if (row.section != section || row.detail || (leave_out && leave_out(row))) continue;
    if (reading.status != Status::kOk) {
      missing.push_back(&reading);
      continue;
    }
    rows += "<tr><th scope=\"row\">" + HtmlText(row.label) + "</th><td>" + HtmlValue(reading) + NoteCell(reading) +
            "</td></tr>\n";
  }
  if (rows.empty() && missing.empty()) return {};
  std::string block = title.empty() ? "" : Element("h3", "", HtmlText(title)) + "\n";
  if (!rows.empty()) block += Element("table", "class=\"readings\"", "<tbody>\n" + rows + "</tbody>") + "\n";
  return Element("div", "class=\"block\"", block + MissingList(missing)) + "\n";
}

std::string MissingList(const std::vector<const Reading*>& missing) {
  std::vector<std::pair<std::string, std::string>> reasons;  // and the labels
  for (const Reading* reading : missing) {
    std::string reason = Element("b", "", "Masked");
    if (reading->note != kMaskedNote) {
      reason = Element("b", "", HtmlText(Capital(StatusWord(reading->status)))) + ": " +
               HtmlText(reading->note.empty() ? StatusSentence(reading->status) : reading->note);
    }
    auto place = std::ranges::find(reasons, reason, &std::pair<std::string, std::string>::first);
    if (place == reasons.end()) place = reasons.insert(reasons.end(), {reason, ""});
    place->second += (place->second.empty() ? "" : ", ") + HtmlText(reading->row->label);
  }
  std::string items;
  for (const auto& [reason, labels] : reasons) {
    items += "<li>" + reason + "<span class=\"of\">" + labels + "</span></li>\n";
  }
  return items.empty() ? "" : Element("ul", "class=\"missing-list\"", "\n" + items) + "\n";
}

}  // namespace vexahealth
