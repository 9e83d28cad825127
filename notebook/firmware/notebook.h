// The simulated notebook as this process sees it: the scenario, what the firmware remembers, and the log.
#ifndef NOTEBOOK_FIRMWARE_NOTEBOOK_H_
#define NOTEBOOK_FIRMWARE_NOTEBOOK_H_

#include <windows.h>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model.h"
#include "rules.h"
#include "state.h"

namespace firmware {

// One reading of the scenario file. Objects keep the one that they were made under.
class Notebook {
 public:
  // The notebook of the scenario file as it is now; the same object as long as the file does not change.
  static std::shared_ptr<const Notebook> Current();

  Notebook(const std::wstring& path, std::string stamp);

  // Whether the scenario could be read; without it only other namespaces than the firmware's answer.
  bool Good() const { return model_.has_value(); }
  const Model& model() const { return *model_; }

  // Tables of the scenario and of the firmware itself.
  bool HasNamespace(std::string_view name) const;
  const Table* FindTable(std::string_view namespace_name, std::string_view class_name) const;

  // Counts the exchange for the rules and tells what they do to it.
  Effects Look(const Exchange& exchange) const;

  // Spends the time that the effects cost, at most `limit_ms`; false when some is left.
  bool Elapse(const Exchange& exchange, Effects& effects, DWORD limit_ms) const;

  // Both, without limit. The result of a step that is to fail.
  std::optional<HRESULT> Meet(const Exchange& exchange, Effects& effects) const;
  std::optional<HRESULT> Meet(const Exchange& exchange) const;

  // Lets `change` work on what the firmware remembers while no other process does. The text it returns is a line of the
  // log.
  void Change(const std::function<std::string(State&)>& change) const;

  // Counts something. Stored with the next change, or by StoreCounts().
  void Count(const std::string& what) const;
  void StoreCounts() const;

  void Log(const std::string& line) const;
  const std::string& stamp() const { return stamp_; }

 private:
  void ReadScenario();

  std::wstring path_;
  std::wstring folder_;  // with the last backslash
  std::string stamp_;
  std::optional<Model> model_;
  std::vector<Table> tables_;
  mutable std::mutex counters_lock_;
  mutable std::map<std::string, uint64_t> counters_{};  // not stored yet
};

// "0x80041001"
std::string ResultText(HRESULT result);

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_NOTEBOOK_H_
