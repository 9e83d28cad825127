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

std::vector<Reading> NothingCollected(std::string_view reason) {
  std::vector<Reading> readings;
  for (const Row& row : kRows) {
    readings.push_back(
        {.row = &row, .status = Status::kNotCollected, .value = {}, .note = std::string(reason)});
  }
  return readings;
}

int ExitCodeFor(const Report& report) {
  const bool news = std::ranges::any_of(report.readings, [](const Reading& reading) {
    return reading.status == Status::kOk && reading.row->section != Section::kLibrary;
  });
  return report.library.ready && news ? kExitOk : kExitNoReadings;
}

}  // namespace vexahealth
