#include "tests/support/fake_wmi.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "tests/support/fake_wmi_objects.h"
#include "wmi/bounded_task.h"

namespace vexa::test {
namespace {

FakeWmi* g_wmi = nullptr;
decltype(&SleepConditionVariableSRW) g_sleep_condition = nullptr;

constexpr ULONGLONG kStandingClock = 1000000;
constexpr DWORD kSliceMs = 1;

std::string PointerText(const void* pointer) { return pointer == nullptr ? " null" : " pointer"; }

}  // namespace

struct FakeWmiHook {
  static HRESULT WINAPI Initialize(LPVOID reserved, DWORD model) {
    FakeWmi& wmi = *g_wmi;
    std::optional<HRESULT> failure;
    if (GetCurrentThreadId() == wmi.thread_) {
      failure = wmi.Enter("CoInitializeEx", Hex(model) + (reserved ? " reserved" : ""), false);
    } else if (model != COINIT_MULTITHREADED) {
      wmi.Complain("task outside of the multithreaded apartment");
    }
    const HRESULT result = failure.value_or(S_OK);
    if (FAILED(result)) return result;
    const std::lock_guard lock(wmi.mutex_);
    ++wmi.apartments_[GetCurrentThreadId()];
    if (GetCurrentThreadId() != wmi.thread_) ++wmi.apartments_of_tasks_;
    return result;
  }

  static void WINAPI Uninitialize() {
    FakeWmi& wmi = *g_wmi;
    if (GetCurrentThreadId() == wmi.thread_) {
      (void)wmi.Enter("CoUninitialize", "");
      // What a hanging task holds is given back later, in its own apartment.
      if (wmi.count_tasks().abandoned == 0 && wmi.References() != 0) wmi.Complain("object held beyond the apartment");
    }
    const std::lock_guard lock(wmi.mutex_);
    if (--wmi.apartments_[GetCurrentThreadId()] < 0) wmi.faults_.push_back("left an apartment never entered");
  }

  static HRESULT WINAPI Create(REFCLSID class_id, LPUNKNOWN outer, DWORD context, REFIID interface_id, LPVOID* object) {
    FakeWmi& wmi = *g_wmi;
    const std::string text = std::string(IsEqualGUID(class_id, CLSID_WbemLocator) ? "WbemLocator" : "other") +
                             PointerText(outer) + " " + Hex(context) +
                             (IsEqualGUID(interface_id, IID_IWbemLocator) ? "" : " other interface");
    *object = nullptr;
    if (const std::optional<HRESULT> failure = wmi.Enter("CoCreateInstance", text, false)) return *failure;
    {
      const std::lock_guard lock(wmi.mutex_);
      if (wmi.apartments_[GetCurrentThreadId()] == 0) return CO_E_NOTINITIALIZED;
    }
    *object = static_cast<IWbemLocator*>(wmi.Make<FakeLocator>());
    return S_OK;
  }

  static HRESULT WINAPI SetBlanket(IUnknown* proxy, DWORD authentication, DWORD authorisation, OLECHAR* principal,
                                   DWORD level, DWORD impersonation, RPC_AUTH_IDENTITY_HANDLE identity, DWORD options) {
    const std::string text = std::string(dynamic_cast<FakeWmiServices*>(proxy) ? "services " : "other ") +
                             std::to_string(authentication) + " " + std::to_string(authorisation) +
                             PointerText(principal) + " " + std::to_string(level) + " " +
                             std::to_string(impersonation) + PointerText(identity) + " " + std::to_string(options);
    return g_wmi->Enter("CoSetProxyBlanket", text).value_or(S_OK);
  }

  static ULONGLONG WINAPI Clock() { return kStandingClock; }

