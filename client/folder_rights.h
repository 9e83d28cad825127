// Who may put a file into a folder, from its access-control list. What stands in the library's folder runs with the
// rights of whoever loads it, and the driver there in the kernel.
#ifndef CLIENT_FOLDER_RIGHTS_H_
#define CLIENT_FOLDER_RIGHTS_H_

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vexahealth {

// One entry of the list, in its order.
struct AccessEntry {
  bool allows = true;         // false: denies
  bool inherit_only = false;  // counts for what lies inside, not for the folder
  uint32_t mask = 0;
  std::string sid;  // "S-1-1-0"
};

// The accounts and groups besides the administrators and the system's own that may add, replace or delete files there
// or change the list, each once: well-known groups by their usual names, others by their identifiers. No list at all
// (nothing) lets everyone do everything; an empty one nobody. `administrator`: one more account that is none of them.
[[nodiscard]] std::vector<std::string> OrdinaryWriters(const std::optional<std::vector<AccessEntry>>& entries,
                                                       std::string_view administrator = {});

}  // namespace vexahealth

#endif  // CLIENT_FOLDER_RIGHTS_H_
