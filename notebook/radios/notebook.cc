#include "notebook.h"

#include "firmware/files.h"
#include "scenario/texts.h"
#include "section.h"

namespace radios {
namespace {

using scenario::Concat;

constexpr wchar_t kSettingsKey[] = L"SOFTWARE\\Vexa\\Notebook";
constexpr wchar_t kDefaultPath[] = L"C:\\vexa-notebook\\radios.json";

std::shared_ptr<const Model> ReadModel(const std::wstring& path, const std::wstring& log_path) {
  Faults faults;
  std::optional<Model> model;
  if (const std::optional<std::string> text = firmware::ReadWhole(path)) {
    model = ReadRadiosScenario(*text, faults);
  } else {
    faults.Add(0, "cannot be read");
  }
  for (const scenario::Fault& fault : faults.List()) {
    firmware::AppendTo(log_path,
                       Concat("fault ", firmware::Narrow(path), ":", fault.line, ": ", fault.message, "\r\n"));
  }
  return std::make_shared<const Model>(std::move(model).value_or(Model{}));
}

}  // namespace

Notebook::Notebook(const wchar_t* counts_file)
    : path_(firmware::ReadRegistry(kSettingsKey, L"Radios").value_or(kDefaultPath)),
      counts_path_(path_.substr(0, path_.find_last_of(L"\\/") + 1) + counts_file) {}

std::shared_ptr<const Model> Notebook::Radios() {
  const std::lock_guard guard(lock_);
  std::string stamp = firmware::FileStamp(path_);
  if (!model_ || stamp != stamp_) {
    stamp_ = std::move(stamp);
    model_ = ReadModel(path_, path_.substr(0, path_.find_last_of(L"\\/") + 1) + L"radios.log");
    met_.assign(model_->rules.size(), 0);
    counts_.clear();
  }
  return model_;
}

DWORD Notebook::Run(const char* call, std::optional<uint32_t> opcode, const Answer& answer) {
  const std::lock_guard guard(lock_);
  const std::shared_ptr<const Model> model = Radios();
  Count(call);
  const std::optional<DWORD> failure = Meet(call, opcode);
  const DWORD result = failure ? *failure : answer(*model);
  WriteCounts();
  return result;
}

// Of two errors that of the earlier rule wins; times add up.
std::optional<DWORD> Notebook::Meet(const char* call, std::optional<uint32_t> opcode) {
  std::optional<DWORD> failure;
  for (size_t i = 0; i < model_->rules.size(); ++i) {
    const Rule& rule = model_->rules[i];
    if (rule.call != call || (rule.opcode && rule.opcode != opcode)) continue;
    const uint64_t met = ++met_[i];
    if (met < rule.first || met > rule.last) continue;
    if (rule.delay_ms != 0) Sleep(rule.delay_ms);
    if (!failure && rule.fail) failure = *rule.fail;
  }
  return failure;
}

void Notebook::WriteCounts() const {
  std::string text = Concat("{\n \"process\": ", GetCurrentProcessId());
  for (const auto& [what, count] : counts_) text += Concat(",\n \"", what, "\": ", count);
  firmware::WriteWhole(counts_path_, text + "\n}\n");
}

}  // namespace radios
