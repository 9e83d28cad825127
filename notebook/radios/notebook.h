// The scenario's radios as one stand-in library in this process sees them, and what it counts.
#ifndef NOTEBOOK_RADIOS_NOTEBOOK_H_
#define NOTEBOOK_RADIOS_NOTEBOOK_H_

#include <windows.h>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "model.h"

namespace radios {

class Notebook {
 public:
  // The counts go to the file of this name in the scenario's folder.
  explicit Notebook(const wchar_t* counts_file);

  // Of the scenario file as it is now (rules and counts begin anew when it has changed); without a readable one, a
  // notebook without radios.
  std::shared_ptr<const Model> Radios();

  // Runs a call while no other thread runs one: counts it, spends the time that the rules give it, and returns their
  // error instead of the call's answer when they give one. The counts are written when it has ended.
  using Answer = std::function<DWORD(const Model& model)>;
  DWORD Run(const char* call, const Answer& answer) { return Run(call, std::nullopt, answer); }
  DWORD Run(const char* call, std::optional<uint32_t> opcode, const Answer& answer);

  // Within a call.
  void Count(const std::string& what, int64_t by = 1) { counts_[what] += by; }
  void Set(const std::string& what, int64_t number) { counts_[what] = number; }

 private:
  std::optional<DWORD> Meet(const char* call, std::optional<uint32_t> opcode);
  void WriteCounts() const;

  std::wstring path_;
  std::wstring counts_path_;
  std::recursive_mutex lock_;
  std::string stamp_;
  std::shared_ptr<const Model> model_;
  std::vector<uint64_t> met_;  // how often each rule was
  std::map<std::string, int64_t> counts_;
};

// The characters of a name in an array of this many; terminated when one is left.
template <size_t kSize>
void CopyName(wchar_t (&target)[kSize], const std::u16string& name) {
  for (size_t i = 0; i < kSize; ++i) target[i] = i < name.size() ? static_cast<wchar_t>(name[i]) : L'\0';
}

inline GUID WindowsGuid(const Guid& guid) {
  GUID converted{guid.first, guid.second, guid.third, {}};
  for (size_t i = 0; i < guid.rest.size(); ++i) converted.Data4[i] = guid.rest[i];
  return converted;
}

}  // namespace radios

#endif  // NOTEBOOK_RADIOS_NOTEBOOK_H_
