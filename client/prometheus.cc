#include "client/prometheus.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <vector>

#include "client/exit_codes.h"
#include "client/formats.h"
#include "client/text.h"

namespace vexahealth {
namespace {

constexpr Status kStatuses[] = {Status::kOk,         Status::kNoAnswer,     Status::kUnsupported,
                                Status::kNotPresent, Status::kNotCollected, Status::kError};

struct Scale {
  const char* suffix = "";
  int divisor = 1;
  int offset_hundredths = 0;  // added to the number times 100 / divisor
};

Scale ScaleOf(Kind kind) {
  switch (kind) {
    case Kind::kPercent:
    case Kind::kStoredPercent: return {.suffix = "_percent"};
    case Kind::kMillivolts: return {.suffix = "_volts", .divisor = 1000};
    case Kind::kMilliamps:
    case Kind::kMilliampsRequested: return {.suffix = "_amperes", .divisor = 1000};
    case Kind::kMilliwatts: return {.suffix = "_watts", .divisor = 1000};
    case Kind::kWatts: return {.suffix = "_watts"};
    case Kind::kDeciKelvin: return {.suffix = "_celsius", .divisor = 10, .offset_hundredths = -27315};
    case Kind::kCelsius: return {.suffix = "_celsius"};
    case Kind::kRpm: return {.suffix = "_rpm"};
    case Kind::kDbm: return {.suffix = "_dbm"};
    case Kind::kMegabits: return {.suffix = "_megabits_per_second"};
    case Kind::kMegatransfers: return {.suffix = "_megatransfers_per_second"};
    default: return {};
  }
}

// Exact, and with a point whatever the locale says.
std::string ScaledNumber(int64_t number, const Scale& scale) {
  if (scale.divisor == 1) return std::to_string(number);
  int64_t thousandths = number * (1000 / scale.divisor) + 10 * scale.offset_hundredths;
  const char* sign = thousandths < 0 ? "-" : "";
  thousandths = std::abs(thousandths);
  return Printf("%s%lld.%03lld", sign, static_cast<long long>(thousandths / 1000),
                static_cast<long long>(thousandths % 1000));
}

bool IsNumber(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

std::string Label(std::string_view text) {
  std::string label;
  for (const char character : EscapeForTerminal(text, Backslash::kKeep)) {
    if (character == '\\' || character == '"') label += '\\';
    label += character;
  }
  return label;
}

// Samples of one metric stand together, under one HELP and one TYPE line.
class Exposition {
 public:
  void Add(const std::string& name, std::string_view help, const std::string& labels, const std::string& value) {
    const auto [place, added] = places_.try_emplace(name, metrics_.size());
    if (added) metrics_.push_back("# HELP " + name + " " + std::string(help) + "\n# TYPE " + name + " gauge\n");
    metrics_[place->second] += name + (labels.empty() ? "" : "{" + labels + "}") + " " + value + "\n";
  }

  std::string Text() const {
    std::string text;
    for (const std::string& metric : metrics_) text += metric;
    return text;
  }

 private:
  std::map<std::string, size_t> places_;
  std::vector<std::string> metrics_;
};

// A text that differs at every look would make a new time series of each.
bool TellsTheTime(const Row& row) { return row.key == "system.local_time"; }

// The label of one cell or fan without its number, for all of them.
std::string_view HelpFor(const Row& row, const Metric& metric) {
  std::string_view help = row.label;
  if (!metric.index.empty() && help.ends_with(metric.index)) help.remove_suffix(metric.index.size());
  return help.substr(0, help.find_last_not_of(' ') + 1);
}

void AddReading(Exposition& exposition, const Reading& reading) {
  const Row& row = *reading.row;
  const std::string key(row.key);
  if (reading.status != Status::kOk) return;
  if (IsText(row.kind)) {  // or the number that stands in for a text
    if (TellsTheTime(row)) return;
    const auto* text = std::get_if<std::string>(&reading.value);
    const std::string value = text != nullptr ? Label(*text) : BareValue(reading);
    exposition.Add("vexahealth_text_info", "A reading that is a text; always 1",
                   "key=\"" + key + "\",value=\"" + value + "\"", "1");
    return;
  }
  const Metric metric = MetricOf(row);
  const auto* flag = std::get_if<bool>(&reading.value);
  const std::string value =
      flag != nullptr ? (*flag ? "1" : "0") : ScaledNumber(std::get<int64_t>(reading.value), ScaleOf(row.kind));
  exposition.Add(metric.name, HelpFor(row, metric), metric.index.empty() ? "" : "index=\"" + metric.index + "\"",
                 value);
}

}  // namespace

Metric MetricOf(const Row& row) {
  Metric metric;
  std::string name = "vexahealth";
  std::string_view rest = row.key;
  while (!rest.empty()) {
    const size_t end = std::min(rest.find('.'), rest.size());
    std::string_view segment = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    const size_t low = segment.rfind('_');
    const bool numbered = rest.empty() && low != std::string_view::npos && IsNumber(segment.substr(low + 1));
    if (IsNumber(segment)) {
      metric.index = segment;
      continue;
    }
    if (numbered) {
      metric.index = segment.substr(low + 1);
      segment = segment.substr(0, low);
    }
    name += "_" + std::string(segment);
  }
  metric.name = name + ScaleOf(row.kind).suffix;
  return metric;
}

std::string PrometheusText(const Report& report) {
  Exposition exposition;
  const bool up = report.library.loaded && ExitCodeFor(report) == kExitOk;
  exposition.Add("vexahealth_up", "Whether the notebook answered: 1 or 0", "", up ? "1" : "0");
  const char* route = report.library.route == Route::kDriver     ? "x64"
                      : report.library.route == Route::kFirmware ? "ARM64"
                                                                 : "";
  exposition.Add("vexahealth_info", "Version, route and command; always 1",
                 "version=\"" + std::string(kClientVersion) + "\",route=\"" + route + "\",command=\"" +
                     Label(report.command) + "\"",
                 "1");
  for (const Reading& reading : report.readings) AddReading(exposition, reading);
  for (const Reading& reading : report.readings) {
    exposition.Add("vexahealth_reading_status", "The state of each reading; always 1",
                   "key=\"" + std::string(reading.row->key) + "\",status=\"" + std::string(StatusName(reading.status)) +
                       "\",source=\"" + std::string(reading.row->export_name) + "\"",
                   "1");
  }
  for (const Status status : kStatuses) {
    exposition.Add("vexahealth_readings", "Readings in each state",
                   "status=\"" + std::string(StatusName(status)) + "\"",
                   std::to_string(std::ranges::count(report.readings, status, &Reading::status)));
  }
  return exposition.Text();
}

}  // namespace vexahealth
