// Commands for whoever looks for a fault.
#ifndef CLIENT_SUPPORT_COMMANDS_H_
#define CLIENT_SUPPORT_COMMANDS_H_

#include "client/options.h"

namespace vexahealth {

// They return the exit code.
[[nodiscard]] int RunDoctor(const Options& options);
[[nodiscard]] int RunTrace(const Options& options);

}  // namespace vexahealth

#endif  // CLIENT_SUPPORT_COMMANDS_H_
