// VexaWinIO64.dll for C++23: loaded by its absolute path, started and stopped by scope, and every answer either a value
// or the reason why there is none.
//
// Made by interface/generate.py from interface/exports.json and interface/templates/vexa.hpp: change those.
//
//   auto library = vexa::Library::Load(LR"(C:\Program Files\Vexa\VexaWinIO64.dll)");
//   if (!library) return library.error().code;
//   auto session = library->Start();                                  // InitializeWinIo; its end is ShutdownWinIo
//   if (auto charge = library->BatteryHealthyTable_Rsoc()) std::printf("%u %%\n", *charge);
//   else std::puts(vexa::ReasonName(charge.error()));
//
// A Library may be copied and used from several threads; each export says in its C header which threads may call it and
// how long it may wait. An answer that may be a true reading or a failure (0 of a battery value, for instance) is
// cross-checked by further calls: the pack voltage or temperature and the version of the EC's healthy table.
#ifndef VEXA_VEXA_HPP_
#define VEXA_VEXA_HPP_

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cwctype>
#include <expected>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "vexa.h"

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#endif

namespace vexa {

// Why there is no value.
enum class Reason {
@REASONS@
  kMissingExport,  // this version of the library has no such export
};

constexpr const char* ReasonName(Reason reason) {
  switch (reason) {
@REASON_NAMES@
    case Reason::kMissingExport: return "missing_export";
  }
  return "";
}

template <typename T>
using Answer = std::expected<T, Reason>;

// Texts of the two buffers of WMIGetHDDUsage and WMIGetSSDUsage.
struct DiskUsage {
  std::wstring free_bytes;
  std::wstring serials;
};

// An export as the module gives it; null: the library lacks it.
using AnyFunction = void (*)();

// What is known of an export besides its answers.
struct ExportFacts {
  const char* name;
  uint32_t least_table_version;  // of the EC's healthy table: below it there is no value; 0: no table is needed
  bool on_arm64;                 // ARM64 machines have a source for it
  bool cross_checked;            // an answer that may be a reading or a failure costs further calls
};

// In the order of the names.
inline constexpr std::array<ExportFacts, @COUNT@> kExports = {{
@EXPORTS@
}};

// Null for a name that is no export's.
constexpr const ExportFacts* FindExport(std::string_view name) {
  const auto found = std::ranges::find(kExports, name, &ExportFacts::name);
  return found == kExports.end() ? nullptr : &*found;
}

namespace detail {

struct Reserved {
  uint32_t value;
  Reason reason;
  bool also_reading = false;
};

struct ReservedText {
  std::string_view text;
  Reason reason;
};

enum class Doubt { kNone, kBattery, kVersion };

// Where an export stands in kExports; a name that is not there does not compile.
consteval size_t Place(std::string_view name) {
  size_t place = 0;
  while (name != kExports.at(place).name) ++place;
  return place;
}

struct Functions {
  std::shared_ptr<void> module;
  std::array<AnyFunction, kExports.size()> by_place = {};
  void (*free_text)(void*) = nullptr;  // CoTaskMemFree
};

template <typename Char>
bool SameText(std::basic_string_view<Char> text, std::string_view expected) {
  return std::ranges::equal(text, expected, {}, [](Char c) { return static_cast<uint32_t>(c); },
                            [](char c) { return static_cast<uint32_t>(static_cast<unsigned char>(c)); });
}

template <typename Char>
Answer<std::basic_string<Char>> JudgeText(std::basic_string<Char> text, std::span<const ReservedText> reserved) {
  for (const ReservedText& one : reserved) {
    if (SameText(std::basic_string_view<Char>(text), one.text)) return std::unexpected(one.reason);
  }
  return text;
}

}  // namespace detail

class Library;

// The time between InitializeWinIo and ShutdownWinIo. It keeps the library loaded.
class Session {
 public:
  Session(Session&& other) noexcept : functions_(std::exchange(other.functions_, nullptr)) {}
  Session& operator=(Session&& other) noexcept {
    std::swap(functions_, other.functions_);
    return *this;
  }
  ~Session();

