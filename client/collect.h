// Takes the readings: calls the exports in the order of the list and lets the rules decide.
#ifndef CLIENT_COLLECT_H_
#define CLIENT_COLLECT_H_

#include <vector>

#include "client/call.h"
#include "client/reading.h"

namespace vexahealth {

// External power as the system sees it.
enum class PowerLine { kUnknown, kOffline, kOnline };

struct CollectOptions {
  bool ready = false;    // InitializeWinIo answered 1
  bool may_wait = true;  // false: leave out the export that waits for seconds
  Route route = Route::kUnknown;
  TextDecoder decode = nullptr;
  PowerLine (*power_line)() = nullptr;  // asked on the firmware route, where it must be set
};

// One reading per row. Besides the rows' own calls it asks, on the driver route, for the table's version at the start
// and for the pack voltage after each doubtful answer; on the firmware route for the pack voltage, or else the
// temperature, at both points, and then for the doubtful value once more.
[[nodiscard]] std::vector<Reading> Collect(const RowExports& exports, const CollectOptions& options);

}  // namespace vexahealth

#endif  // CLIENT_COLLECT_H_
