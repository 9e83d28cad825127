// The greatest rate of an access point, by what its beacon tells.
#ifndef VEXA_RADIO_MAX_RATE_H_
#define VEXA_RADIO_MAX_RATE_H_

#include <cstdint>

#include "radio/elements.h"

namespace vexa {

// In Mbit/s, cut to a whole number: the largest of what it can receive by HT, VHT and HE with 1 to 4 streams at the
// width that it operates at. 0 when the elements tell of none of them.
[[nodiscard]] uint32_t MaxRateMbps(Bytes elements) noexcept;

}  // namespace vexa

#endif  // VEXA_RADIO_MAX_RATE_H_
