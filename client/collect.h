// Takes the readings: calls the exports in the order of the list and lets the rules decide.
#ifndef CLIENT_COLLECT_H_
#define CLIENT_COLLECT_H_

#include <string>
#include <string_view>
#include <vector>

#include "client/reading.h"

namespace vexahealth {

// Turns a text in the system's active code page into UTF-8.
using TextDecoder = std::string (*)(std::string_view);

struct CollectOptions {
  bool ready = false;    // InitializeWinIo answered 1
  bool may_wait = true;  // false: leave out the export that waits for seconds
  Route route = Route::kUnknown;
  TextDecoder decode = nullptr;
};

// One reading per row. Besides the rows' own calls it asks for the table's version at the start and for the
// pack voltage after each doubtful answer.
[[nodiscard]] std::vector<Reading> Collect(const RowExports& exports, const CollectOptions& options);

}  // namespace vexahealth

#endif  // CLIENT_COLLECT_H_
