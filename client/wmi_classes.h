// Looks whether classes exist in ROOT\WMI.
#ifndef CLIENT_WMI_CLASSES_H_
#define CLIENT_WMI_CLASSES_H_

#include <span>
#include <string_view>
#include <vector>

#include "client/doctor.h"

namespace vexahealth {

// One answer for each name, which must be ASCII. WMI itself bounds the wait for the connection (2 minutes).
[[nodiscard]] std::vector<WmiClassFacts> LookForWmiClasses(std::span<const std::string_view> names);

}  // namespace vexahealth

#endif  // CLIENT_WMI_CLASSES_H_
