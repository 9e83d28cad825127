// The report as one JSON value for programs.
//
//   {"schema_version": 1,
//    "tool": {"name": "vexahealth", "version": "1.0.0"},
//    "error": null or a text,
//    "library": {"path", "loaded", "ready", "version", "route"},
//    "readings": {"battery.rsoc": {"value": 87, "unit": "%", "status": "ok", "source": "BatteryHealthyTable_Rsoc"},
//    ...}, "notes": {"battery.error": "cross-checked: ...", ...}}
//
// Every key of the list of readings is there, always in the same order, whatever failed. `notes` tells why a value is
// missing or what to know about it, for those readings that have something to tell. Members may be added within a
// schema version; none changes its meaning. The document of the settings is in settings_report.h.
#ifndef CLIENT_JSON_REPORT_H_
#define CLIENT_JSON_REPORT_H_

#include <string>
#include <string_view>

#include "client/reading.h"

namespace vexahealth {

// Pure ASCII (other characters as \u escapes), so that neither a code page nor a terminal can change or obey it;
// ends in "\n".
[[nodiscard]] std::string JsonText(const Report& report);

// What --help and --version print when --json stands beside them: the tool, the library when it was asked,
// and the text.
[[nodiscard]] std::string JsonHelpText(std::string_view help);
[[nodiscard]] std::string JsonVersionText(const LibraryState& library, std::string_view error);

}  // namespace vexahealth

#endif  // CLIENT_JSON_REPORT_H_
