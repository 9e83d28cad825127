#include "com.h"

#include <algorithm>
#include <array>

namespace firmware {
namespace {

constexpr std::string_view kNames[] = {"IClassFactory", "IWbemLocator", "IWbemServices", "IEnumWbemClassObject",
                                       "IWbemClassObject"};

std::array<std::atomic<LONG>, std::size(kNames)> counts;

}  // namespace

void CountObject(ObjectKind kind, LONG change) { counts[static_cast<size_t>(kind)] += change; }

LONG LiveObjects() {
  LONG sum = 0;
  for (const std::atomic<LONG>& count : counts) sum += count;
  return sum;
}

LONG LiveObjectsOf(std::string_view interface_name) {
  const auto found = std::ranges::find(kNames, interface_name);
  return found == std::end(kNames) ? -1 : counts[static_cast<size_t>(found - std::begin(kNames))].load();
}

}  // namespace firmware
