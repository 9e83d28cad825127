// Asks single rows and decides about their answers by the rules of the machine's route.
#ifndef CLIENT_ASKER_H_
#define CLIENT_ASKER_H_

#include <functional>
#include <optional>
#include <string_view>

#include "client/call.h"
#include "client/rules.h"

namespace vexahealth {

// External power as the system sees it.
enum class PowerLine { kUnknown, kOffline, kOnline };

// How the library and the system are reached, and what is wanted of them.
struct Context {
  Resolver resolve;
  bool ready = false;    // InitializeWinIo answered 1
  bool may_wait = true;  // false: leave out the export that waits for seconds
  Route route = Route::kUnknown;
  TextDecoder decode = nullptr;
  WideDecoder decode_wide = nullptr;
  void (*free_text)(wchar_t*) = nullptr;   // CoTaskMemFree
  PowerLine (*power_line)() = nullptr;     // asked on the firmware route, where it must be set
  std::function<bool(const Row&)> wanted;  // unset: every row; others may be asked too where they judge a wanted one
  std::function<void(std::string_view what)> progress;  // told before a call that can be slow; may be unset
};

// Besides the rows' own calls it asks, on the driver route, for the table's version at the start and for the pack
// voltage after each doubtful answer; on the firmware route for the pack voltage, or else the temperature, at both
// points, and then for the doubtful value once more.
class Asker {
 public:
  explicit Asker(const Context& context);

  const Context& context() const { return context_; }
  bool FirmwareRoute() const { return context_.route == Route::kFirmware; }

  // The reading of a row that needs no call, because what it depends on is missing.
  std::optional<Reading> WithoutCall(const Row& row) const;

  Reading Ask(const Row& row) const;

  // The bare answer. No rule is applied.
  Answer CallRow(const Row& row) const;

 private:
  Answer CallKey(std::string_view key) const;
  bool GaugeAnswers() const;
  CrossCheck CrossCheckNow(const Row& row) const;

  const Context& context_;
  Circumstances now_;
};

}  // namespace vexahealth

#endif  // CLIENT_ASKER_H_
