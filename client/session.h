// What every command does: find the library, complain, print.
#ifndef CLIENT_SESSION_H_
#define CLIENT_SESSION_H_

#include <expected>
#include <string>

#include "client/library.h"
#include "client/options.h"
#include "client/reading.h"

namespace vexahealth {

// Loads the library that lies beside the client and writes down what it is.
[[nodiscard]] std::expected<Library, std::string> LoadBesideClient(LibraryState& state);

// To standard error; an empty text says nothing.
void Complain(const std::string& text);

// To standard output. Returns exit_code, or kExitOutputFailed.
[[nodiscard]] int Print(const std::string& text, int exit_code);

// The commands "settings" and "settings set", which need no InitializeWinIo. They return the exit code.
[[nodiscard]] int RunSettings(const Options& options);
[[nodiscard]] int RunChange(const Options& options);

// The settings' document for a command line that was not understood.
[[nodiscard]] std::string SettingsUsageJson(const std::string& error);

}  // namespace vexahealth

#endif  // CLIENT_SESSION_H_
