#include "client/json_parts.h"

#include <optional>

#include "client/text.h"
#include "client/values.h"

namespace vexahealth {
Json ReadingJson(const Reading& reading) {
  const std::optional<std::string_view> unit = UnitOf(reading.row->kind);
  return {{"value", ValueJson(reading.value)},
          {"unit", unit ? Json(*unit) : Json()},
          {"status", StatusName(reading.status)},
          {"source", reading.row->export_name},
          {"reason", TextOrNull(reading.note)}};
}

Json TextOrNull(std::string_view text) { return text.empty() ? Json() : Json(WellFormedUtf8(text)); }

Json ValueJson(const Value& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag;
  if (const auto* number = std::get_if<int64_t>(&value)) return *number;
  if (const auto* text = std::get_if<std::string>(&value)) return WellFormedUtf8(*text);
  return nullptr;
}

Json LibraryJson(const LibraryState& library) {
  const Value version = library.version ? ValueFrom(Kind::kInterfaceVersion, *library.version) : Value();
  Json route;
  if (library.route == Route::kDriver) route = "x64";
  if (library.route == Route::kFirmware) route = "ARM64";
  return {{"path", TextOrNull(library.path)},
          {"loaded", library.loaded},
          {"ready", library.needs_driver ? Json(library.ready) : Json()},
          {"version", ValueJson(version)},
          {"route", route}};
}

Json Document() { return {{"schema_version", 1}, {"tool", {{"name", "vexahealth"}, {"version", kClientVersion}}}}; }

void AddReadings(Json& document, const char* name, std::span<const Reading> readings) {
  Json& list = document[name] = Json::object();
  for (const Reading& reading : readings) list[std::string(reading.row->key)] = ReadingJson(reading);
}

std::string Dump(const Json& json, Layout layout) {
  constexpr bool kAsciiOnly = true;
  const int indent = layout == Layout::kLines ? 2 : -1;
  return json.dump(indent, ' ', kAsciiOnly, Json::error_handler_t::replace) + "\n";
}

}  // namespace vexahealth
