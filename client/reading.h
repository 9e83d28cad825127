// One reading as the client reports it, and what the library said to it.
#ifndef CLIENT_READING_H_
#define CLIENT_READING_H_

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "client/catalogue.h"

namespace vexahealth {

enum class Status {
  kOk,
  kNoAnswer,      // asked, and the driver, the EC or the gauge did not answer
  kUnsupported,   // this library, EC or machine has no such value
  kNotPresent,    // the thing that it tells about is not there
  kNotCollected,  // not asked
  kError,         // the answer breaks the export's contract
};

// Version of the client: the product's.
inline constexpr std::string_view kClientVersion = VEXA_CLIENT_VERSION;

// "ok", "no_answer" and so on.
std::string_view StatusName(Status status);

using Value = std::variant<std::monostate, bool, int64_t, std::string>;

struct Reading {
  const Row* row = nullptr;
  Status status = Status::kNotCollected;
  Value value;       // set exactly when the status is kOk
  std::string note;  // why there is no value, or what to know about it
};

// Where the library sends EC requests on this machine, from the registry value that it decides by.
enum class Route { kUnknown, kDriver, kFirmware };

struct LibraryState {
  std::string path;  // UTF-8
  bool loaded = false;
  bool ready = false;        // InitializeWinIo answered 1
  bool needs_driver = true;  // false: the command asks nothing that needs InitializeWinIo, so it was not called
  std::optional<uint32_t> version;
  Route route = Route::kUnknown;
};

struct Report {
  LibraryState library;
  std::vector<Reading> readings;   // every one that the command promises, in its order, whatever failed
  std::string error;               // what kept the client from collecting; empty: nothing
  std::string command = "status";  // as on the command line
  std::string time = {};           // when the readings were taken: UTC, ISO 8601
};

// Readings for a report that could collect nothing, each with this reason.
std::vector<Reading> NothingCollected(std::string_view reason, std::span<const Row> rows = kRows);

// The reading with this key, or null.
const Reading* FindReading(std::span<const Reading> readings, std::string_view key);

// The number of a reading that is ok, among readings in the order of kRows. The key is that of a number.
std::optional<int64_t> NumberOf(std::span<const Reading> readings, std::string_view key);

// False for rows whose value comes from the library, its driver, the system or a file, so that it is there also when
// nothing of the notebook answers.
bool TellsNotebook(const Row& row, Route route);

// kExitOk or kExitNoReadings, for a library that was loaded.
int ExitCodeFor(const Report& report);

}  // namespace vexahealth

#endif  // CLIENT_READING_H_
