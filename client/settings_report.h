// What became of a change of a setting, and the settings after it, as one JSON value for programs and as a table for
// people. Where the client did not come as far as a change, the value has no "change".
//
//   {"schema_version": 1,
//    "tool": {"name", "version"},
//    "command": "settings set",
//    "time", "error", "library": as every report
//    "change": {"setting": "charge-limit", "requested": 80, "dry_run": false, "outcome": "accepted", "before": 100,
//               "accepted": true, "file_written": true, "reads_back": true, "plan": [], "verified": ["..."],
//               "not_verified": ["..."]},
//    "readings": {"charge_limit.supported": {"value": true, "unit": null, "status": "ok",
//                 "source": "WMICheckBatteryHealthSupport", "reason": "..."}, ...}}
//
// "outcome" is not_tried, not_supported, planned, refused, accepted or
// not_confirmed; "accepted", "file_written" and "reads_back" are null where that did not come up. "requested" and
// "before" are percents, and true or false for the quiet fan. Every setting is there, always in the same order,
// whatever failed; those that a change did not need are not_collected.
#ifndef CLIENT_SETTINGS_REPORT_H_
#define CLIENT_SETTINGS_REPORT_H_

#include <optional>
#include <string>
#include <vector>

#include "client/change.h"
#include "client/reading.h"

namespace vexahealth {

struct SettingsReport {
  LibraryState library;
  std::optional<Change> change;
  std::vector<Reading> settings;  // one per row, in the order of kSettingRows
  std::string error;
  std::string time = {};
};

// Pure ASCII; ends in "\n".
[[nodiscard]] std::string SettingsJson(const SettingsReport& report);

// UTF-8, lines end in "\n".
[[nodiscard]] std::string SettingsTable(const SettingsReport& report);

}  // namespace vexahealth

#endif  // CLIENT_SETTINGS_REPORT_H_
