#include "frame/log.h"

#include <windows.h>

#include <cstdarg>
#include <cstdio>
#include <string>

#include "frame/handles.h"

namespace vexa {
namespace {

constexpr char kDebugPrefix[] = "<VexaWinDll> ";
constexpr wchar_t kWideDebugPrefix[] = L"<VexaWinDll> ";
constexpr size_t kDebugCapacity = 1024;
constexpr wchar_t kEventSource[] = L"VEXASystemAnalysis";

// The C runtime's own formatter, by its universal name: the compiler's replacements for the wide functions read "%s"
// as a narrow text.
constexpr unsigned __int64 kFormatOptions = 4;  // "%s" in a wide format is wide

std::string Format(const char* format, va_list arguments) {
  va_list again;
  va_copy(again, arguments);
  const int length = _vscprintf(format, arguments);
  std::string text(length < 0 ? 0 : static_cast<size_t>(length), '\0');
  if (length > 0) _vsnprintf(text.data(), text.size(), format, again);
  va_end(again);
  return text;
}

std::wstring Format(const wchar_t* format, va_list arguments) {
  va_list again;
  va_copy(again, arguments);
  // Option 2 asks for the length that the whole text would have.
  const int length = __stdio_common_vswprintf(kFormatOptions | 2, nullptr, 0, format, nullptr, arguments);
  std::wstring text(length < 0 ? 0 : static_cast<size_t>(length), L'\0');
  if (length > 0) {
    __stdio_common_vswprintf(kFormatOptions, text.data(), text.size() + 1, format, nullptr, again);
  }
  va_end(again);
  return text;
}

template <typename Char>
void WriteFormatted(TraceLevel level, const Char* format, va_list arguments) noexcept {
  try {
    if constexpr (std::is_same_v<Char, char>) {
      WriteTrace(level, Widen(Format(format, arguments)).c_str());
    } else {
      WriteTrace(level, Format(format, arguments).c_str());
    }
  } catch (...) {
    // Short of memory for a line: the line is lost, the call goes on.
  }
}

}  // namespace

std::wstring Widen(std::string_view text) {
  if (text.empty()) return {};
  const int size = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0);
  std::wstring wide(length > 0 ? static_cast<size_t>(length) : 0, L'\0');
  MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), length);
  return wide;
}

std::string Narrow(std::wstring_view text) {
  if (text.empty()) return {};
  const int size = static_cast<int>(text.size());
  const int length = WideCharToMultiByte(CP_ACP, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
  std::string narrow(length > 0 ? static_cast<size_t>(length) : 0, '\0');
  WideCharToMultiByte(CP_ACP, 0, text.data(), size, narrow.data(), length, nullptr, nullptr);
  return narrow;
}

// A line that nobody listens to pays for no canary: these four hold no buffer, what formats has its own.
[[clang::no_stack_protector]] void LogInfo(const char* format, ...) noexcept {
  if (!TraceEnabled(TraceLevel::kVerbose)) return;
  va_list arguments;
  va_start(arguments, format);
  WriteFormatted(TraceLevel::kVerbose, format, arguments);
  va_end(arguments);
}

[[clang::no_stack_protector]] void LogCritical(const char* format, ...) noexcept {
  if (!TraceEnabled(TraceLevel::kCritical)) return;
  va_list arguments;
  va_start(arguments, format);
  WriteFormatted(TraceLevel::kCritical, format, arguments);
  va_end(arguments);
}

[[clang::no_stack_protector]] void LogInfo(const wchar_t* format, ...) noexcept {
  if (!TraceEnabled(TraceLevel::kVerbose)) return;
  va_list arguments;
  va_start(arguments, format);
  WriteFormatted(TraceLevel::kVerbose, format, arguments);
  va_end(arguments);
}

[[clang::no_stack_protector]] void LogCritical(const wchar_t* format, ...) noexcept {
  if (!TraceEnabled(TraceLevel::kCritical)) return;
  va_list arguments;
  va_start(arguments, format);
  WriteFormatted(TraceLevel::kCritical, format, arguments);
  va_end(arguments);
}

void LogText(TraceLevel level, std::string_view text) noexcept {
  if (!TraceEnabled(level)) return;
  try {
    WriteTrace(level, Widen(text).c_str());
  } catch (...) {
    // Short of memory for a line: the line is lost, the call goes on.
  }
}

void DebugPrint(const char* format, ...) noexcept {
  try {
    va_list arguments;
    va_start(arguments, format);
    std::string text = kDebugPrefix + Format(format, arguments);
    va_end(arguments);
    if (text.size() >= kDebugCapacity) text.resize(kDebugCapacity - 1);
    OutputDebugStringA(text.c_str());
  } catch (...) {
    // Short of memory for a line: the line is lost, the call goes on.
  }
}

void DebugPrint(const wchar_t* format, ...) noexcept {
  try {
    va_list arguments;
    va_start(arguments, format);
    std::wstring text = kWideDebugPrefix + Format(format, arguments);
    va_end(arguments);
    if (text.size() >= kDebugCapacity) text.resize(kDebugCapacity - 1);
    OutputDebugStringW(text.c_str());
  } catch (...) {
    // Short of memory for a line: the line is lost, the call goes on.
  }
}

void LogToTraceAndEventLog(const wchar_t* format, va_list arguments) noexcept {
  try {
    const std::wstring text = Format(format, arguments);
    WriteTrace(TraceLevel::kVerbose, text.c_str());
    WriteEventLog(text.c_str());
  } catch (...) {
    // Short of memory for a line: the line is lost, the call goes on.
  }
}

void WriteEventLog(const wchar_t* message) noexcept {
  const EventSource source(RegisterEventSourceW(nullptr, kEventSource));
  if (!source) return;
  const wchar_t* texts[] = {kEventSource, message};
  ReportEventW(source.get(), EVENTLOG_WARNING_TYPE, 0, 0, nullptr, 2, 0, texts, nullptr);
}

}  // namespace vexa
