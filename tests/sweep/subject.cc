#include "tests/sweep/subject.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "tests/support/automation_ledger.h"
#include "tests/support/beacon.h"
#include "tests/support/fake_audio.h"
#include "tests/support/fake_bluetooth.h"
#include "tests/support/fake_machine.h"
#include "tests/support/fake_services.h"
#include "tests/support/fake_usb.h"
#include "tests/support/fake_wifi_vendor.h"
#include "tests/support/fake_wlan.h"
#include "tests/support/fake_wmi.h"
#include "tests/sweep/fake_system.h"
#include "tests/sweep/hooks.h"
#include "tests/sweep/ledger.h"

namespace vexa::test {
namespace {

constexpr wchar_t kUsbDevice[] = L"USB\\VID_1\\A";
const std::wstring kLongText(9000, L'x');
constexpr int kPatienceMs = 20000;

std::string g_run = "nothing yet";

[[noreturn]] void Die(const char* why) {
  std::fprintf(stderr, "the process ended (%s) in: %s\n", why, g_run.c_str());
  std::fflush(stderr);
  TerminateProcess(GetCurrentProcess(), 3);
  std::abort();
}

LONG WINAPI OnException(EXCEPTION_POINTERS* exception) {
  static char code[32];
  std::snprintf(code, sizeof code, "exception %08lx", exception->ExceptionRecord->ExceptionCode);
  Die(code);
}

// What WMI's objects say: numbers, texts and arrays, by the property's name.
std::optional<WmiValue> Property(const std::wstring& name) {
  static const std::map<std::wstring, WmiValue> values = {
      {L"device_status", Number(VT_I4, 65536)},
      {L"result", Number(VT_I4, 1)},
      {L"value", Number(VT_I4, 0x31)},
      {L"version", Number(VT_I4, 28)},
      {L"Architecture", Number(VT_I4, 9)},
      {L"LoadPercentage", Number(VT_I4, 12)},
      {L"CurrentBrightness", Number(VT_UI1, 75)},
      {L"ConfiguredClockSpeed", Number(VT_I4, 4800)},
      {L"ChassisTypes", Array(VT_I4, {Number(VT_I4, 10)})},
      {L"UserFriendlyName", Array(VT_I4, {Number(VT_I4, 'A'), Number(VT_I4, 'B')})},
      {L"OEMStringArray", Texts({L"first", L"90NX1234", L"third"})},
      {L"AccessPaths", Texts({L"C:\\", L"\\\\?\\Volume{1}\\"})},
  };
  const auto found = values.find(name);
  return found != values.end() ? found->second : Text(L"Value 7");
}

FakeWlanInterface WifiInterface() {
  using namespace beacon;
  FakeWlanInterface adapter;
  const ByteText elements =
      Ssid("home") + Ht(kHt40, {0xFF, 0xFF}) + Ht40() + Vht(kVht80, 0xFFFA) + VhtOperation(1) + He(kHe80, {0xFFFA});
  adapter.channel = 36;
  adapter.access_points = {
      {.ssid = "home", .bssid = {1}, .rssi_dbm = -41, .frequency_khz = 2'412'000},
      {.ssid = "home", .bssid = {3}, .rssi_dbm = -88, .frequency_khz = 5'955'000},
      {.ssid = "home", .bssid = adapter.bssid, .rssi_dbm = -52, .frequency_khz = 5'180'000, .elements = elements}};
  return adapter;
}

// The library's variables after loading.
ModuleState& Pristine() {
  static ModuleState state(LibraryUnderTest());
  return state;
}

// The runtime's own things that are made on first use, and the trace provider's registration, belong to no run.
bool WarmUp(HMODULE library) {
  const FARPROC trace = GetProcAddress(library, "TraceOutput");
  reinterpret_cast<decltype(&::TraceOutput)>(reinterpret_cast<void*>(trace))(0, L"");
  const FARPROC function = GetProcAddress(library, "EC_ReadProjectInformation");
  for (size_t i = 0; i < 2; ++i) {
    Injector::Get().Arm({Plan::What::kAllocationsFrom, 0, Failure::kNoMemory});
    (void)reinterpret_cast<decltype(&::EC_ReadProjectInformation)>(reinterpret_cast<void*>(function))();
    Injector::Get().Disarm();
  }
  Pristine().Save();
  Ledger::Get().Forget();
  return true;
}

}  // namespace

void RememberRun(const std::string& what) {
  g_run = what;
  if (std::getenv("VEXA_SWEEP_VERBOSE") != nullptr) std::fprintf(stderr, "%s\n", what.c_str());
}

HMODULE LibraryUnderTest() {
  static const HMODULE library = [] {
    SetUnhandledExceptionFilter(OnException);
    std::set_terminate([] { Die("std::terminate"); });
    std::signal(SIGABRT, [](int) { Die("abort"); });
    const HMODULE loaded = LoadLibraryW(L"VexaWinIO64.dll");
    if (loaded == nullptr) {
      std::fprintf(stderr, "the library can't be loaded: error %lu\n", GetLastError());
      std::exit(1);
    }
    SetPatchedModule(loaded);
    InstallHeapHooks(loaded);
    static const ImportPatch free_task_memory(
        "CoTaskMemFree",
        +[](void* memory) WINAPI {
          if (memory != nullptr) Ledger::Get().Closed("task memory", reinterpret_cast<uintptr_t>(memory));
          free_task_memory.Original<void WINAPI(void*)>()(memory);
        },
        GetModuleHandleW(nullptr));
    return loaded;
  }();
  return library;
}

// ---- A system for one family of exports ----

struct Subject::World {
  World(const Export& subject, int machine, bool tracing)
      : library(LibraryUnderTest()), state(library), arch(machine == 0 ? L"x64" : L"ARM64") {
    system.machine = machine == 0 ? IMAGE_FILE_MACHINE_AMD64 : IMAGE_FILE_MACHINE_ARM64;
    system.Reset(arch);
    wmi.other_rows = {{}, {}};
    wmi.rows[L"select * from win32_ComputerSystem"] = {{{L"UserName", Text(L"VEXA\\user")}}};
    wmi.other_property = Property;
    wmi.count_tasks = [] { return TaskCounts{.live = RunningTasks(), .abandoned = RunningTasks()}; };
    wmi.firmware = Firmware;
    wmi.fault = ComFault;
    wlan.interfaces = {WifiInterface()};
    services.service.state = SERVICE_RUNNING;
    services.service.binary_path = L"\\??\\C:\\Old\\VexaSAIO.sys";
    if (subject.family == "wifi") {
      vendor = std::make_unique<FakeWifiVendor>(script);
      vendor->realtek_present = true;
      vendor->statistics_oid = std::string(256, '\x47');
    }
    if (subject.family == "peripherals") {
      usb = std::make_unique<FakeUsb>();
      usb->devices = {{.id = kUsbDevice, .hub = L"USB\\ROOT_HUB30\\4&1&0", .port = 4, .port_properties = 9},
                      {.id = L"USB\\VID_2\\B", .hub = L"USB\\ROOT_HUB20\\4&2&0", .port = 2, .port_properties = 1}};
      bluetooth = std::make_unique<FakeBluetooth>();
      bluetooth->radios = {{.devices = {0x240404, 0x002540}}};
    }
    if (subject.name == std::string_view("System_Read_VolumeLevel")) {
      audio = std::make_unique<FakeAudio>();
      audio->fault = [](const std::string& function) { return ComFault(function); };
    }
    devices = std::make_unique<FakeDevices>();
    InstallHooks(library);
    [[maybe_unused]] static const bool warm = WarmUp(library);
    Pristine().Restore();
    if (tracing) FakeSystem::EnableTracing();
  }
  ~World() {
    // The ledger knows what was given back: handles that lived in variables went with them.
    machine.open_mutexes = machine.open_devices = 0;
    state.Restore();
    Ledger::Get().Drop(FreeOfLibrary);
    Pristine().Restore();
    Ledger::Get().Forget();
    RemoveHooks();
  }