  // A caller's wait is over at once when a call hangs; woken when the task has ended, and for nothing now and then.
  static BOOL WINAPI Wait(PCONDITION_VARIABLE condition, PSRWLOCK lock, DWORD ms, ULONG flags) {
    FakeWmi& wmi = *g_wmi;
    if (GetCurrentThreadId() != wmi.thread_) return g_sleep_condition(condition, lock, ms, flags);
    {
      const std::lock_guard guard(wmi.mutex_);
      wmi.waits_.push_back(ms);
      // The wait for the other stage of the same task is over as well.
      if (wmi.hanging_ > 0 || condition == wmi.given_up_) {
        if (condition != std::exchange(wmi.given_up_, condition)) --wmi.hanging_;
        SetLastError(ERROR_TIMEOUT);
        return FALSE;
      }
    }
    (void)g_sleep_condition(condition, lock, kSliceMs, flags);
    return TRUE;
  }
};

FakeWmi::FakeWmi() : count_tasks(CountTasks), go_on_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
  // A task of an earlier call on the system's own WMI may still have to leave its apartment, which would be counted
  // here.
  EXPECT_TRUE(WaitUntil([this] { return count_tasks().live == 0; })) << "task of an earlier call still lives";
  g_wmi = this;
  rows[L"Select * from VexaObxWmi_WMNB"] = {{{L"__PATH", Text(L"VexaObxWmi_WMNB.InstanceName=\"100%s\"")}}};
  rows[L"Select * from ATD_STS"] = {{{L"__PATH", Text(L"ATD_STS.InstanceName=\"EC0\"")}}};
  firmware = [](const std::wstring&, const Parameters&) { return WmiProperties(); };
  Patch("CoInitializeEx", FakeWmiHook::Initialize);
  Patch("CoUninitialize", FakeWmiHook::Uninitialize);
  Patch("CoCreateInstance", FakeWmiHook::Create);
  Patch("CoSetProxyBlanket", FakeWmiHook::SetBlanket);
  Patch("GetTickCount64", FakeWmiHook::Clock);
  Patch("SleepConditionVariableSRW", FakeWmiHook::Wait);
  g_sleep_condition = patches_.back()->Original<std::remove_pointer_t<decltype(g_sleep_condition)>>();
}

FakeWmi::~FakeWmi() {
  Unblock();
  EXPECT_TRUE(WaitUntil([this] { return !AnyApartment(); })) << "apartment not left";
  for (const auto& object : objects_) EXPECT_EQ(object->references, 0) << object->kind << " not given back";
  for (const std::string& fault : faults_) ADD_FAILURE() << fault;
  patches_.clear();
  g_wmi = nullptr;
  CloseHandle(go_on_);
}

std::vector<std::string> FakeWmi::TakeCalls() {
  const std::lock_guard lock(mutex_);
  return script.Take();
}

std::vector<DWORD> FakeWmi::TakeWaits() {
  const std::lock_guard lock(mutex_);
  return std::exchange(waits_, {});
}

int FakeWmi::References() {
  const std::lock_guard lock(mutex_);
  int references = 0;
  for (const auto& object : objects_) references += object->references;
  return references;
}

void FakeWmi::ForgetReleased() {
  const std::lock_guard lock(mutex_);
  std::erase_if(objects_, [](const auto& object) { return object->references == 0; });
}

void FakeWmi::Complain(const std::string& fault) {
  const std::lock_guard lock(mutex_);
  faults_.push_back(fault);
}

std::optional<HRESULT> FakeWmi::Enter(const std::string& function, const std::string& text, bool needs_com) {
  std::optional<HRESULT> failure;
  bool hangs = false;
  {
    const std::lock_guard lock(mutex_);
    if (needs_com && apartments_[GetCurrentThreadId()] == 0) faults_.push_back(function + " on a thread without COM");
    if (script.Fails(function, text)) failure = static_cast<HRESULT>(GetLastError());
    hangs = blocked_.contains(function);
    if (fault && !failure) failure = fault(function, &hangs);
    if (hangs) {
      ResetEvent(go_on_);
      ++hanging_;
    }
  }
  if (hangs) WaitForSingleObjectEx(go_on_, INFINITE, FALSE);
  return failure;
}

void FakeWmi::Block(const std::string& function) {
  const std::lock_guard lock(mutex_);
  ResetEvent(go_on_);
  blocked_.insert(function);
}

void FakeWmi::Unblock() {
  {
    const std::lock_guard lock(mutex_);
    blocked_.clear();
    given_up_ = nullptr;
    SetEvent(go_on_);
  }
  EXPECT_TRUE(WaitUntil([this] { return count_tasks().live == 0; })) << "task not counted down";
}

bool FakeWmi::AnyApartment() {
  const std::lock_guard lock(mutex_);
  return std::ranges::any_of(apartments_, [](const auto& apartment) { return apartment.second != 0; });
}

// Long enough that only a fault exceeds it; after one the tests behind it need not wait as long.
bool FakeWmi::WaitUntil(const std::function<bool()>& condition) {
  static int patience_ms = 10000;
  for (int i = 0; i < patience_ms && !condition(); ++i) SleepEx(1, FALSE);
  if (condition()) return true;
  patience_ms = 100;
  return false;
}

}  // namespace vexa::test
