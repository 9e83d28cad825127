// Events of the library's trace provider, as the client prints them.
#ifndef CLIENT_TRACE_LINES_H_
#define CLIENT_TRACE_LINES_H_

#include <cstdint>
#include <string>
#include <vector>

#include "client/json_parts.h"

namespace vexahealth {

struct TraceEvent {
  std::string time;  // UTC, ISO 8601
  uint32_t process = 0;
  int level = 0;     // 1 critical, 4 informational, 5 verbose
  std::string text;  // UTF-8
};

// "2026-02-03T08:05:00.000Z   4120 5 [EC_BH][...] ...", harmless on a terminal.
[[nodiscard]] std::string TraceLine(const TraceEvent& event);

[[nodiscard]] Json TraceEventJson(const TraceEvent& event);

// All of them as one JSON value; `error` says why there are none.
[[nodiscard]] std::string TraceJson(const std::string& time, const std::string& error,
                                    const std::vector<TraceEvent>& events);

// The provider's one field: UTF-16 up to its terminator, or to the end of a record that has none. An odd last byte is
// left out.
[[nodiscard]] std::u16string TraceField(const void* data, size_t size);

// "2026-02-03T08:05:00.000Z" from 100 ns steps since 1601.
[[nodiscard]] std::string TimeOfTicks(int64_t ticks);

}  // namespace vexahealth

#endif  // CLIENT_TRACE_LINES_H_
