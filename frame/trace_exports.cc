#include "vexa/trace.h"

#include <cstring>
#include <vector>

#include "frame/trace.h"

namespace vexa {
namespace {

void WriteCallersLine(TraceLevel level, int32_t length, const void* text) noexcept {
  if (text == nullptr || length < 2 || !TraceEnabled(level)) return;
  try {
    // Zeros behind the text terminate it, whole or cut in the middle of a character.
    const auto size = static_cast<size_t>(length);
    std::vector<wchar_t> copy(size / sizeof(wchar_t) + 2);
    std::memcpy(copy.data(), text, size);
    WriteTrace(level, copy.data());
  } catch (...) {
    // Short of memory for a line: the line is lost.
  }
}

}  // namespace
}  // namespace vexa

void TraceOutput(int32_t length, const void* text) noexcept {
  vexa::WriteCallersLine(vexa::TraceLevel::kInformation, length, text);
}

void TraceOutputCritical(int32_t length, const void* text) noexcept {
  vexa::WriteCallersLine(vexa::TraceLevel::kCritical, length, text);
}