  static WmiProperties Firmware(const std::wstring& method, const FakeWmi::Parameters& in) {
    if (method == L"ec_write_command_byte") return {{L"value", Number(VT_I4, 0)}};
    const auto command = in.find(L"commandcode");
    const bool is_fan_count = command != in.end() && command->second == L"11";
    return is_fan_count ? WmiProperties{{L"value", Number(VT_I4, 2)}} : WmiProperties{};
  }

  static std::optional<HRESULT> ComFault(const std::string& function, bool* hangs = nullptr) {
    if (!Injector::Get().Counts()) return std::nullopt;
    const bool bounded = function == "ConnectServer" || function == "ExecQuery";
    if (bounded) Injector::Get().AskToWait(kWmiWaitMs);
    const std::optional<Failure> failure = Injector::Get().NextCall(function.c_str());
    if (!failure) return std::nullopt;
    // A call that is waited for answers too late; it does so once the caller has gone.
    if (*failure == Failure::kTimeOut && bounded) {
      *hangs = true;
      return std::nullopt;
    }
    return *failure == Failure::kShortAnswer ? S_FALSE : HresultOf(*failure);
  }

  template <typename Function, typename... Arguments>
  auto Call(const char* name, Function*, Arguments... arguments) {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library, name)))(arguments...);
  }

  // What every run begins from: the library has been initialised, but for exports that need no driver, and those that
  // do or undo just that.
  void Prepare(const Export& subject) {
    const std::string_view name = subject.name;
    if (subject.family != "wifi" && name != "InitializeWinIo" && name != "ShutdownWinIo") {
      Call("InitializeWinIo", ::InitializeWinIo);
    }
    state.Save();
    Ledger::Get().Keep();
  }
  void Before(std::string_view name) {
    if (name == "ShutdownWinIo") Call("InitializeWinIo", ::InitializeWinIo);
  }
  // Gives back what an export is there to take.
  void After(std::string_view name, const Answer& answer) {
    if (name == "HealthyTable_SetFanTestMode" && answer.number == 1) {
      Call("HealthyTable_SetFanTestMode", ::HealthyTable_SetFanTestMode, 0);
    }
  }

  bool WaitForTasks() {
    wmi.Unblock();
    for (int i = 0; i < kPatienceMs && RunningTasks() != 0; ++i) SleepEx(1, FALSE);
    return RunningTasks() == 0;
  }

  void Reset() {
    state.Restore();
    Ledger::Get().Drop(FreeOfLibrary);
    (void)Ledger::Get().TakeFaults();
    system.Reset(arch);
    ForgetRecords();
    services.service = {.state = SERVICE_RUNNING, .binary_path = L"\\??\\C:\\Old\\VexaSAIO.sys"};
  }

  // What the fakes note for tests of single calls.
  void ForgetRecords() {
    script.Take();
    wmi.TakeCalls();
    wmi.TakeWaits();
    wmi.ForgetReleased();
    if (usb) usb->script.Take();
    if (bluetooth) bluetooth->script.Take();
    if (audio) audio->script.Take();
  }

  HMODULE library;
  ModuleState state;
  std::wstring arch;
  FakeSystem system;
  CallScript script;
  FakeServices services{script};
  FakeMachine machine{script};
  FakeWmi wmi;
  FakeWlan wlan{script};
  std::unique_ptr<FakeWifiVendor> vendor;
  std::unique_ptr<FakeUsb> usb;
  std::unique_ptr<FakeBluetooth> bluetooth;
  std::unique_ptr<FakeAudio> audio;
  std::unique_ptr<FakeDevices> devices;
};

