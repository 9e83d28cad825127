#include <windows.h>

#include <cstdio>

#include "bench/driver_route.h"
#include "bench/wifi_elements.h"
#include "bench/wmi_query.h"
#include "vexa/lifecycle.h"
#include "wmi/com_apartment.h"

int main() {
  if (InitializeWinIo() != 1) {
    std::fprintf(stderr, "the library is not ready\n");
    return 1;
  }
  const bool driver_route = vexa::CompareDriverRoute();
  ShutdownWinIo();
  const bool wifi_elements = vexa::CompareWifiElements();
  const vexa::ComApartment apartment;
  const bool wmi_query = vexa::CompareWmiQuery();
  return driver_route && wifi_elements && wmi_query ? 0 : 1;
}
