#include "tests/sweep/hooks.h"

#include <winsock2.h>
#include <ws2ipdef.h>

#include <appmodel.h>
#include <bluetoothapis.h>
#include <cfgmgr32.h>
#include <evntprov.h>
#include <iphlpapi.h>
#include <oleauto.h>
#include <setupapi.h>
#include <shlwapi.h>
#include <wlanapi.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/support/import_patch.h"
#include "tests/sweep/injector.h"
#include "tests/sweep/ledger.h"

// The chip vendors' functions, as the library reads them.
uint32_t WifiGetAdapterList(void* list, uint32_t* size);
uint32_t WifiGetBSSConfigurationStatistics(const void* adapter, void* record, uint32_t* size);
BOOL DLL_findRealtekWlanNics(uint32_t* count);
BOOL DLL_QueryOid(uint32_t oid, void* result, uint32_t capacity, uint32_t* size);
HRESULT WINAPI WldpQueryWindowsLockdownMode(int* mode);

namespace vexa::test {
namespace {

// How a function tells that it failed.
enum class Failing {
  kFalse,    // 0 or null, and the last error
  kMinus1,   // INVALID_HANDLE_VALUE or INVALID_FILE_ATTRIBUTES, and the last error
  kStatus,   // a Win32 error
  kHresult,  // an HRESULT
  kConfig,   // a CONFIGRET
  kWait,     // WAIT_*
  kVendor,   // any number but 0
  kRelease,  // 0 and the last error, but what was to be given back is
  kReleaseStatus,
  kNever,
};

CONFIGRET ConfigOf(Failure failure) {
  constexpr CONFIGRET kResults[] = {CR_NO_SUCH_DEVNODE, CR_ACCESS_DENIED, CR_INVALID_DEVNODE,
                                    CR_FAILURE,         CR_OUT_OF_MEMORY, CR_BUFFER_SMALL};
  return kResults[static_cast<size_t>(failure)];
}

template <typename Result>
Result FailedAs(Failing failing, Failure failure) {
  SetLastError(ErrorOf(failure));
  int64_t value = 0;
  switch (failing) {
    case Failing::kMinus1: value = -1; break;
    case Failing::kStatus:
    case Failing::kReleaseStatus: value = static_cast<int64_t>(ErrorOf(failure)); break;
    case Failing::kHresult: value = HresultOf(failure); break;
    case Failing::kConfig: value = ConfigOf(failure); break;
    case Failing::kVendor: value = 1; break;
    case Failing::kWait:
      value = failure == Failure::kTimeOut       ? WAIT_TIMEOUT
              : failure == Failure::kShortAnswer ? WAIT_ABANDONED
                                                 : WAIT_FAILED;
      break;
    default: break;
  }
  if constexpr (std::is_pointer_v<Result>) {
    return reinterpret_cast<Result>(static_cast<intptr_t>(value));
  } else {
    return static_cast<Result>(value);
  }
}

template <typename Handle>
uintptr_t Word(Handle handle) {
  if constexpr (std::is_pointer_v<Handle>) {
    return reinterpret_cast<uintptr_t>(handle);
  } else {
    return static_cast<uintptr_t>(handle);
  }
}
template <typename Handle>
void Open(const char* kind, Handle handle) {
  if (Word(handle) != 0 && Word(handle) != UINTPTR_MAX) Ledger::Get().Opened(kind, Word(handle));
}
template <typename Handle>
void Close(const char* kind, Handle handle) {
  Ledger::Get().Closed(kind, Word(handle));
}

// Every hook, and where it keeps what it stands in for.
struct Known {
  const char* name;
  void (*hook)();
  void** original;
};
std::vector<Known> g_known;

template <typename Call>
struct Registered {
  Registered();
};

// A function that the library calls. The code behind its way of failing runs after it has succeeded or failed by
// itself, with its result and its arguments.
#define VEXA_CALL(function, failing, ...)                                               \
  struct function##Call {                                                               \
    using Type = decltype(&::function);                                                 \
    static constexpr char kName[] = #function;                                          \
    static constexpr Failing kFailing = Failing::failing;                               \
    template <typename Result, typename Tuple>                                          \
    static void Done([[maybe_unused]] Result result, [[maybe_unused]] const Tuple& a) { \
      __VA_ARGS__;                                                                      \
    }                                                                                   \
  };                                                                                    \
  const Registered<function##Call> k##function##Registered;
#define VEXA_ARGUMENT(index) std::get<index>(a)
#define VEXA_OPENS(function, failing, kind) VEXA_CALL(function, failing, Open(kind, result))
#define VEXA_FILLS(function, failing, kind, index) \
  VEXA_CALL(function, failing, if (result == 0) Open(kind, *VEXA_ARGUMENT(index)))
#define VEXA_CLOSES(function, failing, kind) VEXA_CALL(function, failing, Close(kind, VEXA_ARGUMENT(0)))

// advapi32
VEXA_OPENS(OpenSCManagerW, kFalse, "service handle")
VEXA_OPENS(OpenServiceW, kFalse, "service handle")
VEXA_OPENS(CreateServiceW, kFalse, "service handle")
VEXA_CLOSES(CloseServiceHandle, kRelease, "service handle")
VEXA_CALL(ControlService, kFalse)
VEXA_CALL(DeleteService, kFalse)
VEXA_CALL(QueryServiceConfigW, kFalse)
VEXA_CALL(QueryServiceStatus, kFalse)
VEXA_CALL(StartServiceW, kFalse)
VEXA_OPENS(RegisterEventSourceW, kFalse, "event source")
VEXA_CLOSES(DeregisterEventSource, kRelease, "event source")
VEXA_CALL(ReportEventW, kFalse)
VEXA_FILLS(EventRegister, kStatus, "trace provider", 3)
VEXA_CLOSES(EventUnregister, kReleaseStatus, "trace provider")
VEXA_CALL(EventSetInformation, kStatus)
VEXA_CALL(EventWriteTransfer, kStatus)
VEXA_CALL(InitializeSecurityDescriptor, kFalse)
VEXA_CALL(SetSecurityDescriptorDacl, kFalse)
VEXA_FILLS(RegOpenKeyExW, kStatus, "key", 4)
VEXA_FILLS(RegCreateKeyExW, kStatus, "key", 7)
VEXA_CLOSES(RegCloseKey, kReleaseStatus, "key")
VEXA_CALL(RegQueryValueExW, kStatus)
VEXA_CALL(RegSetValueExW, kStatus)
// iphlpapi
VEXA_FILLS(GetIfTable2Ex, kStatus, "interface table", 1)
VEXA_CALL(GetIfEntry2, kStatus)
VEXA_CLOSES(FreeMibTable, kNever, "interface table")
// ole32 and oleaut32
VEXA_CALL(CoCreateInstance, kHresult)
VEXA_CALL(CoInitializeEx, kHresult, if (SUCCEEDED(result)) Open("apartment", GetCurrentThreadId()))
VEXA_CALL(CoUninitialize, kNever, Close("apartment", GetCurrentThreadId()))
VEXA_CALL(CoSetProxyBlanket, kHresult)
VEXA_OPENS(CoTaskMemAlloc, kFalse, "task memory")
VEXA_CALL(StringFromGUID2, kFalse)
VEXA_CALL(SafeArrayGetDim, kFalse)
VEXA_CALL(SafeArrayGetElement, kHresult)
VEXA_CALL(SafeArrayGetLBound, kHresult)
VEXA_CALL(SafeArrayGetUBound, kHresult)
VEXA_CALL(SysAllocString, kFalse)
// setupapi and shlwapi
VEXA_CALL(CM_Get_DevNode_Registry_PropertyW, kConfig)
VEXA_CALL(CM_Get_Device_IDW, kConfig)
VEXA_CALL(CM_Get_Device_ID_ListW, kConfig)
VEXA_CALL(CM_Get_Device_ID_List_SizeW, kConfig)
VEXA_CALL(CM_Get_Parent, kConfig)
VEXA_CALL(CM_Locate_DevNodeW, kConfig)
VEXA_OPENS(SetupDiGetClassDevsW, kMinus1, "device set")
VEXA_CLOSES(SetupDiDestroyDeviceInfoList, kRelease, "device set")
VEXA_CALL(SetupDiEnumDeviceInfo, kFalse)
VEXA_CALL(SetupDiGetDeviceRegistryPropertyW, kFalse)
VEXA_OPENS(SetupDiOpenDevRegKey, kMinus1, "key")
VEXA_CALL(PathRemoveFileSpecW, kFalse)
// kernel32
VEXA_OPENS(CreateFileW, kMinus1, "kernel handle")
VEXA_OPENS(CreateMutexW, kFalse, "kernel handle")
VEXA_CLOSES(CloseHandle, kRelease, "kernel handle")
VEXA_CALL(CompareStringOrdinal, kFalse)
VEXA_CALL(DeviceIoControl, kFalse)
VEXA_CALL(GetFileAttributesW, kMinus1)
VEXA_CALL(GetModuleFileNameW, kFalse)
VEXA_CALL(GetModuleHandleW, kFalse)
VEXA_CALL(GetSystemDirectoryW, kFalse)
VEXA_CALL(GetSystemPowerStatus, kFalse)
VEXA_OPENS(LoadLibraryExW, kFalse, "module")
VEXA_CLOSES(FreeLibrary, kRelease, "module")
VEXA_OPENS(LocalAlloc, kFalse, "local memory")
VEXA_CLOSES(LocalFree, kNever, "local memory")
VEXA_CALL(MultiByteToWideChar, kFalse)
VEXA_CALL(WideCharToMultiByte, kFalse)
VEXA_CALL(ReadFile, kFalse)
VEXA_CALL(WriteFile, kFalse)
VEXA_CALL(ReleaseMutex, kRelease)
VEXA_CALL(WaitForSingleObject, kWait, Injector::Get().AskToWait(VEXA_ARGUMENT(1)))
// Looked up at run time
VEXA_FILLS(WlanOpenHandle, kStatus, "WLAN client", 3)
VEXA_FILLS(WlanEnumInterfaces, kStatus, "WLAN memory", 2)
VEXA_FILLS(WlanQueryInterface, kStatus, "WLAN memory", 5)
VEXA_FILLS(WlanGetNetworkBssList, kStatus, "WLAN memory", 6)
VEXA_CLOSES(WlanFreeMemory, kNever, "WLAN memory")
VEXA_CALL(BluetoothFindFirstRadio, kFalse, Open("radio search", result);
          if (result != nullptr) Open("kernel handle", *VEXA_ARGUMENT(1)))
VEXA_CALL(BluetoothFindNextRadio, kFalse, if (result) Open("kernel handle", *VEXA_ARGUMENT(1)))
VEXA_CLOSES(BluetoothFindRadioClose, kRelease, "radio search")
VEXA_CALL(BluetoothGetRadioInfo, kStatus)
VEXA_OPENS(BluetoothFindFirstDevice, kFalse, "device search")
VEXA_CALL(BluetoothFindNextDevice, kFalse)
VEXA_CLOSES(BluetoothFindDeviceClose, kRelease, "device search")
VEXA_CALL(WifiGetAdapterList, kVendor)
VEXA_CALL(WifiGetBSSConfigurationStatistics, kVendor)
VEXA_CALL(DLL_findRealtekWlanNics, kFalse)
VEXA_CALL(DLL_QueryOid, kFalse)
VEXA_CALL(WldpQueryWindowsLockdownMode, kHresult)
VEXA_CALL(GetPackagesByPackageFamily, kStatus)
VEXA_CALL(IsWow64Process2, kFalse)

// Makes an answer shorter than it should be, for functions that can give one; the others fail.
template <typename Call>
struct Shortened;
#define VEXA_SHORTENED(function, ...)                                                  \
  template <>                                                                          \
  struct Shortened<function##Call> {                                                   \
    template <typename Result, typename Tuple>                                         \
    static void Do([[maybe_unused]] Result& result, [[maybe_unused]] const Tuple& a) { \
      __VA_ARGS__;                                                                     \
    }                                                                                  \
  };
