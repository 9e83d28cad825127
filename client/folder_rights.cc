#include "client/folder_rights.h"

#include <algorithm>
#include <iterator>
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

// SYSTEM, the services' accounts, and the place holders for the creator and the owner.
constexpr std::string_view kTrusted[] = {"S-1-5-18", "S-1-5-19", "S-1-5-20", "S-1-5-32-544",
                                         "S-1-3-0",  "S-1-3-1",  "S-1-3-4"};
constexpr std::string_view kServices = "S-1-5-80-";  // TrustedInstaller is one
constexpr std::string_view kAccounts = "S-1-5-21-";  // of a machine or a domain
// The built-in administrator and the administrators of a domain, its schema and its forest.
constexpr std::string_view kAdministrators[] = {"-500", "-512", "-518", "-519"};

bool IsTrusted(std::string_view sid) {
  const bool known = std::ranges::find(kTrusted, sid) != std::end(kTrusted);
  return known || sid.starts_with(kServices) ||
         (sid.starts_with(kAccounts) &&
          std::ranges::any_of(kAdministrators, [sid](std::string_view end) { return sid.ends_with(end); }));
}

std::string NameOf(const std::string& sid) {
  const auto group = std::ranges::find(kOrdinary, sid, &Group::sid);
  return group == std::end(kOrdinary) ? sid : std::string(group->name);
}

// What is left to the account after the entries before denied theirs.
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

std::vector<std::string> OrdinaryWriters(const std::optional<std::vector<AccessEntry>>& entries,
                                         std::string_view administrator) {
  if (!entries) return {std::string(kOrdinary[0].name)};
  std::vector<std::string> writers;
  for (const AccessEntry& entry : *entries) {
    if (IsTrusted(entry.sid) || entry.sid == administrator || !MayWrite(*entries, entry.sid)) continue;
    const std::string name = NameOf(entry.sid);
    if (std::ranges::find(writers, name) == writers.end()) writers.push_back(name);
  }
  return writers;
}

}  // namespace vexahealth
