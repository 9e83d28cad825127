#include "client/table.h"

#include <algorithm>
#include <string_view>

#include "client/text.h"
#include "client/values.h"

namespace vexahealth {
namespace {

constexpr size_t kWidestValue = 37;  // columns; longer values are broken at commas and blanks

std::string_view StatusWords(Status status) {
  switch (status) {
    case Status::kOk: return "";
    case Status::kNoAnswer: return "no answer";
    case Status::kUnsupported: return "unsupported";
    case Status::kNotPresent: return "not present";
    case Status::kNotCollected: return "not collected";
    case Status::kError: return "error";
  }
  return "error";
}

// `told`: why nothing was collected stands elsewhere already, once.
std::string NoteText(const Reading& reading, bool told) {
  std::string note(StatusWords(reading.status));
  if (told && reading.status == Status::kNotCollected) return note;
  if (!note.empty() && !reading.note.empty()) note += ": ";
  return note + reading.note;
}

// Pieces of at most kWidestValue columns where the text has places to break at.
std::vector<std::string> Broken(std::string_view text) {
  std::vector<std::string> lines(1);
  while (!text.empty()) {
    const size_t end = text.find_first_of(", ");
    const std::string_view word = text.substr(0, end == std::string_view::npos ? text.size() : end + 1);
    text.remove_prefix(word.size());
    if (!lines.back().empty() && DisplayWidth(lines.back()) + DisplayWidth(word) > kWidestValue) lines.emplace_back();
    lines.back() += word;
  }
  return lines;
}

std::string Padded(std::string text, size_t width) {
  const size_t columns = DisplayWidth(text);
  if (columns < width) text.append(width - columns, ' ');
  return text;
}

void AppendLine(std::string& table, std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  table += line + "\n";
}

struct Widths {
  size_t name = 0;
  size_t value = 0;
};

Widths Measure(std::span<const Reading> readings) {
  Widths widths;
  for (const Reading& reading : readings) {
    widths.name = std::max(widths.name, DisplayWidth(reading.row->label));
    for (const std::string& line : Broken(FriendlyText(reading))) {
      widths.value = std::max(widths.value, std::min(DisplayWidth(line), kWidestValue));
    }
  }
  return widths;
}

void AppendReading(std::string& table, const Reading& reading, const Widths& widths, bool told) {
  std::string name(reading.row->label);
  std::string note = NoteText(reading, told);
  for (std::string& value : Broken(FriendlyText(reading))) {
    AppendLine(table, "  " + Padded(std::move(name), widths.name) + "  " + Padded(std::move(value), widths.value) +
                          "  " + note);
    name.clear();
    note.clear();
  }
}

}  // namespace

std::string LibraryLine(const LibraryState& library) {
  std::string head = library.loaded ? "VexaWinIO64.dll" : "VexaWinIO64.dll (not loaded)";
  if (!library.path.empty())
    head = EscapeForTerminal(library.path, Backslash::kKeep) + (library.loaded ? "" : " (not loaded)");
  if (library.route == Route::kDriver) head += ", route x64";
  if (library.route == Route::kFirmware) head += ", route ARM64";
  return head + "\n";
}

std::string SectionsText(std::span<const Reading> readings, bool told) {
  std::string table;
  const Widths widths = Measure(readings);
  for (size_t i = 0; i <= static_cast<size_t>(kLastSection); ++i) {
    const auto section = static_cast<Section>(i);
    bool titled = false;
    for (const Reading& reading : readings) {
      if (reading.row->section != section || reading.row->detail) continue;
      if (!titled) AppendLine(table, "\n" + std::string(SectionTitle(section)));
      titled = true;
      AppendReading(table, reading, widths, told);
    }
  }
  return table;
}

std::string TableText(const Report& report) {
  const bool told = !report.error.empty();  // on standard error
  return LibraryLine(report.library) + SectionsText(report.readings, told);
}

}  // namespace vexahealth
