// The report as a table for people.
#ifndef CLIENT_TABLE_H_
#define CLIENT_TABLE_H_

#include <string>

#include "client/reading.h"

namespace vexahealth {

// Sections of aligned columns: name, value with unit, and a note, which says why where a value is missing.
// UTF-8, lines end in "\n".
[[nodiscard]] std::string TableText(const Report& report);

}  // namespace vexahealth

#endif  // CLIENT_TABLE_H_