template <typename Size>
void Halve(void* bytes, Size* size) {
  std::memset(static_cast<char*>(bytes) + *size / 2, 0, *size - *size / 2);
  *size /= 2;
}
VEXA_SHORTENED(DeviceIoControl, if (result) Halve(VEXA_ARGUMENT(4), VEXA_ARGUMENT(6)))
VEXA_SHORTENED(RegQueryValueExW, if (result == ERROR_SUCCESS) Halve(VEXA_ARGUMENT(4), VEXA_ARGUMENT(5)))
VEXA_SHORTENED(ReadFile, if (result) Halve(VEXA_ARGUMENT(1), VEXA_ARGUMENT(3)))
VEXA_SHORTENED(WriteFile, if (result) * VEXA_ARGUMENT(3) /= 2)
VEXA_SHORTENED(SetupDiGetDeviceRegistryPropertyW, if (result) std::memset(VEXA_ARGUMENT(4), 0, VEXA_ARGUMENT(5)))
VEXA_SHORTENED(WlanQueryInterface, if (result == ERROR_SUCCESS) * VEXA_ARGUMENT(4) /= 2)
VEXA_SHORTENED(WifiGetAdapterList, if (result == 0) Halve(VEXA_ARGUMENT(0), VEXA_ARGUMENT(1)))
VEXA_SHORTENED(WifiGetBSSConfigurationStatistics, if (result == 0) Halve(VEXA_ARGUMENT(1), VEXA_ARGUMENT(2)))
VEXA_SHORTENED(DLL_QueryOid, if (result) Halve(VEXA_ARGUMENT(1), VEXA_ARGUMENT(3)))
// The thread is in the apartment already.
VEXA_SHORTENED(CoInitializeEx, if (result == S_OK) result = S_FALSE)

