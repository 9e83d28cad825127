// Takes out of a report what tells one machine, or its user, from all others.
#ifndef CLIENT_MASKING_H_
#define CLIENT_MASKING_H_

#include <string_view>

#include "client/reading.h"

namespace vexahealth {

// What stands where something was masked.
inline constexpr std::string_view kMaskedText = "[masked]";

// The note of a reading that was masked.
inline constexpr std::string_view kMaskedNote = "masked: it tells this machine from others";

// True for serial numbers, ids and addresses of the machine or a part of it.
bool IsSerial(const Row& row);

// The report without them. Such a reading becomes kNotCollected, with a note that says so; where its text, or a part of
// it, stands in another reading it is replaced there too. Names of user folders ("C:\Users\name\") are replaced in
// every text.
[[nodiscard]] Report Masked(Report report);

}  // namespace vexahealth

#endif  // CLIENT_MASKING_H_
