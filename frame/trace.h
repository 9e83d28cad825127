// The trace provider: one event per line, five levels.
#ifndef VEXA_FRAME_TRACE_H_
#define VEXA_FRAME_TRACE_H_

#include <atomic>
#include <cstdint>

namespace vexa {

enum class TraceLevel : uint8_t { kCritical = 1, kError = 2, kWarning = 3, kInformation = 4, kVerbose = 5 };

namespace trace_internal {

// Levels below this one may be listened to: above every level until the provider is registered, 0 when nobody listens.
extern std::atomic<uint16_t> g_enabled_below;
[[nodiscard]] bool EnabledOnceRegistered(TraceLevel level) noexcept;

}  // namespace trace_internal

// True when a session listens at this level or a more verbose one. The first call of the process registers the
// provider. Callers test this before they build a line; when nobody listens it is one comparison.
[[nodiscard]] inline bool TraceEnabled(TraceLevel level) noexcept {
  using namespace trace_internal;
  return static_cast<uint16_t>(level) < g_enabled_below.load(std::memory_order_relaxed) && EnabledOnceRegistered(level);
}

// Writes one event whose field is `text` up to its terminator. A level outside 1 to 5 writes nothing. Never fails
// towards its caller. Any thread.
void WriteTrace(TraceLevel level, const wchar_t* text) noexcept;

}  // namespace vexa

#endif  // VEXA_FRAME_TRACE_H_
