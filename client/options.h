// The command line.
#ifndef CLIENT_OPTIONS_H_
#define CLIENT_OPTIONS_H_

#include <optional>
#include <string>
#include <vector>

#include "client/change.h"
#include "client/families.h"
#include "client/formats.h"

namespace vexahealth {

// How often to sample, and how many times.
struct WatchOptions {
  uint32_t interval_ms = 2000;
  std::optional<uint32_t> count;  // nothing: until interrupted
};

struct Options {
  enum class Action {
    kReadings,
    kGet,
    kDoctor,
    kTrace,
    kChange,
    kReport,
    kRecord,
    kKeys,
    kCompletion,
    kHelp,
    kVersion,
    kUsageError,
  };

  Action action = Action::kReadings;
  const Command* command = nullptr;  // whose readings; also beside a usage error
  Format format = Format::kTable;    // also set beside a usage error, as far as it was understood
  bool may_wait = true;
  std::string key;  // kGet
  std::optional<WatchOptions> watch;
  ChangeRequest change;
  bool show_serials = false;  // kReport, kRecord
  std::string output;         // kReport, kRecord: the file; kReport: empty is standard output
  uint32_t seconds = 10;      // kTrace
  int level = 5;              // kTrace
  std::string shell;          // kCompletion
  std::string text;           // the help, or what is wrong

  bool json() const { return format == Format::kJson; }
};

// From the arguments after the program's name, in UTF-8. Prints nothing.
[[nodiscard]] Options ParseOptions(const std::vector<std::string>& arguments);

}  // namespace vexahealth

#endif  // CLIENT_OPTIONS_H_
