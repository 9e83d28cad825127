// Repeated samples: when the next one is due, and what each prints. Nothing here waits or calls the library.
#ifndef CLIENT_WATCH_H_
#define CLIENT_WATCH_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "client/formats.h"
#include "client/reading.h"

namespace vexahealth {

// When the sample after one that began at `began_ms` begins, on a clock that shows `now_ms` when that one is done. A
// sample that takes longer than the interval delays the next; none are made up for, so they never overlap or pile up.
uint64_t NextStart(uint64_t began_ms, uint64_t now_ms, uint32_t interval_ms);

struct TerminalSize {
  size_t rows;
  size_t columns;
};

struct WatchTarget {
  Format format = Format::kTable;
  bool bare = false;                     // of one reading, its value alone
  std::optional<TerminalSize> terminal;  // standard output is one
};

class WatchPrinter {
 public:
  explicit WatchPrinter(const WatchTarget& target) : target_(target) {}

  // What to print for this sample. On a terminal a table is drawn over the one before; while samples fail, the last
  // good one stays, with a line that says so. Elsewhere every sample is one line (ndjson: one per reading).
  std::string Next(const Report& report);

 private:
  std::string Redraw(const Report& report);

  WatchTarget target_;
  bool first_ = true;
  std::string last_good_;
  std::string last_good_time_;
};

}  // namespace vexahealth

#endif  // CLIENT_WATCH_H_