template <typename Call, typename Type = Call::Type>
struct Hook;
template <typename Call, typename Result, typename... Arguments>
struct Hook<Call, Result (*)(Arguments...)> {
  static inline Result (*original)(Arguments...) = nullptr;

  static Result Run(Arguments... arguments) {
    if (!Injector::Get().Counts()) return Pass(arguments...);
    if constexpr (Call::kFailing != Failing::kNever) {
      if (const std::optional<Failure> failure = Injector::Get().NextCall(Call::kName)) {
        return Fail(*failure, arguments...);
      }
    }
    return Pass(arguments...);
  }

 private:
  static Result Pass(Arguments... arguments) {
    const Injector::Inside inside;
    const std::tuple<Arguments...> a(arguments...);
    if constexpr (std::is_void_v<Result>) {
      original(arguments...);
      Call::Done(0, a);
    } else {
      const Result result = original(arguments...);
      const DWORD error = GetLastError();
      Call::Done(result, a);
      SetLastError(error);
      return result;
    }
  }
  static Result Fail(Failure failure, Arguments... arguments) {
    if constexpr (Call::kFailing == Failing::kRelease || Call::kFailing == Failing::kReleaseStatus) {
      (void)Pass(arguments...);
    } else if constexpr (requires { sizeof(Shortened<Call>); }) {
      if (failure == Failure::kShortAnswer) {
        Result result = Pass(arguments...);
        Shortened<Call>::Do(result, std::tuple<Arguments...>(arguments...));
        return result;
      }
    }
    return FailedAs<Result>(Call::kFailing, failure);
  }
};

