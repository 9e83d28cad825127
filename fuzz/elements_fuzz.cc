// Information elements and the rate that follows from them.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "radio/max_rate.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // Four streams of HE at 160 MHz.
  constexpr uint32_t kGreatestRateMbps = 4804;
  if (vexa::MaxRateMbps({data, size}) > kGreatestRateMbps) std::abort();

  // The walker ends, steps over each element exactly, and stays inside.
  size_t walked = 0;
  vexa::ElementWalker walker({data, size});
  while (const auto element = walker.Next()) {
    if (element->body.data() != data + walked + 2 || element->body.size() != data[walked + 1]) std::abort();
    walked += 2 + element->body.size();
  }
  if (walked > size) std::abort();
  return 0;
}