 private:
  friend class Library;
  explicit Session(std::shared_ptr<const detail::Functions> functions) : functions_(std::move(functions)) {}

  std::shared_ptr<const detail::Functions> functions_;
};

class Library {
 public:
  // Resolves an export by its name; null: the library lacks it.
  using Resolve = AnyFunction (*)(void* module, const char* name);

  // Over a module that somebody else loaded; it is let go with the last copy of this object and the last Session.
  static Library Over(std::shared_ptr<void> module, Resolve resolve, void (*free_text)(void*)) {
    auto functions = std::make_shared<detail::Functions>();
    functions->free_text = free_text;
    for (size_t i = 0; i < kExports.size(); ++i) {
      functions->by_place[i] = resolve(module.get(), kExports[i].name);
    }
    functions->module = std::move(module);
    return Library(std::move(functions));
  }

#ifdef _WIN32
  struct LoadError {
    DWORD code;  // of GetLastError; ERROR_BAD_PATHNAME for a path that is not absolute
  };

  // Loads the file at this absolute path. What it needs comes from its own folder and the system's, never from the
  // current folder or the PATH.
  static std::expected<Library, LoadError> Load(const std::wstring& path) {
    const bool drive = path.size() > 3 && std::iswalpha(static_cast<wint_t>(path[0])) && path[1] == L':' &&
                       (path[2] == L'\\' || path[2] == L'/');
    if (!drive && !path.starts_with(LR"(\\)")) return std::unexpected(LoadError{ERROR_BAD_PATHNAME});
    const HMODULE loaded =
        LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (loaded == nullptr) return std::unexpected(LoadError{GetLastError()});
    std::shared_ptr<void> module(loaded, [](void* m) { FreeLibrary(static_cast<HMODULE>(m)); });
    return Over(std::move(module), &FromModule, &FreeTaskMemory);
  }
#endif

  // Makes the library ready for as long as the session lives. Administrator rights and waits: see InitializeWinIo.
  [[nodiscard]] Answer<Session> Start() const {
    const auto initialize = Get<decltype(&::InitializeWinIo)>(detail::Place("InitializeWinIo"));
    if (initialize == nullptr || Get<decltype(&::ShutdownWinIo)>(detail::Place("ShutdownWinIo")) == nullptr) {
      return std::unexpected(Reason::kMissingExport);
    }
    if (initialize() != 1) return std::unexpected(Reason::kRefused);
    return Session(functions_);
  }

  // An export as it stands in its C header, for what the methods below do not tell; null: the library lacks it.
  AnyFunction Find(std::string_view name) const {
    const ExportFacts* facts = FindExport(name);
    return facts == nullptr ? nullptr : functions_->by_place[static_cast<size_t>(facts - kExports.data())];
  }

  // Speeds of all fans, in the order of their indexes; selects each in turn, for all programs.
  Answer<std::vector<Answer<uint32_t>>> HealthyTable_Read_Fan() const {
    const auto function = Get<decltype(&::HealthyTable_Read_Fan)>(detail::Place("HealthyTable_Read_Fan"));
    const auto counts = Get<decltype(&::HealthyTable_FanCounts)>(detail::Place("HealthyTable_FanCounts"));
    if (function == nullptr || counts == nullptr) return std::unexpected(Reason::kMissingExport);
    const uint32_t count = counts();
    if (count == VEXA_NO_ANSWER) return std::unexpected(Reason::kNoAnswer);
    std::vector<uint32_t> slots(VEXA_FAN_SLOTS, VEXA_NO_ANSWER);
    function(slots.data());
    std::vector<Answer<uint32_t>> speeds;
    for (size_t i = 0; i < std::min<size_t>(count, slots.size()); ++i) {
      if (slots[i] == VEXA_NO_ANSWER) {
        speeds.emplace_back(std::unexpected(Reason::kNoAnswer));
      } else if (slots[i] == VEXA_NOT_AVAILABLE) {
        speeds.emplace_back(std::unexpected(Reason::kUnsupported));
      } else {
        speeds.emplace_back(slots[i]);
      }
    }
    return speeds;
  }

@METHODS@
 private:
  friend class Session;

