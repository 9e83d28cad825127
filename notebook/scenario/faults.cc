#include "faults.h"

#include <algorithm>
#include <utility>

namespace scenario {

void Faults::Add(int line, std::string message) {
  const auto place = std::ranges::upper_bound(faults_, line, {}, &Fault::line);
  faults_.insert(place, {line, std::move(message)});
}

}  // namespace scenario
