#include "client/json_report.h"

#include "client/text.h"

namespace vexahealth {

Json JsonDocument(const Report& report) {
  Json document = Document();
  document["command"] = WellFormedUtf8(report.command);
  document["time"] = TextOrNull(report.time);
  document["error"] = TextOrNull(report.error);
  document["library"] = LibraryJson(report.library);
  AddReadings(document, "readings", report.readings);
  return document;
}

std::string JsonText(const Report& report, Layout layout) { return Dump(JsonDocument(report), layout); }

std::string JsonHelpText(std::string_view help) {
  Json document = Document();
  document["help"] = WellFormedUtf8(help);
  return Dump(document);
}

std::string JsonVersionText(const LibraryState& library, std::string_view error) {
  Json document = Document();
  document["error"] = TextOrNull(error);
  document["library"] = LibraryJson(library);
  return Dump(document);
}

}  // namespace vexahealth
