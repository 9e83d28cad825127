#include "client/reading.h"

#include <algorithm>

#include "client/exit_codes.h"

namespace vexahealth {

std::string_view StatusName(Status status) {
  switch (status) {
    case Status::kOk: return "ok";
    case Status::kNoAnswer: return "no_answer";
    case Status::kUnsupported: return "unsupported";
    case Status::kNotPresent: return "not_present";
    case Status::kNotCollected: return "not_collected";
    case Status::kError: return "error";
  }
  return "error";
}

std::vector<Reading> NothingCollected(std::string_view reason, std::span<const Row> rows) {
  std::vector<Reading> readings;
  for (const Row& row : rows) {
    readings.push_back({.row = &row, .status = Status::kNotCollected, .value = {}, .note = std::string(reason)});
  }
  return readings;
}

const Reading* FindReading(std::span<const Reading> readings, std::string_view key) {
  const auto found = std::ranges::find_if(readings, [key](const Reading& reading) { return reading.row->key == key; });
  return found == readings.end() ? nullptr : &*found;
}

std::optional<int64_t> NumberOf(std::span<const Reading> readings, std::string_view key) {
  const Reading& reading = readings[RowIndex(key)];
  if (reading.status != Status::kOk) return std::nullopt;
  return std::get<int64_t>(reading.value);
}

bool TellsNotebook(const Row& row, Route route) {
  switch (row.section) {
    case Section::kLibrary:
    case Section::kSystem:  // the tablet mode too: boards of other makers have a constant in its place
    case Section::kApplication: return false;
    // What the registry keeps is told whether or not the EC answers.
    case Section::kController: return !row.key.starts_with("ec.kept_") && row.key != "ec.firmware_revision";
    case Section::kChargeLimit:
    case Section::kQuietFan: return !row.key.ends_with(".remembered");
    default: break;
  }
  if (row.key == "adapter.online") return false;
  return route != Route::kFirmware || row.on_firmware != OnFirmware::kSystem;
}

int ExitCodeFor(const Report& report) {
  const bool news = std::ranges::any_of(report.readings, [&report](const Reading& reading) {
    return reading.status == Status::kOk && TellsNotebook(*reading.row, report.library.route);
  });
  return (report.library.ready || !report.library.needs_driver) && news ? kExitOk : kExitNoReadings;
}

}  // namespace vexahealth
