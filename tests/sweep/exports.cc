#include "tests/sweep/exports.h"

#include <objbase.h>

#include <algorithm>
#include <utility>

#include "tests/support/call_script.h"

namespace vexa::test {
std::string Describe(const Answer& answer) {
  std::string text = answer.has_number ? "0x" + Hex(answer.number) : "";
  for (const std::string& one : answer.texts) text += " \"" + one + "\"";
  for (const std::string& fault : answer.faults) text += " [" + fault + "]";
  return text;
}

void Arguments::TakeBuffers(Answer& answer) {
  for (const Buffer& buffer : buffers_) {
    const std::string_view bytes(buffer.memory->data(), buffer.size);
    if (!buffer.memory->IsUntouchedAround()) answer.faults.emplace_back("written outside of the buffer");
    const std::string_view behind = bytes.substr(buffer.documented);
    if (std::ranges::any_of(behind, [](char byte) { return !GuardedBuffer::IsFill(byte); })) {
      answer.faults.emplace_back("written behind the documented capacity");
    }
    if (buffer.memory->IsUntouched()) {
      answer.texts.emplace_back(kUntouched);
    } else if (buffer.kind == Kind::kWide) {
      const auto* text = reinterpret_cast<const wchar_t*>(bytes.data());
      const size_t length = wcsnlen(text, buffer.size / sizeof(wchar_t));
      if (length == buffer.size / sizeof(wchar_t)) answer.faults.emplace_back("not terminated");
      answer.texts.push_back(length == buffer.size / sizeof(wchar_t) ? "" : vexa::test::Narrow(text));
    } else if (buffer.kind == Kind::kNarrow) {
      const size_t length = strnlen(bytes.data(), bytes.size());
      if (length == bytes.size()) answer.faults.emplace_back("not terminated");
      answer.texts.emplace_back(bytes.substr(0, length));
    } else {
      answer.texts.emplace_back(bytes);
    }
  }
  if (allocated_ != nullptr) answer.texts.push_back(vexa::test::Narrow(allocated_));
  CoTaskMemFree(std::exchange(allocated_, nullptr));
}

#define VEXA_EXPORT(function, arguments, ...)                                                     \
  {#function,                                                                                     \
   [](FARPROC address, [[maybe_unused]] Arguments& a) {                                           \
     const auto call = reinterpret_cast<decltype(&::function)>(reinterpret_cast<void*>(address)); \
     return a.Take([&] { return call arguments; });                                               \
   },                                                                                             \
   __VA_ARGS__},

const std::vector<Export>& Exports() {
  static const std::vector<Export> exports = {
#include "tests/sweep/exports.inc"
  };
  return exports;
}

}  // namespace vexa::test
