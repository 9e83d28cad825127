// Every export with a call by typical arguments, and what the catalogue allows it to answer.
#ifndef VEXA_TESTS_SWEEP_EXPORTS_H_
#define VEXA_TESTS_SWEEP_EXPORTS_H_

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "tests/support/guarded_buffer.h"
#include "vexa/vexa.h"

namespace vexa::test {

// In place of the text of a buffer that was left as it was.
inline constexpr char kUntouched[] = "(untouched)";

struct Answer {
  bool has_number = false;
  uint32_t number = 0;
  std::vector<std::string> texts;   // the caller's buffers as bytes or as UTF-8; kUntouched
  std::vector<std::string> faults;  // not terminated, written outside of the buffer

  bool operator==(const Answer&) const = default;
};
std::string Describe(const Answer& answer);

// How a caller provides buffers.
struct Layout {
  size_t extra = 0;  // units beyond the documented capacity
  GuardedBuffer::At at = GuardedBuffer::At::kEnd;
  bool null = false;  // no buffers at all
};

// The arguments of one call: every buffer has a page on each side that can't be touched.
class Arguments {
 public:
  // What to pass for a text argument, by the argument's name.
  using TextSource = std::function<const wchar_t*(std::string_view name)>;
  explicit Arguments(TextSource texts, Layout layout = {}) : texts_(std::move(texts)), layout_(layout) {}

  char* Narrow(size_t capacity) { return Add<char>(capacity, Kind::kNarrow); }
  wchar_t* Wide(size_t capacity) { return Add<wchar_t>(capacity, Kind::kWide); }
  uint32_t* Slots(size_t count) { return Add<uint32_t>(count, Kind::kBytes); }
  VexaPdIcPartNumber* Record() { return Add<VexaPdIcPartNumber>(1, Kind::kBytes); }
  wchar_t** Allocated() { return layout_.null ? nullptr : &allocated_; }
  const wchar_t* Text(std::string_view name) { return texts_(name); }

  // Carries the call out, and takes what it answered.
  template <typename Call>
  Answer Take(Call&& call) {
    Answer answer;
    if constexpr (std::is_void_v<std::invoke_result_t<Call>>) {
      call();
    } else if constexpr (std::is_same_v<std::invoke_result_t<Call>, VexaText>) {
      const VexaText text = call();
      answer.texts.emplace_back(text.text, strnlen(text.text, sizeof text.text));
      if (answer.texts[0].size() == sizeof text.text) answer.faults.emplace_back("not terminated");
    } else {
      answer.has_number = true;
      answer.number = static_cast<uint32_t>(call());
    }
    TakeBuffers(answer);
    return answer;
  }

 private:
  enum class Kind { kNarrow, kWide, kBytes };
  struct Buffer {
    std::unique_ptr<GuardedBuffer> memory;
    size_t size, documented;
    Kind kind;
  };
  template <typename Unit>
  Unit* Add(size_t count, Kind kind) {
    if (layout_.null) return nullptr;
    const size_t size = (count + layout_.extra) * sizeof(Unit);
    buffers_.push_back({std::make_unique<GuardedBuffer>(size, layout_.at), size, count * sizeof(Unit), kind});
    return reinterpret_cast<Unit*>(buffers_.back().memory->data());
  }
  void TakeBuffers(Answer& answer);

  TextSource texts_;
  Layout layout_;
  std::vector<Buffer> buffers_;
  wchar_t* allocated_ = nullptr;
};

struct ReservedNumber {
  uint32_t value;
  std::string_view machine;  // "x64" or "arm64"; empty: both
};

// What an answer looks like of which only a part could be read.
struct PartialAnswer {
  std::string_view as;
  uint32_t value;
  std::string_view text;
  std::string_view machine;  // empty: both
};

struct Export {
  const char* name;
  Answer (*call)(FARPROC function, Arguments& a);
  std::string_view family, kind, threads, effect;
  uint32_t wait_ms;  // at most, of the library's own waits
  uint8_t least_table_version;
  std::string_view routes[2];  // by machine: x64, arm64
  std::vector<ReservedNumber> reserved;
  std::vector<std::string_view> reserved_texts;
  std::vector<PartialAnswer> failing;
};

const std::vector<Export>& Exports();

}  // namespace vexa::test

#endif  // VEXA_TESTS_SWEEP_EXPORTS_H_
