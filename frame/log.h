// Log lines. Every line becomes one trace event; nothing is added to its text.
//
// "Information" lines are verbose (level 5), "critical" lines level 1. A line that nobody listens to costs a
// comparison and no formatting. No function here throws or fails towards its caller. Any thread.
#ifndef VEXA_FRAME_LOG_H_
#define VEXA_FRAME_LOG_H_

#include <cstdarg>
#include <string>
#include <string_view>

#include "frame/trace.h"

namespace vexa {

// printf formats; "%s" is a text of the format's own width.
[[gnu::format(printf, 1, 2)]] void LogInfo(const char* format, ...) noexcept;
[[gnu::format(printf, 1, 2)]] void LogCritical(const char* format, ...) noexcept;
void LogInfo(const wchar_t* format, ...) noexcept;
void LogCritical(const wchar_t* format, ...) noexcept;

// A finished text, narrow ones in the active code page: written as it is, whatever percent signs it holds.
void LogText(TraceLevel level, std::string_view text) noexcept;
inline void LogText(TraceLevel level, const std::wstring& text) noexcept { WriteTrace(level, text.c_str()); }

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

// Between UTF-16 and the active code page.
[[nodiscard]] std::wstring Widen(std::string_view text);
[[nodiscard]] std::string Narrow(std::wstring_view text);

// The debugger's output: "<VexaWinDll> " and the message, cut to 1024 characters in all, terminator included.
[[gnu::format(printf, 1, 2)]] void DebugPrint(const char* format, ...) noexcept;
void DebugPrint(const wchar_t* format, ...) noexcept;

// A failure of the system's services: a verbose line, and the same finished text as a warning in the event log.
void LogToTraceAndEventLog(const wchar_t* format, va_list arguments) noexcept;

// One warning of source "VEXASystemAnalysis" in the system's event log. Dropped when the source can't be opened.
void WriteEventLog(const wchar_t* message) noexcept;

}  // namespace vexa

#endif  // VEXA_FRAME_LOG_H_
