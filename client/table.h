// The report as a table for people.
#ifndef CLIENT_TABLE_H_
#define CLIENT_TABLE_H_

#include <span>
#include <string>

#include "client/reading.h"

namespace vexahealth {

// The library's path and route: the first line of every table.
[[nodiscard]] std::string LibraryLine(const LibraryState& library);

// Sections of aligned columns: name, value with unit, and a note, which says why where a value is missing. UTF-8, lines
// end in "\n". told: why nothing was collected stands elsewhere already.
[[nodiscard]] std::string SectionsText(std::span<const Reading> readings, bool told);

[[nodiscard]] std::string TableText(const Report& report);

}  // namespace vexahealth

#endif  // CLIENT_TABLE_H_
