#include "client/formats.h"

#include <array>
#include <utility>

#include "client/json_report.h"
#include "client/prometheus.h"
#include "client/table.h"
#include "client/text.h"

namespace vexahealth {
namespace {

constexpr std::array<std::pair<std::string_view, Format>, 5> kFormats = {{{"table", Format::kTable},
                                                                          {"json", Format::kJson},
                                                                          {"ndjson", Format::kNdjson},
                                                                          {"csv", Format::kCsv},
                                                                          {"prometheus", Format::kPrometheus}}};

// The text in quotes where it needs them. Control characters are escaped: no reader has to cope with a line end inside
// of a field.
std::string CsvField(std::string_view text) {
  std::string field = EscapeForTerminal(text, Backslash::kKeep);
  if (field.find_first_of(",\" ") == std::string::npos) return field;
  std::string quoted = "\"";
  for (const char character : field) quoted.append(character == '"' ? 2 : 1, character);
  return quoted + "\"";
}

std::string CsvValue(const Reading& reading) {
  const auto* text = std::get_if<std::string>(&reading.value);
  if (text == nullptr) return BareValue(reading);
  const bool formula = text->find_first_of("=+-@\t\r") == 0;
  return CsvField(formula ? "'" + *text : *text);
}

std::string LogfmtValue(const Reading& reading) {
  if (reading.status != Status::kOk) return "!" + std::string(StatusName(reading.status));
  const auto* text = std::get_if<std::string>(&reading.value);
  return text == nullptr ? BareValue(reading) : Dump(Json(WellFormedUtf8(*text)), Layout::kOneLine);
}

}  // namespace

std::optional<Format> FormatFrom(std::string_view word) {
  for (const auto& [name, format] : kFormats) {
    if (name == word) return format;
  }
  return std::nullopt;
}

std::string Render(const Report& report, Format format) {
  switch (format) {
    case Format::kTable: return TableText(report);
    case Format::kJson: return JsonText(report);
    case Format::kNdjson: return NdjsonText(report);
    case Format::kCsv: return CsvText(report);
    case Format::kPrometheus: return PrometheusText(report);
  }
  return {};
}

std::string BareValue(const Reading& reading) {
  if (const auto* text = std::get_if<std::string>(&reading.value)) return EscapeForTerminal(*text, Backslash::kKeep);
  if (const auto* flag = std::get_if<bool>(&reading.value)) return *flag ? "true" : "false";
  if (const auto* number = std::get_if<int64_t>(&reading.value)) return std::to_string(*number);
  return {};
}

std::string NdjsonText(const Report& report) {
  std::string lines;
  for (const Reading& reading : report.readings) {
    Json line = {{"time", TextOrNull(report.time)}, {"key", reading.row->key}};
    line.update(ReadingJson(reading));
    lines += Dump(line, Layout::kOneLine);
  }
  return lines;
}

std::string CsvText(const Report& report) {
  std::string records = "time,key,value,unit,status,source,reason\n";
  for (const Reading& reading : report.readings) {
    records += report.time + "," + std::string(reading.row->key) + "," + CsvValue(reading) + "," +
               CsvField(UnitOf(reading.row->kind).value_or("")) + "," + std::string(StatusName(reading.status)) + "," +
               std::string(reading.row->export_name) + "," + CsvField(reading.note) + "\n";
  }
  return records;
}

std::string CsvSampleHeader(const Report& report) {
  std::string record = "time";
  for (const Reading& reading : report.readings) record += "," + std::string(reading.row->key);
  return record + "\n";
}

std::string CsvSample(const Report& report) {
  std::string record = report.time;
  for (const Reading& reading : report.readings) record += "," + CsvValue(reading);
  return record + "\n";
}

std::string SampleLine(const Report& report) {
  std::string line = "time=" + report.time;
  for (const Reading& reading : report.readings) {
    std::string value = LogfmtValue(reading);
    if (value.ends_with('\n')) value.pop_back();
    line += " " + std::string(reading.row->key) + "=" + value;
  }
  return line + "\n";
}

}  // namespace vexahealth
