// Pieces that the JSON documents have in common. Everything in them is well-formed UTF-8.
#ifndef CLIENT_JSON_PARTS_H_
#define CLIENT_JSON_PARTS_H_

#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>

#include "client/reading.h"

namespace vexahealth {

using Json = nlohmann::ordered_json;

Json TextOrNull(std::string_view text);
Json ValueJson(const Value& value);
Json LibraryJson(const LibraryState& library);

// What every document begins with.
Json Document();

// {"value", "unit", "status", "source", "reason"}.
Json ReadingJson(const Reading& reading);

// Adds the readings under `name`, by their keys.
void AddReadings(Json& document, const char* name, std::span<const Reading> readings);

enum class Layout { kLines, kOneLine };

// Pure ASCII (other characters as \u escapes), so that neither a code page nor a terminal can change or obey it; ends
// in
// "\n".
std::string Dump(const Json& json, Layout layout = Layout::kLines);

}  // namespace vexahealth

#endif  // CLIENT_JSON_PARTS_H_
