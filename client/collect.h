// Takes the readings of the library, its driver, the EC and the battery.
#ifndef CLIENT_COLLECT_H_
#define CLIENT_COLLECT_H_

#include <vector>

#include "client/asker.h"
#include "client/reading.h"

namespace vexahealth {

// One reading per row of kRows. The whole list is asked whatever is wanted, since the readings judge each other; only
// the call that waits is left out when nobody wants it.
[[nodiscard]] std::vector<Reading> Collect(const Context& context);
[[nodiscard]] std::vector<Reading> Collect(const Asker& asker);

}  // namespace vexahealth

#endif  // CLIENT_COLLECT_H_
