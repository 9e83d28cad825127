// COM and WMI behind the import table: scripted rows and firmware methods, recorded calls, a failure at any step.
#ifndef VEXA_TESTS_SUPPORT_FAKE_WMI_H_
#define VEXA_TESTS_SUPPORT_FAKE_WMI_H_

#include <windows.h>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/support/automation_ledger.h"
#include "tests/support/call_script.h"
#include "tests/support/import_patch.h"
#include "tests/support/wmi_value.h"
#include "wmi/bounded_task.h"

namespace vexa::test {

struct FakeObject;

// One at a time, made and ended by the thread whose calls are recorded. At its end every task has ended and everything
// was given back: references, texts and arrays, apartments of all threads.
class FakeWmi {
 public:
  FakeWmi();
  ~FakeWmi();

  // Rows by query; of another query there are none. Both firmware classes have one instance.
  std::map<std::wstring, std::vector<WmiProperties>> rows;

  // What a firmware method answers to its in-parameters; by default nothing.
  using Parameters = std::map<std::wstring, std::wstring>;
  std::function<WmiProperties(const std::wstring& method, const Parameters& in)> firmware;
  std::set<std::wstring> methods_without_parameters{L"ec_get_version"};

  // Rows of the queries that `rows` does not name.
  std::vector<WmiProperties> other_rows;
  // What a property answers that its object does not have; by default it is not found.
  std::function<std::optional<WmiValue>(const std::wstring& name)> other_property;
  // Asked before the script: a failure, or that the call hangs.
  std::function<std::optional<HRESULT>(const std::string& function, bool* hangs)> fault;
  // The library's tasks that have not ended.
  std::function<TaskCounts()> count_tasks;

  // A failing function answers the error as its HRESULT and hands out nothing, also when the HRESULT is a success.
  // Functions, in the order in which a method is called: CoInitializeEx, CoCreateInstance, ConnectServer,
  // CoSetProxyBlanket, ExecQuery, Next, GetObject, GetMethod, SpawnInstance, Put, Get, ExecMethod, Get.
  CallScript script;

  // The calls since the last time, with their arguments. Of the tasks' threads COM's entering and leaving is left out.
  std::vector<std::string> TakeCalls();

  // Every call to the function hangs until Unblock, and the wait for it is over at once.
  void Block(const std::string& function);
  // Lets all hanging calls go on, and waits until all tasks have ended.
  void Unblock();

  // Milliseconds that the thread's waits for tasks asked for, while the clock stands still.
  std::vector<DWORD> TakeWaits();

  int apartments_of_tasks() const { return apartments_of_tasks_; }
  // References to WMI objects that are held now.
  int References();
  // Ends objects that nobody holds any more; until then they are watched.
  void ForgetReleased();

  // For the fakes. ---------------------------------------------------------------------------------------------------

  // Records a call; what it is to answer when it is to fail. `needs_com`: the thread must be in an apartment.
  std::optional<HRESULT> Enter(const std::string& function, const std::string& text, bool needs_com = true);
  // A fault to report at the end; from any thread.
  void Complain(const std::string& fault);
  template <typename Object, typename... Arguments>
  Object* Make(Arguments&&... arguments) {
    auto object = std::make_unique<Object>(*this, std::forward<Arguments>(arguments)...);
    Object* made = object.get();
    const std::lock_guard lock(mutex_);
    objects_.push_back(std::move(object));
    return made;
  }

 private:
  friend struct FakeWmiHook;

  bool WaitUntil(const std::function<bool()>& condition);
  bool AnyApartment();
  template <typename Function>
  void Patch(const char* function, Function* replacement) {
    patches_.push_back(std::make_unique<ImportPatch>(function, replacement));
  }

  AutomationLedger ledger_;
  const DWORD thread_ = GetCurrentThreadId();
  std::mutex mutex_;
  std::vector<std::unique_ptr<FakeObject>> objects_;  // kept until the end, so that use after release shows
  std::map<DWORD, int> apartments_;                   // by thread
  std::set<std::string> blocked_;
  std::vector<std::string> faults_;
  std::vector<DWORD> waits_;
  int apartments_of_tasks_ = 0;
  int hanging_ = 0;                 // calls that began to hang and whose wait is not over
  const void* given_up_ = nullptr;  // the condition whose wait was over last
  HANDLE go_on_ = nullptr;
  std::vector<std::unique_ptr<ImportPatch>> patches_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_FAKE_WMI_H_
