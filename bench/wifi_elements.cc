// What reading a beacon's greatest rate costs beside one plain pass over its elements.
#include <cstdint>
#include <cstdio>
#include <vector>

#include "bench/comparisons.h"
#include "bench/paired.h"
#include "radio/max_rate.h"
#include "tests/support/beacon.h"

namespace {

using namespace vexa::test::beacon;

// What an access point of 5 GHz with HE sends, with the elements that tell nothing about rates.
const std::vector<uint8_t> kBeacon = [] {
  const ByteText text = Ssid("reading-room") + Rates() + Element(5, Zeros(4)) + Element(7, Zeros(18)) +
                        Element(11, Zeros(5)) + Element(48, Zeros(20)) + Element(70, Zeros(5)) +
                        Ht(kHt40, {0xFF, 0xFF}) + Ht40() + Element(74, Zeros(14)) + Element(127, Zeros(10)) +
                        Vht(kVht160, 0xFFFA) + VhtOperation(1, 42, 50) + Element(195, Zeros(5)) +
                        Element(255, "\x24" + Zeros(9)) + He(kHe160, {0xFFFA, 0xFFFA}) +
                        Element(255, "\x26" + Zeros(13)) + Element(255, "\x27" + Zeros(8)) + Vendor(Zeros(19)) +
                        Vendor(Zeros(2)) + Element(221, Zeros(24)) + Element(221, Zeros(40)) + Element(221, Zeros(7));
  return std::vector<uint8_t>(text.begin(), text.end());
}();

}  // namespace

namespace vexa {
namespace {

volatile size_t g_sink;

void LibraryRate() { g_sink = MaxRateMbps(kBeacon); }

void PlainPass() {
  const uint8_t* bytes = kBeacon.data();
  const size_t size = kBeacon.size();
  size_t lengths = 0;
  for (size_t at = 0; at + 2 <= size; at += 2 + bytes[at + 1]) lengths += bytes[at + 1];
  g_sink = lengths;
}

}  // namespace

bool CompareWifiElements() {
  std::printf("beacon of %zu bytes, %u Mbit/s\n", kBeacon.size(), MaxRateMbps(kBeacon));
  return Compare({.name = "MaxRateMbps / sum of element lengths",
                  .library = LibraryRate,
                  .bare = PlainPass,
                  .limit = 5,
                  .pairs = 600,
                  .calls_per_block = 20000,
                  .may_allocate = false});
}

}  // namespace vexa
