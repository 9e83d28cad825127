#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "bench/comparisons.h"
#include "tests/support/arch_value.h"
#include "vexa/lifecycle.h"
#include "wmi/com_apartment.h"

namespace vexa {
namespace {

bool DriverRoute() {
  if (InitializeWinIo() != 1) {
    std::fprintf(stderr, "the library is not ready\n");
    return false;
  }
  const bool kept = CompareDriverRoute();
  ShutdownWinIo();
  return kept;
}

bool FirmwareRoute() {
  const test::ArchValue route(L"ARM64");
  return CompareFirmwareRoute();
}

bool WmiQuery() {
  const ComApartment apartment;
  return CompareWmiQuery();
}

struct Group {
  std::string_view name;
  bool (*compare)();
  bool when_unnamed;
};
constexpr Group kGroups[] = {
    {"driver", DriverRoute, true},    {"wifi", CompareWifiElements, true}, {"trace", CompareTraceLines, true},
    {"wmi", WmiQuery, true},          {"load", CompareLoading, false},     {"client", CompareClientStart, false},
    {"firmware", FirmwareRoute, false},
};

bool Wanted(const Group& group, int count, char** words) {
  return count == 0 ? group.when_unnamed
                    : std::any_of(words, words + count, [&](std::string_view word) { return word == group.name; });
}

}  // namespace
}  // namespace vexa

int main(int argc, char** argv) {
  bool kept = true;
  for (const vexa::Group& group : vexa::kGroups) {
    if (vexa::Wanted(group, argc - 1, argv + 1)) kept &= group.compare();
  }
  return kept ? 0 : 1;
}
