#include "frame/trace.h"

#include <windows.h>

#include <evntprov.h>

#include <atomic>
#include <cwchar>

#include "frame/trace_metadata.h"

namespace vexa {
namespace {

using trace_internal::g_enabled_below;

constexpr GUID kProviderId = {0xf952fc4a, 0x5222, 0x4dbb, {0x93, 0x02, 0xc9, 0xb9, 0xdd, 0x9d, 0x7c, 0x9c}};
// Not in every set of headers.
constexpr ULONG kControlDisable = 0;        // EVENT_CONTROL_CODE_DISABLE_PROVIDER
constexpr ULONG kControlEnable = 1;         // EVENT_CONTROL_CODE_ENABLE_PROVIDER
constexpr ULONG kTypeEventMetadata = 1;     // EVENT_DATA_DESCRIPTOR_TYPE_EVENT_METADATA
constexpr ULONG kTypeProviderMetadata = 2;  // EVENT_DATA_DESCRIPTOR_TYPE_PROVIDER_METADATA
constexpr ULONG kProviderSetTraits = 2;     // EventProviderSetTraits of EVENT_INFO_CLASS
// That enumeration ends below the value there, and a variable of it could not hold it.
extern "C" ULONG EVNTAPI SetInformation(REGHANDLE provider, ULONG kind, const void* information,
                                        ULONG size) __asm__("EventSetInformation");

constexpr uint16_t kEveryLevel = 256;  // one above the highest level that a session can ask for
constexpr uint16_t kUnregistered = 257;

// `used` keeps the constant whole in the file, so that decoders that scan it find it.
[[gnu::used]] constinit const TraceMetadata kMetadata = MakeTraceMetadata();

std::atomic<REGHANDLE> g_handle{0};

// May run on any thread at any time, also while the provider registers.
void NTAPI OnEnable(LPCGUID, ULONG request, UCHAR level, ULONGLONG, ULONGLONG, PEVENT_FILTER_DESCRIPTOR,
                    PVOID) noexcept {
  if (request == kControlEnable) {
    g_enabled_below = level == 0 ? kEveryLevel : static_cast<uint16_t>(level + 1);
  } else if (request == kControlDisable) {
    g_enabled_below = 0;
  }
}

bool EnabledNow(TraceLevel level) noexcept {
  return static_cast<uint16_t>(level) < g_enabled_below.load(std::memory_order_relaxed);
}

void WriteEvent(TraceLevel level, const wchar_t* text) noexcept {
  const TraceEventBlob& blob = kMetadata.events[static_cast<size_t>(level) - 1];
  EVENT_DESCRIPTOR event{};
  event.Channel = blob.channel;
  event.Level = blob.level;

  EVENT_DATA_DESCRIPTOR data[3];
  EventDataDescCreate(&data[0], &kMetadata.provider.traits, sizeof kMetadata.provider.traits);
  data[0].Reserved = kTypeProviderMetadata;
  EventDataDescCreate(&data[1], &blob.fields, sizeof blob.fields);
  data[1].Reserved = kTypeEventMetadata;
  EventDataDescCreate(&data[2], text, static_cast<ULONG>((std::wcslen(text) + 1) * sizeof(wchar_t)));
  EventWriteTransfer(g_handle, &event, nullptr, nullptr, 3, data);
}

class Provider {
 public:
  Provider() noexcept {
    // A second registration would leave the first one's callback pointing into a library that may be gone.
    if (g_handle != 0) __fastfail(FAST_FAIL_INVALID_ARG);
    REGHANDLE handle = 0;
    if (EventRegister(&kProviderId, OnEnable, nullptr, &handle) == ERROR_SUCCESS) {
      g_handle = handle;
      SetInformation(handle, kProviderSetTraits, &kMetadata.provider.traits, sizeof kMetadata.provider.traits);
    }
    // Unless a session has asked for a level meanwhile.
    uint16_t unregistered = kUnregistered;
    g_enabled_below.compare_exchange_strong(unregistered, 0);
    Mark(L"TraceLoggingRegister++++++");
  }

  // Runs with the library's exit handlers, also when it is freed while the process lives.
  ~Provider() {
    Mark(L"TraceLoggingUnregister-----");
    g_enabled_below = 0;
    const REGHANDLE handle = g_handle.exchange(0);
    if (handle != 0) EventUnregister(handle);
  }

  Provider(const Provider&) = delete;
  Provider& operator=(const Provider&) = delete;

 private:
  static void Mark(const wchar_t* text) noexcept {
    if (EnabledNow(TraceLevel::kCritical)) WriteEvent(TraceLevel::kCritical, text);
  }
};

void RegisterOnce() noexcept { static const Provider provider; }

}  // namespace

constinit std::atomic<uint16_t> trace_internal::g_enabled_below{kUnregistered};

bool trace_internal::EnabledOnceRegistered(TraceLevel level) noexcept {
  RegisterOnce();
  return level >= TraceLevel::kCritical && level <= TraceLevel::kVerbose && EnabledNow(level);
}

void WriteTrace(TraceLevel level, const wchar_t* text) noexcept {
  if (TraceEnabled(level)) WriteEvent(level, text);
}

}  // namespace vexa
