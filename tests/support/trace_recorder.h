// Records the library's trace events in place of the system's event tracing.
#ifndef VEXA_TESTS_SUPPORT_TRACE_RECORDER_H_
#define VEXA_TESTS_SUPPORT_TRACE_RECORDER_H_

#include <windows.h>

#include <evntprov.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/import_patch.h"

namespace vexa::test {

struct TraceEvent {
  int level = 0;
  std::string text;  // UTF-8
  EVENT_DESCRIPTOR descriptor{};
  std::vector<uint8_t> traits;    // bytes of the provider-metadata descriptor
  std::vector<uint8_t> metadata;  // bytes of the event-metadata descriptor
  std::vector<uint8_t> payload;

  bool operator==(const TraceEvent& other) const { return level == other.level && text == other.text; }
};

// "5 text": what most tests compare.
std::string ToText(const TraceEvent& event);

// One per process and module, since the library registers once: made before the first line is written.
class TraceRecorder {
 public:
  explicit TraceRecorder(HMODULE module = GetModuleHandleW(nullptr));
  ~TraceRecorder();

  static TraceRecorder& Get();

  // What a trace session does: level 0 enables every level.
  void Enable(int level);
  void Disable();
  void Control(ULONG request, int level);

  // Lines since the last call, as ToText shows them.
  std::vector<std::string> TakeLines();
  std::vector<TraceEvent> TakeEvents();

  int registrations = 0;
  int unregistrations = 0;
  std::vector<uint8_t> set_traits;  // handed to EventSetInformation
  ULONG set_class = 0;
  GUID provider{};
  std::vector<TraceEvent> events;
  PENABLECALLBACK callback = nullptr;
  // The level that a session already listens at when the library registers; -1: none.
  int level_at_registration = -1;

 private:
  std::vector<std::unique_ptr<ImportPatch>> patches_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_TRACE_RECORDER_H_