Subject::Subject(const Export& subject, int machine, bool tracing)
    : world_(std::make_unique<World>(subject, machine, tracing)),
      export_(subject),
      machine_(machine),
      address_(GetProcAddress(LibraryUnderTest(), subject.name)) {
  world_->Prepare(subject);
}

Subject::~Subject() = default;

Answer Subject::CallAgain(Layout layout) {
  Arguments arguments(
      [](std::string_view name) { return name == "device_instance_id" ? kUsbDevice : L"C:\\Program Files\\Vexa"; },
      layout);
  if (!Injector::Get().armed())
    RememberRun(std::string(export_.name) + " on " + kMachines[machine_] + ", called again");
  return export_.call(address_, arguments);
}

std::map<std::string, int> Subject::Held() {
  EXPECT_TRUE(world_->WaitForTasks()) << "a task never ended";
  world_->ForgetRecords();
  std::map<std::string, int> held = Ledger::Get().Held();
  if (AutomationLedger::Live() != 0) held["text or array of COM automation"] = AutomationLedger::Live();
  if (world_->wmi.References() != 0) held["reference to a WMI object"] = world_->wmi.References();
  return held;
}

void Subject::Reset() {
  EXPECT_TRUE(world_->WaitForTasks()) << "a task never ended";
  world_->Reset();
}

void Subject::UseLongTexts() {
  world_->wmi.other_property = [](const std::wstring& name) -> std::optional<WmiValue> {
    const std::optional<WmiValue> usual = Property(name);
    return usual && usual->type != VT_BSTR ? usual : Text(kLongText);
  };
  world_->wlan.interfaces[0].description = kLongText;
  world_->system.UseLongTexts(kLongText);
}

Outcome Subject::Run(const Plan& plan) {
  Outcome outcome;
  const bool of_call = plan.what == Plan::What::kCall || plan.what == Plan::What::kCallsFrom;
  const std::string call = of_call && plan.index < good_calls_.size() ? " (" + good_calls_[plan.index] + ")" : "";
  outcome.what = std::string(export_.name) + " on " + kMachines[machine_] + ", " + Describe(plan) + call;
  RememberRun(outcome.what);
  Injector& injector = Injector::Get();
  world_->Before(export_.name);
  injector.Arm(plan);
  outcome.answer = CallAgain();
  bool ended = world_->WaitForTasks();
  injector.Disarm();
  world_->After(export_.name, outcome.answer);
  ended = world_->WaitForTasks() && ended;
  if (!ended) outcome.faults.emplace_back("a task never ended");
  if (injector.asked_ms() > export_.wait_ms) {
    outcome.faults.push_back("may wait " + std::to_string(injector.asked_ms()) + " ms, and the catalogue says less");
  }
  outcome.injected = injector.injected();
  if (plan.what == Plan::What::kNothing) good_calls_ = injector.calls();
  outcome.call_count = injector.call_count();
  outcome.allocation_count = injector.allocation_count();

  outcome.faults.insert(outcome.faults.end(), outcome.answer.faults.begin(), outcome.answer.faults.end());
  for (const std::string& lost : Ledger::Get().Lost(world_->state)) {
    // Kept: each collection opens a client that is never closed.
    if (lost.starts_with("WLAN client") && ++outcome.wlan_clients == 1) continue;
    outcome.faults.push_back("lost: " + lost);
  }
  for (const std::string& fault : Ledger::Get().TakeFaults()) outcome.faults.push_back(fault);
  if (AutomationLedger::Live() != 0) outcome.faults.emplace_back("lost: texts or arrays of COM automation");
  if (world_->wmi.References() != 0) outcome.faults.emplace_back("lost: references to WMI objects");
  world_->Reset();
  return outcome;
}

}  // namespace vexa::test
