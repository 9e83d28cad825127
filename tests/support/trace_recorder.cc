#include "tests/support/trace_recorder.h"

#include <cstring>
#include <utility>

namespace vexa::test {
namespace {

TraceRecorder* g_recorder = nullptr;
constexpr REGHANDLE kHandle = 0x1234;

ULONG NTAPI Register(LPCGUID provider, PENABLECALLBACK callback, PVOID, PREGHANDLE handle) {
  ++g_recorder->registrations;
  g_recorder->provider = *provider;
  g_recorder->callback = callback;
  *handle = kHandle;
  // The system calls back from inside the registration when a session listens already.
  if (g_recorder->level_at_registration >= 0) g_recorder->Enable(g_recorder->level_at_registration);
  return ERROR_SUCCESS;
}

ULONG NTAPI Unregister(REGHANDLE) {
  ++g_recorder->unregistrations;
  return ERROR_SUCCESS;
}

ULONG NTAPI SetInformation(REGHANDLE, EVENT_INFO_CLASS information_class, PVOID data, ULONG size) {
  std::memcpy(&g_recorder->set_class, &information_class, sizeof g_recorder->set_class);
  const auto* bytes = static_cast<const uint8_t*>(data);
  g_recorder->set_traits.assign(bytes, bytes + size);
  return ERROR_SUCCESS;
}

ULONG NTAPI WriteTransfer(REGHANDLE handle, PCEVENT_DESCRIPTOR descriptor, LPCGUID, LPCGUID, ULONG count,
                          PEVENT_DATA_DESCRIPTOR data) {
  if (handle != kHandle) return ERROR_INVALID_HANDLE;
  TraceEvent event{.level = descriptor->Level, .descriptor = *descriptor};
  for (ULONG i = 0; i < count; ++i) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(static_cast<uintptr_t>(data[i].Ptr));
    // The descriptor's type: 2 provider metadata, 1 event metadata, 0 user data.
    std::vector<uint8_t>& part = data[i].Reserved == 2   ? event.traits
                                 : data[i].Reserved == 1 ? event.metadata
                                                         : event.payload;
    part.insert(part.end(), bytes, bytes + data[i].Size);
  }
  const auto* wide = reinterpret_cast<const wchar_t*>(event.payload.data());
  const int length = static_cast<int>(event.payload.size() / sizeof(wchar_t)) - 1;
  if (length > 0) {
    char text[4096];
    const int size = WideCharToMultiByte(CP_UTF8, 0, wide, length, text, sizeof text, nullptr, nullptr);
    event.text.assign(text, size > 0 ? size : 0);
  }
  g_recorder->events.push_back(std::move(event));
  return ERROR_SUCCESS;
}

}  // namespace

std::string ToText(const TraceEvent& event) { return std::to_string(event.level) + " " + event.text; }

TraceRecorder::TraceRecorder(HMODULE module) {
  g_recorder = this;
  patches_.push_back(std::make_unique<ImportPatch>("EventRegister", Register, module));
  patches_.push_back(std::make_unique<ImportPatch>("EventUnregister", Unregister, module));
  patches_.push_back(std::make_unique<ImportPatch>("EventSetInformation", SetInformation, module));
  patches_.push_back(std::make_unique<ImportPatch>("EventWriteTransfer", WriteTransfer, module));
}

TraceRecorder::~TraceRecorder() { g_recorder = nullptr; }

TraceRecorder& TraceRecorder::Get() { return *g_recorder; }

void TraceRecorder::Enable(int level) { Control(1, level); }

void TraceRecorder::Disable() { Control(0, 0); }

void TraceRecorder::Control(ULONG request, int level) {
  const GUID session{};
  callback(&session, request, static_cast<UCHAR>(level), 0, 0, nullptr, nullptr);
}

std::vector<TraceEvent> TraceRecorder::TakeEvents() { return std::exchange(events, {}); }

std::vector<std::string> TraceRecorder::TakeLines() {
  std::vector<std::string> lines;
  for (const TraceEvent& event : TakeEvents()) lines.push_back(ToText(event));
  return lines;
}

}  // namespace vexa::test
