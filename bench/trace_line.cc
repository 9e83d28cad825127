// What a line costs to which no session listens.
#include <windows.h>

#include <cstdint>

#include "bench/comparisons.h"
#include "bench/paired.h"
#include "frame/log.h"
#include "vexa/trace.h"

namespace vexa {
namespace {

[[gnu::noinline]] void Empty(const char* format, ...) noexcept { asm volatile("" : : "r"(format) : "memory"); }
[[gnu::noinline]] void EmptyOutput(int32_t length, const void* text) noexcept {
  asm volatile("" : : "r"(length), "r"(text) : "memory");
}

constexpr wchar_t kText[] = L"a caller's own line";

void InternalLine() { LogInfo("[EC_BH][%s] answers %d", "BatteryHealthyTable_Rsoc", 84); }
void EmptyLine() { Empty("[EC_BH][%s] answers %d", "BatteryHealthyTable_Rsoc", 84); }
void CallersLine() { TraceOutput(sizeof kText - sizeof kText[0], kText); }
void EmptyCallersLine() { EmptyOutput(sizeof kText - sizeof kText[0], kText); }

}  // namespace

bool CompareTraceLines() {
  Comparison comparison{.name = "disabled line / empty call",
                        .library = InternalLine,
                        .bare = EmptyLine,
                        .limit = 2,
                        .pairs = 600,
                        .calls_per_block = 20000,
                        .may_allocate = false};
  const bool internal = CompareDifference(comparison);
  comparison.name = "disabled TraceOutput / empty call";
  comparison.library = CallersLine;
  comparison.bare = EmptyCallersLine;
  const bool exported = CompareDifference(comparison);
  return internal && exported;
}

}  // namespace vexa
