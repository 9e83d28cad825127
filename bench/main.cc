#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "bench/driver_route.h"
#include "bench/wifi_elements.h"
#include "bench/wmi_query.h"
#include "vexa/lifecycle.h"
#include "wmi/com_apartment.h"

int main(int argc, char** argv) {
  const auto wanted = [&](std::string_view name) {
    return argc < 2 || std::any_of(argv + 1, argv + argc, [name](std::string_view word) { return word == name; });
  };
  bool kept = true;
  if (wanted("driver")) {
    if (InitializeWinIo() != 1) {
      std::fprintf(stderr, "the library is not ready\n");
      return 1;
    }
    kept &= vexa::CompareDriverRoute();
    ShutdownWinIo();
  }
  if (wanted("wifi")) kept &= vexa::CompareWifiElements();
  if (wanted("wmi")) {
    const vexa::ComApartment apartment;
    kept &= vexa::CompareWmiQuery();
  }
  return kept ? 0 : 1;
}
