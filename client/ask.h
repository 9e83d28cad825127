// Asks the exports through vexa.hpp, which tells values from reserved answers.
#ifndef CLIENT_ASK_H_
#define CLIENT_ASK_H_

#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "client/reading.h"

namespace vexahealth {

// Turns a text in the system's active code page into UTF-8.
using TextDecoder = std::string (*)(std::string_view);

// Turns a wide text into UTF-8.
using WideDecoder = std::string (*)(std::wstring_view);

// External power as the system sees it.
enum class PowerLine { kUnknown, kOffline, kOnline };

// How the library and the system are reached, and what is wanted of them.
struct Context {
  const vexa::Library* library = nullptr;
  bool ready = false;    // InitializeWinIo answered 1
  bool may_wait = true;  // false: leave out the export that waits for seconds
  Route route = Route::kUnknown;
  TextDecoder decode = nullptr;
  WideDecoder decode_wide = nullptr;
  PowerLine (*power_line)() = nullptr;     // asked on the firmware route, where it must be set
  std::function<bool(const Row&)> wanted;  // unset: every row; others may be asked too where they judge a wanted one
  std::function<void(std::string_view what)> progress;  // told before a call that can be slow; may be unset
};

template <typename Value>
Answer ToldBy(const vexa::Answer<Value>& answer, const Context& context) {
  if (!answer) return std::unexpected(answer.error());
  if constexpr (std::is_same_v<Value, std::string>) {
    return Told{.number = 0, .text = context.decode(*answer)};
  } else if constexpr (std::is_same_v<Value, std::wstring>) {
    return Told{.number = 0, .text = context.decode_wide(*answer)};
  } else {
    return Told{.number = static_cast<uint32_t>(*answer), .text = {}};
  }
}

// Calls a method of vexa::Library; exports that use COM initialise it for the call, the client itself leaves COM alone.
template <auto method>
Answer AskExport(const Context& context) {
  if constexpr (std::is_invocable_v<decltype(method), const vexa::Library&>) {
    return ToldBy((context.library->*method)(), context);
  } else {
    return ToldBy((context.library->*method)(1), context);
  }
}

// Name of an export and how a row asks it.
#define VEXA_EXPORT(name) #name, &AskExport<&vexa::Library::name>

// The same for an export that its family's own code calls.
#define VEXA_OWN_EXPORT(export_name) vexa::FindExport(#export_name)->name, nullptr

}  // namespace vexahealth

#endif  // CLIENT_ASK_H_
