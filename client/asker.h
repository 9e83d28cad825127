// Asks single rows and decides about their answers by the rules of the machine's route.
#ifndef CLIENT_ASKER_H_
#define CLIENT_ASKER_H_

#include <optional>
#include <string_view>

#include "client/ask.h"
#include "client/rules.h"

namespace vexahealth {

// Besides the rows' own calls it asks at the start, on the driver route for the table's version, on the firmware route
// for the pack voltage, or else the temperature.
class Asker {
 public:
  explicit Asker(const Context& context);

  const Context& context() const { return context_; }
  bool FirmwareRoute() const { return context_.route == Route::kFirmware; }

  // The reading of a row that needs no call, because what it depends on is missing.
  std::optional<Reading> WithoutCall(const Row& row) const { return DecideWithoutCall(row, now_); }

  Reading Ask(const Row& row) const;

 private:
  const Context& context_;
  Circumstances now_;
};

}  // namespace vexahealth

#endif  // CLIENT_ASKER_H_
