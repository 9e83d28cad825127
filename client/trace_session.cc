#include "client/trace_session.h"

#include <windows.h>

#include <evntcons.h>
#include <evntrace.h>

#include <cstddef>
#include <cwchar>
#include <thread>

#include "client/machine.h"
#include "client/text.h"

namespace vexahealth {
namespace {

constexpr wchar_t kSessionName[] = L"vexahealth trace";
constexpr GUID kProvider = {0xf952fc4a, 0x5222, 0x4dbb, {0x93, 0x02, 0xc9, 0xb9, 0xdd, 0x9d, 0x7c, 0x9c}};
constexpr TRACEHANDLE kNoTrace = ~TRACEHANDLE{0};  // INVALID_PROCESSTRACE_HANDLE

// The session's properties with room for its name behind them.
struct Properties {
  EVENT_TRACE_PROPERTIES head{};
  wchar_t name[64]{};

  Properties() {
    head.Wnode.BufferSize = sizeof *this;
    head.Wnode.Flags = WNODE_FLAG_TRACED_GUID;
    head.Wnode.ClientContext = 2;  // system time
    head.LogFileMode = EVENT_TRACE_REAL_TIME_MODE;
    head.FlushTimer = 1;
    head.LoggerNameOffset = offsetof(Properties, name);
  }
};

std::string Why(const char* step, ULONG error) {
  if (error == ERROR_ACCESS_DENIED) {
    return Printf("%s: access is denied: tracing needs administrator rights, and a system with event tracing", step);
  }
  return Printf("%s failed (error %lu): this system has no event tracing", step, error);
}

// Ends the session with it, also when a former client left one behind.
class EventSession {
 public:
  ULONG Start() {
    Properties properties;
    ULONG error = StartTraceW(&handle_, kSessionName, &properties.head);
    if (error == ERROR_ALREADY_EXISTS) {
      Properties former;
      ControlTraceW(0, kSessionName, &former.head, EVENT_TRACE_CONTROL_STOP);
      Properties again;
      error = StartTraceW(&handle_, kSessionName, &again.head);
    }
    started_ = error == ERROR_SUCCESS;
    return error;
  }
  ULONG Enable(int level) {
    return EnableTraceEx2(handle_, &kProvider, EVENT_CONTROL_CODE_ENABLE_PROVIDER, static_cast<UCHAR>(level), 0, 0, 0,
                          nullptr);
  }
  void Stop() {
    if (!started_) return;
    Properties properties;
    ControlTraceW(handle_, nullptr, &properties.head, EVENT_TRACE_CONTROL_STOP);
    started_ = false;
  }
  EventSession() = default;
  ~EventSession() { Stop(); }
  EventSession(const EventSession&) = delete;
  EventSession& operator=(const EventSession&) = delete;

 private:
  TRACEHANDLE handle_ = 0;
  bool started_ = false;
};

void WINAPI OnEvent(EVENT_RECORD* record) {
  if (!IsEqualGUID(record->EventHeader.ProviderId, kProvider)) return;
  const std::u16string field = TraceField(record->UserData, record->UserDataLength);
  const auto& receive = *static_cast<const std::function<void(const TraceEvent&)>*>(record->UserContext);
  receive({.time = TimeOfTicks(record->EventHeader.TimeStamp.QuadPart),
           .process = record->EventHeader.ProcessId,
           .level = record->EventHeader.EventDescriptor.Level,
           .text = WideToUtf8(std::wstring(field.begin(), field.end()))});
}

}  // namespace

std::string Trace(uint32_t seconds, int level, const std::function<void(const TraceEvent&)>& receive) {
  EventSession session;
  if (const ULONG error = session.Start(); error != ERROR_SUCCESS) return Why("StartTrace", error);
  if (const ULONG error = session.Enable(level); error != ERROR_SUCCESS) return Why("EnableTraceEx2", error);
  std::wstring name = kSessionName;
  EVENT_TRACE_LOGFILEW source{};
  source.LoggerName = name.data();
  source.ProcessTraceMode = PROCESS_TRACE_MODE_REAL_TIME | PROCESS_TRACE_MODE_EVENT_RECORD;
  source.EventRecordCallback = OnEvent;
  source.Context = const_cast<std::function<void(const TraceEvent&)>*>(&receive);
  TRACEHANDLE trace = OpenTraceW(&source);
  if (trace == kNoTrace) return Why("OpenTrace", GetLastError());
  std::thread reader([&trace] { ProcessTrace(&trace, 1, nullptr, nullptr); });
  WaitInterrupted(seconds * 1000);
  session.Stop();  // ProcessTrace ends when it has delivered what is left
  reader.join();
  CloseTrace(trace);
  return {};
}

}  // namespace vexahealth
