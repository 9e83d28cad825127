// The report as one JSON value for programs: docs/schema/vexahealth-1.schema.json.
//
//   {"schema_version": 1,
//    "tool": {"name": "vexahealth", "version": "1.1.0.0"},
//    "command": "status",
//    "time": "2026-02-03T08:05:00.000Z",
//    "error": null or a text,
//    "library": {"path", "loaded", "ready", "version", "route"},
//    "readings": {"battery.rsoc": {"value": 87, "unit": "%", "status": "ok", "source": "BatteryHealthyTable_Rsoc",
//                                  "reason": null}, ...}}
//
// Every key of the command's list of readings is there, always in the same order, whatever failed. `reason` tells why a
// value is missing or what to know about it. Members may be added within a schema version; none changes its meaning.
// The document of the settings is in settings_report.h.
#ifndef CLIENT_JSON_REPORT_H_
#define CLIENT_JSON_REPORT_H_

#include <string>
#include <string_view>

#include "client/json_parts.h"
#include "client/reading.h"

namespace vexahealth {

[[nodiscard]] Json JsonDocument(const Report& report);
[[nodiscard]] std::string JsonText(const Report& report, Layout layout = Layout::kLines);

// What --help and --version print when --json stands beside them: the tool, the library when it was asked,
// and the text.
[[nodiscard]] std::string JsonHelpText(std::string_view help);
[[nodiscard]] std::string JsonVersionText(const LibraryState& library, std::string_view error);

}  // namespace vexahealth

#endif  // CLIENT_JSON_REPORT_H_
