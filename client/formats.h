// The output formats of a report. Each carries the same readings; texts from devices are harmless in all of them.
#ifndef CLIENT_FORMATS_H_
#define CLIENT_FORMATS_H_

#include <optional>
#include <string>
#include <string_view>

#include "client/reading.h"

namespace vexahealth {

enum class Format { kTable, kJson, kNdjson, kCsv, kPrometheus };

// From the word of --format: "table", "json", "ndjson", "csv" or "prometheus".
[[nodiscard]] std::optional<Format> FormatFrom(std::string_view word);

// Everything that the command prints in this format.
[[nodiscard]] std::string Render(const Report& report, Format format);

// The value alone: numbers and "true" or "false" as in JSON, texts escaped for a terminal; empty without a value.
[[nodiscard]] std::string BareValue(const Reading& reading);

// One JSON object per reading and line: {"time", "key", "value", "unit", "status", "source", "reason"}.
[[nodiscard]] std::string NdjsonText(const Report& report);

// RFC 4180 with "\n" between records: a header and one record per reading, time,key,value,unit,status,source,reason. A
// text that a spreadsheet would take for a formula gets an apostrophe in front.
[[nodiscard]] std::string CsvText(const Report& report);

// One record per sample: the time and each reading's value, empty where there is none.
[[nodiscard]] std::string CsvSampleHeader(const Report& report);
[[nodiscard]] std::string CsvSample(const Report& report);

// One line per sample: time=... key=value ...; a missing value reads key=!status.
[[nodiscard]] std::string SampleLine(const Report& report);

}  // namespace vexahealth

#endif  // CLIENT_FORMATS_H_
