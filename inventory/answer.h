// How inventory answers reach the caller.
#ifndef VEXA_INVENTORY_ANSWER_H_
#define VEXA_INVENTORY_ANSWER_H_

#include <cstdint>
#include <cwchar>
#include <string>

#include "frame/export_wall.h"
#include "frame/log.h"

namespace vexa {

inline constexpr wchar_t kCimNamespace[] = L"ROOT\\CIMV2";
inline constexpr wchar_t kWmiNamespace[] = L"ROOT\\WMI";
inline constexpr wchar_t kStorageNamespace[] = L"root\\Microsoft\\Windows\\Storage";

// Copies the text, up to its first zero, with a terminator. Returns its length; a null buffer gets nothing.
// Kept: the copy is sized by the text, not by the buffer, whose size callers don't give.
inline uint32_t Deliver(const std::wstring& text, wchar_t* buffer) noexcept {
  const size_t length = std::wcslen(text.c_str());
  if (buffer != nullptr) std::wmemcpy(buffer, text.c_str(), length + 1);
  return static_cast<uint32_t>(length);
}

// The body of a text export between its lines; `read` fills a text. The buffer is empty when it fails.
template <typename Read>
uint32_t AnswerText(const char* export_name, const char* start, const char* end, wchar_t* buffer,
                    Read&& read) noexcept {
  if (buffer != nullptr) *buffer = L'\0';
  return Guarded(export_name, 0u, [&] {
    LogText(TraceLevel::kVerbose, start);
    std::wstring text;
    read(text);
    const uint32_t length = Deliver(text, buffer);
    LogText(TraceLevel::kVerbose, end);
    return length;
  });
}

}  // namespace vexa

#endif  // VEXA_INVENTORY_ANSWER_H_
