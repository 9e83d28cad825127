// Receives the events of the library's provider from all processes of the system.
#ifndef CLIENT_TRACE_SESSION_H_
#define CLIENT_TRACE_SESSION_H_

#include <cstdint>
#include <functional>
#include <string>

#include "client/trace_lines.h"

namespace vexahealth {

// Until the time is over or the user interrupts. `receive` is called on a thread of its own, one call at a time, and
// never after the return. Returns what kept it from tracing, or an empty text.
[[nodiscard]] std::string Trace(uint32_t seconds, int level, const std::function<void(const TraceEvent&)>& receive);

}  // namespace vexahealth

#endif  // CLIENT_TRACE_SESSION_H_