template <typename Call>
Registered<Call>::Registered() {
  g_known.push_back({Call::kName, reinterpret_cast<void (*)()>(reinterpret_cast<void*>(Hook<Call>::Run)),
                     reinterpret_cast<void**>(&Hook<Call>::original)});
}

// ---- Thread pool ----

std::atomic<int> g_running_tasks = 0;
decltype(&TrySubmitThreadpoolCallback) g_submit = nullptr;

struct Submitted {
  PTP_SIMPLE_CALLBACK callback;
  void* context;
};
void CALLBACK RunSubmitted(PTP_CALLBACK_INSTANCE instance, void* context) {
  const std::unique_ptr<Submitted> submitted(static_cast<Submitted*>(context));
  submitted->callback(instance, submitted->context);
  --g_running_tasks;
}
BOOL WINAPI Submit(PTP_SIMPLE_CALLBACK callback, PVOID context, PTP_CALLBACK_ENVIRON environment) {
  if (Injector::Get().Counts()) {
    if (const std::optional<Failure> failure = Injector::Get().NextCall("TrySubmitThreadpoolCallback")) {
      return FailedAs<BOOL>(Failing::kFalse, *failure);
    }
  }
  const Injector::Inside inside;
  auto submitted = std::make_unique<Submitted>(callback, context);
  ++g_running_tasks;
  if (g_submit(RunSubmitted, submitted.get(), environment)) {
    (void)submitted.release();
    return TRUE;
  }
  --g_running_tasks;
  return FALSE;
}

