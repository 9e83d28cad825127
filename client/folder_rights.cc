#include "client/folder_rights.h"

#include <algorithm>
#include <string_view>

namespace vexahealth {
namespace {

struct Group {
  std::string_view sid;
  std::string_view name;
};

// Well-known security identifiers.
constexpr Group kOrdinary[] = {{"S-1-1-0", "Everyone"},        {"S-1-5-11", "Authenticated Users"},
                               {"S-1-5-32-545", "Users"},      {"S-1-5-4", "INTERACTIVE"},
                               {"S-1-5-7", "ANONYMOUS LOGON"}, {"S-1-5-32-546", "Guests"}};

// FILE_ADD_FILE, FILE_ADD_SUBDIRECTORY, FILE_DELETE_CHILD, DELETE, WRITE_DAC, WRITE_OWNER, GENERIC_ALL, GENERIC_WRITE.
constexpr uint32_t kDangerous =
    0x00000002 | 0x00000004 | 0x00000040 | 0x00010000 | 0x00040000 | 0x00080000 | 0x10000000 | 0x40000000;

// What is left to the group after the entries before denied theirs.
bool MayWrite(const std::vector<AccessEntry>& entries, std::string_view sid) {
  uint32_t denied = 0;
  for (const AccessEntry& entry : entries) {
    if (entry.inherit_only || entry.sid != sid) continue;
    if (!entry.allows) denied |= entry.mask;
    if (entry.allows && (entry.mask & kDangerous & ~denied) != 0) return true;
  }
  return false;
}

}  // namespace

std::vector<std::string> OrdinaryWriters(const std::optional<std::vector<AccessEntry>>& entries) {
  if (!entries) return {std::string(kOrdinary[0].name)};
  std::vector<std::string> writers;
  for (const Group& group : kOrdinary) {
    if (MayWrite(*entries, group.sid)) writers.emplace_back(group.name);
  }
  return writers;
}

}  // namespace vexahealth
