// Log lines. Every line becomes one trace event; nothing is added to its text.
//
// "Information" lines are verbose (level 5), "critical" lines level 1. A line that nobody listens to costs a
// comparison and no formatting. No function here throws or fails towards its caller. Any thread.
#ifndef VEXA_FRAME_LOG_H_
#define VEXA_FRAME_LOG_H_

#include <string_view>

#include "frame/trace.h"

namespace vexa {

// printf formats; "%s" is a text of the format's own width.
[[gnu::format(printf, 1, 2)]] void LogInfo(const char* format, ...) noexcept;
[[gnu::format(printf, 1, 2)]] void LogCritical(const char* format, ...) noexcept;
void LogInfo(const wchar_t* format, ...) noexcept;
void LogCritical(const wchar_t* format, ...) noexcept;

// A finished text, in the active code page: written as it is, whatever percent signs it holds.
void LogText(TraceLevel level, std::string_view text) noexcept;

// The same for a text that costs something to build: `build()` runs only when the level is enabled.
template <typename Build>
void LogBuilt(TraceLevel level, Build&& build) noexcept {
  if (!TraceEnabled(level)) return;
  try {
    LogText(level, build());
  } catch (...) {
    // Short of memory for a line: the line is lost, the call goes on.
  }
}

// The debugger's output: "<VexaWinDll> " and the message, cut to 1024 characters in all, terminator included.
[[gnu::format(printf, 1, 2)]] void DebugPrint(const char* format, ...) noexcept;
void DebugPrint(const wchar_t* format, ...) noexcept;

// One warning of source "VEXASystemAnalysis" in the system's event log. Dropped when the source can't be opened.
void WriteEventLog(const wchar_t* message) noexcept;

}  // namespace vexa

#endif  // VEXA_FRAME_LOG_H_
