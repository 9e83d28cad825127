#include "client/watch.h"

#include <algorithm>
#include <string_view>

#include "client/exit_codes.h"
#include "client/json_report.h"
#include "client/table.h"
#include "client/text.h"

namespace vexahealth {
namespace {

constexpr std::string_view kHome = "\x1b[H";
constexpr std::string_view kClearScreen = "\x1b[2J";
constexpr std::string_view kClearLine = "\x1b[K";
constexpr std::string_view kClearBelow = "\x1b[J";

// The first lines, each cut to the width, since a longer one would take two rows, and clearing what the former picture
// left behind it. The last column stays free: at it, terminals differ in where they are.
std::string Picture(std::string_view text, const TerminalSize& size) {
  const size_t rows = std::max<size_t>(size.rows, 3);
  const size_t columns = std::max<size_t>(size.columns, 2) - 1;
  std::string picture;
  size_t lines = 0;
  while (!text.empty() && lines + 1 < rows) {
    const size_t end = std::min(text.find('\n'), text.size() - 1);
    picture += std::string(FirstColumns(text.substr(0, end), columns)) + std::string(kClearLine) + "\n";
    text.remove_prefix(end + 1);
    ++lines;
  }
  if (!text.empty())
    picture += std::to_string(std::ranges::count(text, '\n')) + " more lines" + std::string(kClearLine);
  return picture + std::string(kClearBelow);
}

}  // namespace

uint64_t NextStart(uint64_t began_ms, uint64_t now_ms, uint32_t interval_ms) {
  return std::max(began_ms + interval_ms, now_ms);
}

std::string WatchPrinter::Next(const Report& report) {
  if (target_.bare && target_.format == Format::kTable) {
    const Reading& reading = report.readings.front();
    return (reading.status == Status::kOk ? BareValue(reading) : "!" + std::string(StatusName(reading.status))) + "\n";
  }
  switch (target_.format) {
    case Format::kJson: return JsonText(report, Layout::kOneLine);
    case Format::kNdjson: return NdjsonText(report);
    case Format::kCsv: {
      const std::string header = first_ ? CsvSampleHeader(report) : "";
      first_ = false;
      return header + CsvSample(report);
    }
    default: return target_.terminal ? Redraw(report) : SampleLine(report);
  }
}

std::string WatchPrinter::Redraw(const Report& report) {
  const bool good = report.library.loaded && ExitCodeFor(report) == kExitOk;
  std::string head = report.time + "  " + report.command + "\n";
  if (good || last_good_.empty()) {
    if (good) {
      last_good_ = TableText(report);
      last_good_time_ = report.time;
    }
    head += good ? last_good_ : TableText(report);
  } else {
    head = report.time + "  " + report.command + ": nothing answers since the picture below, taken " + last_good_time_ +
           "\n" + last_good_;
  }
  const std::string picture = Picture(head, *target_.terminal);
  const std::string clear(first_ ? kClearScreen : "");
  first_ = false;
  return clear + std::string(kHome) + picture;
}

}  // namespace vexahealth
