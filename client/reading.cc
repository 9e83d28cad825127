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

std::optional<int64_t> NumberOf(std::span<const Reading> readings, std::string_view key) {
  const Reading& reading = readings[RowIndex(key)];
  if (reading.status != Status::kOk) return std::nullopt;
  return std::get<int64_t>(reading.value);
}

int ExitCodeFor(const Report& report) {
  const bool firmware = report.library.route == Route::kFirmware;
  const bool news = std::ranges::any_of(report.readings, [firmware](const Reading& reading) {
    if (firmware && reading.row->on_firmware == OnFirmware::kSystem) return false;
    return reading.status == Status::kOk && reading.row->section != Section::kLibrary;
  });
  return report.library.ready && news ? kExitOk : kExitNoReadings;
}

}  // namespace vexahealth