  explicit Library(std::shared_ptr<const detail::Functions> functions) : functions_(std::move(functions)) {}

#ifdef _WIN32
  static AnyFunction FromModule(void* module, const char* name) {
    return reinterpret_cast<AnyFunction>(
        reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name)));
  }

  static void FreeTaskMemory(void* memory) {
    using Free = void(WINAPI*)(void*);
    static const HMODULE ole = LoadLibraryExW(L"ole32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    const auto free = ole == nullptr ? nullptr : reinterpret_cast<Free>(FromModule(ole, "CoTaskMemFree"));
    if (free != nullptr) free(memory);
  }
#endif

  template <typename Function>
  Function Get(size_t place) const {
    return reinterpret_cast<Function>(functions_->by_place[place]);
  }

  // The answer of a plain reading for the cross-check; what is no plain number counts as none.
  uint32_t Ask(size_t place) const {
    const auto read = Get<uint32_t (*)()>(place);
    return read == nullptr ? VEXA_NO_ANSWER : read();
  }

  // Nothing: the doubtful answer is a true reading.
  std::optional<Reason> Doubtful(const ExportFacts& facts, detail::Doubt doubt) const {
    constexpr auto kIsPlain = [](uint32_t answer) {
      return answer != 0 && answer != VEXA_NO_ANSWER && answer != VEXA_NOT_AVAILABLE;
    };
    const size_t voltage_place = detail::Place("BatteryHealthyTable_PackageVoltage");
    const bool ask_battery = doubt == detail::Doubt::kBattery && functions_->by_place[voltage_place] != nullptr;
    const uint32_t voltage = ask_battery ? Ask(voltage_place) : VEXA_NO_ANSWER;
    // A firmware call that failed answers 0 too: the pack's temperature stands in for its voltage.
    const bool answered = kIsPlain(voltage) || (ask_battery && voltage == 0 &&
                                                kIsPlain(Ask(detail::Place("BatteryHealthyTable_Temperature"))));
    if (answered && facts.on_arm64) return std::nullopt;
    const uint32_t version = Ask(detail::Place("BatteryHealthyTable_ReadVersion"));
    // A battery without a version: an ARM64 machine, whose gauge is asked through the firmware.
    if (version == VEXA_NO_ANSWER) return answered ? Reason::kUnsupported : Reason::kNoAnswer;
    if (version < facts.least_table_version) return Reason::kUnsupported;
    if (ask_battery && (voltage == VEXA_NO_ANSWER || voltage == VEXA_NOT_AVAILABLE)) return Reason::kNoAnswer;
    return std::nullopt;
  }

  template <typename Value, typename Function, typename... Arguments>
  Answer<Value> Number(size_t place, std::span<const detail::Reserved> reserved, detail::Doubt doubt,
                       Arguments... arguments) const {
    const auto function = Get<Function>(place);
    if (function == nullptr) return std::unexpected(Reason::kMissingExport);
    const auto answer = static_cast<uint32_t>(function(arguments...));
    for (const detail::Reserved& one : reserved) {
      if (one.value != answer) continue;
      if (!one.also_reading) return std::unexpected(one.reason);
      if (doubt == detail::Doubt::kNone) break;
      if (const std::optional<Reason> reason = Doubtful(kExports[place], doubt)) return std::unexpected(*reason);
      break;
    }
    if constexpr (std::is_same_v<Value, bool>) {
      if (answer > 1) return std::unexpected(Reason::kNoAnswer);  // no flag has such an answer
      return answer != 0;
    } else {
      return static_cast<Value>(answer);
    }
  }

  template <typename Function, typename... Arguments>
  Answer<void> Done(size_t place, std::span<const detail::Reserved> reserved, Arguments... arguments) const {
    const Answer<uint32_t> answer = Number<uint32_t, Function>(place, reserved, detail::Doubt::kNone, arguments...);
    if (!answer) return std::unexpected(answer.error());
    if (*answer != 1) return std::unexpected(Reason::kRefused);
    return {};
  }

  // A text in a buffer of known capacity; it stays empty when the export leaves the buffer as it was.
  template <typename Char, typename Function, typename... Arguments>
  Answer<std::basic_string<Char>> Text(size_t place, size_t capacity, std::span<const detail::Reserved> reserved,
                                       std::span<const detail::ReservedText> texts, Arguments... arguments) const {
    const auto function = Get<Function>(place);
    if (function == nullptr) return std::unexpected(Reason::kMissingExport);
    std::basic_string<Char> text(capacity, Char{});
    if constexpr (std::is_void_v<decltype(function(text.data(), arguments...))>) {
      function(text.data(), arguments...);
    } else {
      const uint32_t answer = function(text.data(), arguments...);
      for (const detail::Reserved& one : reserved) {
        if (one.value == answer) return std::unexpected(one.reason);
      }
    }
    text.resize(std::min(text.find(Char{}), text.size()));
    return detail::JudgeText(std::move(text), texts);
  }

  // A text whose length the export tells when it is given no buffer. What it answers then may be longer, when hardware
  // was plugged in meanwhile, so there is room for twice as much.
  template <typename Function>
  Answer<std::wstring> LongText(size_t place, size_t capacity, std::span<const detail::Reserved> reserved,
                                std::span<const detail::ReservedText> texts, uint32_t com_flag) const {
    const auto function = Get<Function>(place);
    if (function == nullptr) return std::unexpected(Reason::kMissingExport);
    const size_t length = function(nullptr, com_flag);
    return Text<wchar_t, Function>(place, std::max(capacity, 2 * length + 1), reserved, texts, com_flag);
  }

  template <typename Function>
  Answer<DiskUsage> TwoTexts(size_t place, size_t capacity, uint32_t com_flag) const {
    const auto function = Get<Function>(place);
    if (function == nullptr) return std::unexpected(Reason::kMissingExport);
    const size_t room = std::max(capacity, 2 * size_t{function(nullptr, nullptr, com_flag)} + 1);
    std::wstring first(room, L'\0');
    std::wstring second(room, L'\0');
    if (function(first.data(), second.data(), com_flag) == 0) return std::unexpected(Reason::kNoAnswer);
    return DiskUsage{first.c_str(), second.c_str()};
  }

  template <typename Function>
  Answer<std::wstring> Allocated(size_t place, uint8_t com_flag) const {
    const auto function = Get<Function>(place);
    if (function == nullptr) return std::unexpected(Reason::kMissingExport);
    wchar_t* given = nullptr;
    function(&given, com_flag);
    if (given == nullptr) return std::unexpected(Reason::kNoAnswer);
    std::wstring text = given;
    functions_->free_text(given);
    if (text.empty()) return std::unexpected(Reason::kNoAnswer);
    return text;
  }

  template <typename Function>
  Answer<std::string> Returned(size_t place, std::span<const detail::ReservedText> texts) const {
    const auto function = Get<Function>(place);
    if (function == nullptr) return std::unexpected(Reason::kMissingExport);
    const VexaText text = function();
    const std::string_view characters(text.text, sizeof text.text);
    return detail::JudgeText(std::string(characters.substr(0, characters.find('\0'))), texts);
  }

  template <typename Record, typename Function>
  Answer<Record> Filled(size_t place) const {
    const auto function = Get<Function>(place);
    if (function == nullptr) return std::unexpected(Reason::kMissingExport);
    Record record = {};
    if (function(&record) != 1) return std::unexpected(Reason::kNoAnswer);
    return record;
  }

  template <typename Function>
  void Line(size_t place, std::wstring_view text) const {
    const auto function = Get<Function>(place);
    if (function != nullptr) function(static_cast<int32_t>(text.size() * sizeof(wchar_t)), text.data());
  }

  std::shared_ptr<const detail::Functions> functions_;
};

inline Session::~Session() {
  if (functions_ == nullptr) return;
  const auto shutdown =
      reinterpret_cast<decltype(&::ShutdownWinIo)>(functions_->by_place[detail::Place("ShutdownWinIo")]);
  shutdown();
}

}  // namespace vexa

#endif  // VEXA_VEXA_HPP_
