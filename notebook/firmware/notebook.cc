#include "notebook.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <utility>

#include "files.h"
#include "methods.h"
#include "names.h"
#include "scenario/texts.h"
#include "section.h"

namespace firmware {
namespace {

using scenario::Concat;

constexpr wchar_t kSettingsKey[] = L"SOFTWARE\\Vexa\\Notebook";
constexpr wchar_t kDefaultPath[] = L"C:\\vexa-notebook\\firmware.json";
constexpr wchar_t kStateLock[] = L"Global\\vexa-firmware-state";
constexpr wchar_t kReleaseEvent[] = L"Global\\vexa-firmware-release";
constexpr DWORD kLockTimeoutMs = 10000;

struct CloseKept {
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};
// Until this library is unloaded, which COM does after each call that enters and leaves it.
using KeptHandle = std::unique_ptr<void, CloseKept>;

// One process at a time. A process that dies while it holds the lock leaves a whole state behind, as files are replaced
// in one step.
class StateLock {
 public:
  StateLock() {
    static const KeptHandle mutex(CreateMutexW(nullptr, FALSE, kStateLock));
    mutex_ = mutex.get();
    const DWORD wait = WaitForSingleObject(mutex_, kLockTimeoutMs);
    held_ = wait == WAIT_OBJECT_0 || wait == WAIT_ABANDONED;
  }
  ~StateLock() {
    if (held_) ReleaseMutex(mutex_);
  }
  StateLock(const StateLock&) = delete;
  StateLock& operator=(const StateLock&) = delete;

 private:
  HANDLE mutex_;
  bool held_;
};

// Opened once and kept, so that the event exists from the first hang on.
HANDLE ReleaseEvent() {
  static const KeptHandle event(CreateEventW(nullptr, TRUE, FALSE, kReleaseEvent));
  return event.get();
}

std::string Subject(const Exchange& exchange) {
  std::string text(StepName(exchange.step));
  const auto add = [&text](std::string_view separator, std::string_view part) {
    if (!part.empty()) text += Concat(separator, part);
  };
  if (exchange.class_name.empty()) add(" ", exchange.namespace_name);
  add(" ", exchange.class_name);
  add(".", exchange.method);
  add(" ", exchange.property);
  return text;
}

// Steps whose own line in the log tells the result.
bool HasOwnLine(Step step) {
  return step == Step::kConnectServer || step == Step::kExecQuery || step == Step::kExecMethod ||
         step == Step::kSetBlanket;
}

std::string OneLine(std::string text) {
  std::ranges::replace_if(text, [](char c) { return c >= 0 && c < ' '; }, '?');
  return text + "\r\n";
}

}  // namespace

std::string ResultText(HRESULT result) { return scenario::Hex(static_cast<uint32_t>(result), 8); }

std::shared_ptr<const Notebook> Notebook::Current() {
  static std::mutex lock;
  static std::shared_ptr<const Notebook> current;
  static const std::wstring path = ReadRegistry(kSettingsKey, L"Firmware").value_or(kDefaultPath);
  const std::lock_guard guard(lock);
  std::string stamp = FileStamp(path);
  if (!current || current->stamp() != stamp) current = std::make_shared<const Notebook>(path, std::move(stamp));
  return current;
}

Notebook::Notebook(const std::wstring& path, std::string stamp)
    : path_(path), folder_(path.substr(0, path.find_last_of(L"\\/") + 1)), stamp_(std::move(stamp)) {
  ReadScenario();
  if (!model_) return;
  tables_ = FirmwareTables(*model_);
  tables_.insert(tables_.end(), model_->tables.begin(), model_->tables.end());
}

void Notebook::ReadScenario() {
  const std::optional<std::string> text = ReadWhole(path_);
  Faults faults;
  if (text) {
    model_ = ReadFirmwareScenario(*text, faults);
  } else {
    faults.Add(0, "cannot be read");
  }
  for (const scenario::Fault& fault : faults.List()) {
    Log(Concat("fault ", Narrow(path_), ":", fault.line, ": ", fault.message));
  }
}

bool Notebook::HasNamespace(std::string_view name) const {
  return std::ranges::any_of(tables_, [name](const Table& table) { return table.namespace_name == name; });
}

const Table* Notebook::FindTable(std::string_view namespace_name, std::string_view class_name) const {
  const auto found = std::ranges::find_if(tables_, [&](const Table& table) {
    return table.namespace_name == namespace_name && SameName(table.shape->name, class_name);
  });
  return found == tables_.end() ? nullptr : &*found;
}

Effects Notebook::Look(const Exchange& exchange) const {
  Effects effects;
  if (!model_ || !AnyMatches(model_->rules, exchange)) return effects;
  Change([&](State& state) {
    effects = ApplyRules(model_->rules, exchange, state.rules);
    if (effects.hang) return "hang " + Subject(exchange);
    if (!effects.fail || HasOwnLine(exchange.step)) return std::string();
    return Concat("fail ", Subject(exchange), " -> ", ResultText(static_cast<HRESULT>(*effects.fail)));
  });
  return effects;
}

bool Notebook::Elapse(const Exchange& exchange, Effects& effects, DWORD limit_ms) const {
  if (effects.delay_ms) {
    const DWORD spent = std::min<DWORD>(*effects.delay_ms, limit_ms);
    Sleep(spent);
    *effects.delay_ms -= spent;
    if (*effects.delay_ms != 0) return false;
    effects.delay_ms.reset();
    if (limit_ms != INFINITE) limit_ms -= spent;
  }
  if (effects.hang) {
    if (WaitForSingleObject(ReleaseEvent(), limit_ms) == WAIT_TIMEOUT) return false;
    effects.hang = false;
    Log("released " + Subject(exchange));
  }
  return true;
}

std::optional<HRESULT> Notebook::Meet(const Exchange& exchange, Effects& effects) const {
  effects = Look(exchange);
  Elapse(exchange, effects, INFINITE);
  if (!effects.fail) return std::nullopt;
  return static_cast<HRESULT>(*effects.fail);
}

std::optional<HRESULT> Notebook::Meet(const Exchange& exchange) const {
  Effects effects;
  return Meet(exchange, effects);
}

void Notebook::Change(const std::function<std::string(State&)>& change) const {
  const std::wstring path = folder_ + L"firmware-state.json";
  const StateLock lock;
  const State before = StateFromJson(ReadWhole(path).value_or(""), stamp_);
  State state = before;
  const std::string line = change(state);
  {
    const std::lock_guard guard(counters_lock_);
    for (const auto& [what, count] : std::exchange(counters_, {})) state.counters[what] += count;
  }
  if (state != before) WriteWhole(path, StateToJson(state));
  if (!line.empty() && model_ && model_->log) AppendTo(folder_ + L"firmware.log", OneLine(line));
}

void Notebook::Count(const std::string& what) const {
  const std::lock_guard guard(counters_lock_);
  ++counters_[what];
}

void Notebook::StoreCounts() const {
  {
    const std::lock_guard guard(counters_lock_);
    if (counters_.empty()) return;
  }
  Change([](State&) { return std::string(); });
}

void Notebook::Log(const std::string& line) const {
  if (model_ && !model_->log) return;
  const StateLock lock;
  AppendTo(folder_ + L"firmware.log", OneLine(line));
}

}  // namespace firmware
