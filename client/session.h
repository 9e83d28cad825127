// What every command does: find the library, complain, print.
#ifndef CLIENT_SESSION_H_
#define CLIENT_SESSION_H_

#include <expected>
#include <functional>
#include <string>

#include "client/library.h"
#include "client/options.h"
#include "client/reading.h"

namespace vexahealth {

// Loads the library that lies beside the client and writes down what it is.
[[nodiscard]] std::expected<vexa::Library, std::string> LoadBesideClient(LibraryState& state);

// To standard error; an empty text says nothing.
void Complain(const std::string& text);

// To standard output. Returns exit_code, or kExitOutputFailed.
[[nodiscard]] int Print(const std::string& text, int exit_code);

// A report of the command's readings with a fresh start of the library, and the exit code that it deserves. With a key,
// of that reading alone.
struct Sample {
  Report report;
  int exit_code = 0;
};
[[nodiscard]] Sample TakeSample(const Command& command, bool may_wait, std::string_view key = {});

// Starts the library and lets `use` ask it; kExitOk, or what kept it from that, which has been said.
[[nodiscard]] int WithSession(bool may_wait, const std::function<void(Session&)>& use);

// The commands; they return the exit code.
[[nodiscard]] int RunReadings(const Options& options);
[[nodiscard]] int RunChange(const Options& options);
[[nodiscard]] int RunRecord(const Options& options);
[[nodiscard]] int RunReport(const Options& options);
[[nodiscard]] int RunVersion(const Options& options);
[[nodiscard]] int RunUsageError(const Options& options);

}  // namespace vexahealth

#endif  // CLIENT_SESSION_H_
