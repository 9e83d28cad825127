#include "client/json_report.h"

#include <nlohmann/json.hpp>

#include "client/text.h"
#include "client/values.h"

namespace vexahealth {
namespace {

using Json = nlohmann::ordered_json;

Json TextOrNull(std::string_view text) { return text.empty() ? Json() : Json(WellFormedUtf8(text)); }

Json ToJson(const Value& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag;
  if (const auto* number = std::get_if<int64_t>(&value)) return *number;
  if (const auto* text = std::get_if<std::string>(&value)) return WellFormedUtf8(*text);
  return nullptr;
}

Json ToJson(const Reading& reading) {
  const std::optional<std::string_view> unit = UnitOf(reading.row->kind);
  return {{"value", ToJson(reading.value)},
          {"unit", unit ? Json(*unit) : Json()},
          {"status", StatusName(reading.status)},
          {"source", reading.row->export_name}};
}

Json ToJson(const LibraryState& library) {
  const Value version = library.version ? ValueFrom(Kind::kInterfaceVersion, *library.version) : Value();
  Json route;
  if (library.route == Route::kDriver) route = "x64";
  if (library.route == Route::kFirmware) route = "ARM64";
  return {{"path", TextOrNull(library.path)},
          {"loaded", library.loaded},
          {"ready", library.ready},
          {"version", ToJson(version)},
          {"route", route}};
}

Json Document() {
  return {{"schema_version", 1}, {"tool", {{"name", "vexahealth"}, {"version", kClientVersion}}}};
}

std::string Dump(const Json& json) {
  constexpr bool kAsciiOnly = true;
  return json.dump(2, ' ', kAsciiOnly, Json::error_handler_t::replace) + "\n";
}

}  // namespace

std::string JsonText(const Report& report) {
  Json document = Document();
  document["error"] = TextOrNull(report.error);
  document["library"] = ToJson(report.library);
  Json& readings = document["readings"] = Json::object();
  Json notes = Json::object();
  for (const Reading& reading : report.readings) {
    const std::string key(reading.row->key);
    readings[key] = ToJson(reading);
    if (!reading.note.empty()) notes[key] = WellFormedUtf8(reading.note);
  }
  document["notes"] = std::move(notes);
  return Dump(document);
}

std::string JsonHelpText(std::string_view help) {
  Json document = Document();
  document["help"] = WellFormedUtf8(help);
  return Dump(document);
}

std::string JsonVersionText(const LibraryState& library, std::string_view error) {
  Json document = Document();
  document["error"] = TextOrNull(error);
  document["library"] = ToJson(library);
  return Dump(document);
}

}  // namespace vexahealth
