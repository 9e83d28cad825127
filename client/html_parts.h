// Pieces that the sections of the HTML report have in common.
#ifndef CLIENT_HTML_PARTS_H_
#define CLIENT_HTML_PARTS_H_

#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "client/reading.h"

namespace vexahealth {

// <section id="..."> with its heading.
std::string SectionBlock(std::string_view id, std::string_view title, std::string_view content);

// A large number with its unit and a label below it; a missing value says why.
std::string Tile(const Reading& reading);
std::string Tiles(std::span<const Reading> readings, std::initializer_list<std::string_view> keys);

// The readings of a section that have a value as a table of two columns, and below it those that have none, by their
// reasons. Parts of other readings, and those that `leave_out` names, are left out.
std::string ReadingsTable(std::span<const Reading> readings, Section section, std::string_view title = {},
                          const std::function<bool(const Row&)>& leave_out = {});

// The reasons of missing values, each once, with the labels that it is the reason for.
std::string MissingList(const std::vector<const Reading*>& missing);

}  // namespace vexahealth

#endif  // CLIENT_HTML_PARTS_H_
