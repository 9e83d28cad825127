// The command line.
#ifndef CLIENT_OPTIONS_H_
#define CLIENT_OPTIONS_H_

#include <string>
#include <vector>

#include "client/change.h"

namespace vexahealth {

struct Options {
  enum class Action { kStatus, kSettings, kChange, kHelp, kVersion, kUsageError };

  Action action = Action::kStatus;
  bool json = false;      // also set beside a usage error, where --json stands among the arguments
  bool settings = false;  // the arguments are about settings, also beside a usage error
  bool may_wait = true;
  ChangeRequest change;
  std::string text;  // the help, or what is wrong
};

// From the arguments after the program's name, in UTF-8. Prints nothing.
[[nodiscard]] Options ParseOptions(const std::vector<std::string>& arguments);

}  // namespace vexahealth

#endif  // CLIENT_OPTIONS_H_
