// Completion of the command line in a shell.
#ifndef CLIENT_COMPLETION_H_
#define CLIENT_COMPLETION_H_

#include <string>
#include <string_view>

namespace vexahealth {

// The script for "bash", "zsh", "fish" or "powershell", to be read by that shell; empty for every other word. Commands,
// options, keys and values are all in it: completing runs nothing.
[[nodiscard]] std::string CompletionScript(std::string_view shell);

}  // namespace vexahealth

#endif  // CLIENT_COMPLETION_H_