// ---- Functions that are looked up ----

decltype(&GetProcAddress) g_get_address = nullptr;

FARPROC WINAPI GetAddress(HMODULE module, LPCSTR name) {
  if (Injector::Get().Counts()) {
    if (const std::optional<Failure> failure = Injector::Get().NextCall("GetProcAddress")) {
      return FailedAs<FARPROC>(Failing::kFalse, *failure);
    }
  }
  const Injector::Inside inside;
  const FARPROC found = g_get_address(module, name);
  if (found == nullptr) return nullptr;
  const auto known = std::ranges::find(g_known, std::string_view(name), &Known::name);
  if (known == g_known.end()) return found;
  *known->original = reinterpret_cast<void*>(found);
  return reinterpret_cast<FARPROC>(known->hook);
}

// ---- Heap ----

decltype(&std::malloc) g_malloc = nullptr;
decltype(&std::free) g_free = nullptr;
void* (*g_aligned_malloc)(size_t, size_t) = nullptr;

void* Malloc(size_t size) {
  if (Injector::Get().Counts() && Injector::Get().NextAllocationFails()) return nullptr;
  void* const block = g_malloc(size);
  if (block != nullptr) Ledger::Get().Allocated(block, size);
  return block;
}
void Free(void* block) {
  (void)Ledger::Get().Freed(block);
  g_free(block);
}
void* AlignedMalloc(size_t size, size_t alignment) {
  if (Injector::Get().Counts() && Injector::Get().NextAllocationFails()) return nullptr;
  return g_aligned_malloc(size, alignment);
}

std::vector<std::unique_ptr<ImportPatch>> g_patches;

}  // namespace

void InstallHooks(HMODULE library) {
  for (const Known& known : g_known) {
    if (FindImport(library, known.name) == nullptr) continue;  // looked up, see GetAddress
    g_patches.push_back(std::make_unique<ImportPatch>(known.name, known.hook, library));
    *known.original = reinterpret_cast<void*>(g_patches.back()->Original<void()>());
  }
  g_patches.push_back(std::make_unique<ImportPatch>("TrySubmitThreadpoolCallback", Submit, library));
  g_submit = g_patches.back()->Original<std::remove_pointer_t<decltype(g_submit)>>();
  g_patches.push_back(std::make_unique<ImportPatch>("GetProcAddress", GetAddress, library));
  g_get_address = g_patches.back()->Original<std::remove_pointer_t<decltype(g_get_address)>>();
}

void RemoveHooks() {
  while (!g_patches.empty()) g_patches.pop_back();
}

void InstallHeapHooks(HMODULE library) {
  static std::vector<std::unique_ptr<ImportPatch>> patches;
  const auto put = [&]<typename Function>(const char* name, Function* replacement, Function** original) {
    patches.push_back(std::make_unique<ImportPatch>(name, replacement, library));
    *original = patches.back()->template Original<Function>();
  };
  put("malloc", Malloc, &g_malloc);
  put("free", Free, &g_free);
  put("_aligned_malloc", AlignedMalloc, &g_aligned_malloc);
}

void FreeOfLibrary(void* block) { g_free(block); }

int RunningTasks() { return g_running_tasks; }

}  // namespace vexa::test
