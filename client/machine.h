// What the client asks Windows for: paths, texts in other encodings, the route in the registry, standard
// output.
#ifndef CLIENT_MACHINE_H_
#define CLIENT_MACHINE_H_

#include <optional>
#include <string>
#include <string_view>

#include "client/collect.h"
#include "client/reading.h"
#include "client/watch.h"

namespace vexahealth {

// Folder of this executable, absolute, ending in a backslash; nothing when Windows does not tell.
[[nodiscard]] std::optional<std::wstring> OwnFolder();

// Unpaired surrogates become U+FFFD.
std::string WideToUtf8(std::wstring_view text);

// What is no well-formed UTF-8 becomes U+FFFD.
std::wstring Utf8ToWide(std::string_view text);

// From the system's active code page; bytes that it does not know become its replacement character.
std::string ActiveCodePageToUtf8(std::string_view text);

// The value by which the library chooses its route. The library writes it on its first call where it is
// missing, so read it after InitializeWinIo. Never written here.
Route ReadRoute();

// External power as the system's power status tells it.
PowerLine ReadPowerLine();

// The time of day as "2026-02-03T08:05:00.000Z".
std::string NowUtc();

// A clock that never goes back.
uint64_t ClockMs();

// The terminal that standard output is, which then also obeys escape sequences; nothing when it is none.
std::optional<TerminalSize> OutputTerminal();

// True when a person sees standard error.
bool ErrorIsTerminal();

// Waits, at most so long. True when the user interrupted (Ctrl+C, Ctrl+Break, the console closes): from the first call
// on an interruption ends this wait, or the next one, in place of the process.
bool WaitInterrupted(uint32_t timeout_ms);

// Write UTF-8 as it is, without line-end translation; a console shows it as UTF-8 too. False when it can't be
// written.
[[nodiscard]] bool WriteOutput(std::string_view text);
void WriteError(std::string_view text);

// Makes the file, or replaces it as a whole: a failure leaves an old one as it was. The path is UTF-8.
[[nodiscard]] bool WriteFileAt(std::string_view path, std::string_view text);

}  // namespace vexahealth

#endif  // CLIENT_MACHINE_H_
