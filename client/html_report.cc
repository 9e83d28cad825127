#include "client/html_report.h"

#include <algorithm>
#include <array>
#include <vector>

#include "client/html_parts.h"
#include "client/html_text.h"
#include "client/json_parts.h"
#include "client/json_report.h"
#include "client/masking.h"
#include "client/plain_words.h"
#include "client/text.h"

namespace vexahealth {
namespace {

constexpr Level kLevels[] = {Level::kAct, Level::kWatch, Level::kUnknown, Level::kGood, Level::kNotThere};

std::string_view LevelWord(Level level) {
  switch (level) {
    case Level::kAct: return "Act";
    case Level::kWatch: return "Watch";
    case Level::kUnknown: return "Can\u2019t tell";
    case Level::kGood: return "Good";
    case Level::kNotThere: return "Not there";
  }
  return "";
}

std::string_view LevelCountWords(Level level) {
  switch (level) {
    case Level::kAct: return "to act on";
    case Level::kWatch: return "to watch";
    case Level::kUnknown: return "can\u2019t be told";
    case Level::kGood: return "good";
    case Level::kNotThere: return "not there";
  }
  return "";
}

std::string LevelClass(Level level) { return "class=\"badge " + std::string(LevelName(level)) + "\""; }

std::string TextOf(std::span<const Reading> readings, std::string_view key) {
  const Reading* reading = FindReading(readings, key);
  const auto* text = reading == nullptr ? nullptr : std::get_if<std::string>(&reading->value);
  return text == nullptr ? std::string() : *text;
}

std::string Heading(const Report& report) {
  const std::string product = TextOf(report.readings, "inventory.product");
  return product.empty() ? "Notebook" : product;
}

// "2026-02-03 08:05 UTC"
std::string TimeText(const std::string& time) {
  return time.size() < 16 ? time : time.substr(0, 10) + " " + time.substr(11, 5) + " UTC";
}

std::string RouteText(Route route) {
  switch (route) {
    case Route::kDriver: return "kernel driver (x64)";
    case Route::kFirmware: return "firmware\u2019s methods (ARM64)";
    case Route::kUnknown: break;
  }
  return "not known";
}

std::string Fact(std::string_view label, const std::string& value) {
  if (value.empty()) return {};
  return Element("div", "", Element("dt", "", HtmlText(label)) + Element("dd", "", HtmlText(value)));
}

std::string Header(const Report& report, Serials serials) {
  std::string facts = Fact("Taken", TimeText(report.time));
  facts += Fact("Board", TextOf(report.readings, "inventory.board"));
  facts += Fact("BIOS", TextOf(report.readings, "inventory.bios_version"));
  facts += Fact("System", TextOf(report.readings, "inventory.os"));
  facts += Fact("Read through", RouteText(report.library.route));
  const std::string notice =
      serials == Serials::kMask
          ? "Serial numbers, ids, network addresses and the names of user folders are masked, here and in the data. "
            "vexahealth report --show-serials writes them."
          : "This file holds serial numbers and network addresses. Mind whom you send it to.";
  std::string header = Element("p", "class=\"eyebrow\"", "Notebook health report");
  header += Element("h1", "", HtmlText(Heading(report)));
  header += Element("dl", "class=\"facts\"", facts);
  header += Element("p", serials == Serials::kMask ? "class=\"notice\"" : "class=\"notice loud\"", notice);
  if (!report.error.empty()) {
    header += Element("p", "class=\"notice loud\"", HtmlText(Capital(report.error) + "."));
  }
  return Element("header", "", header) + "\n";
}

std::string Counts(std::span<const Verdict> verdicts) {
  std::string counts;
  for (const Level level : kLevels) {
    const auto count = std::ranges::count(verdicts, level, &Verdict::level);
    if (count == 0) continue;
    counts += Element("li", LevelClass(level),
                      Element("b", "", std::to_string(count)) + " " + std::string(LevelCountWords(level)));
  }
  return Element("ul", "class=\"counts\"", counts) + "\n";
}

std::string VerdictRow(const Verdict& verdict) {
  std::string row = Element("div", "", Element("span", LevelClass(verdict.level), LevelWord(verdict.level)));
  row += Element("div", "", Element("h3", "", HtmlText(verdict.title)) + Element("p", "", HtmlText(verdict.finding)));
  row += Element("p", "class=\"rule\"", Element("b", "", "Rule") + " " + HtmlText(verdict.rule));
  return Element("li", "", row) + "\n";
}

// The most urgent first.
std::string VerdictsSection(std::span<const Verdict> verdicts) {
  std::string rows;
  for (const Level level : kLevels) {
    for (const Verdict& verdict : verdicts) {
      if (verdict.level == level) rows += VerdictRow(verdict);
    }
  }
  return SectionBlock("verdicts", "Verdicts",
                      Counts(verdicts) + Element("ol", "class=\"verdicts\"", "\n" + rows) + "\n");
}

std::string Navigation() {
  constexpr std::pair<const char*, const char*> kPlaces[] = {
      {"verdicts", "Verdicts"}, {"battery", "Battery"},   {"adapter", "Adapter"},     {"thermal", "Fans"},
      {"radio", "Radios"},      {"settings", "Settings"}, {"inventory", "Inventory"}, {"controller", "Controller"}};
  std::string links;
  for (const auto& [id, title] : kPlaces) links += Element("a", "href=\"#" + std::string(id) + "\"", title) + "\n";
  return Element("nav", "aria-label=\"Sections\"", "\n" + links) + "\n";
}

std::string Legend() {
  std::string items;
  for (const Status status :
       {Status::kNoAnswer, Status::kUnsupported, Status::kNotPresent, Status::kNotCollected, Status::kError}) {
    items +=
        Element("div", "",
                Element("dt", "", Capital(StatusWord(status))) + Element("dd", "", HtmlText(StatusSentence(status))));
  }
  return SectionBlock("missing", "How to read a missing value", Element("dl", "class=\"legend\"", items) + "\n");
}

std::string Footer(const Report& report) {
  std::string text = "Written by vexahealth " + std::string(kClientVersion);
  if (report.library.version) {
    text +=
        Printf(", VexaWinIO64.dll interface %u.%u", *report.library.version >> 16, *report.library.version & 0xFFFF);
  }
  if (!report.library.path.empty()) text += ", from " + report.library.path;
  text +=
      ". All readings, with the export that each came from, are in this file as JSON: the script element "
      "\u201cvexahealth-data\u201d. Nothing in it runs or loads.";
  return Element("footer", "", Element("p", "", HtmlText(text))) + "\n";
}

Report Prepared(const Report& original, Serials serials) {
  Report report = serials == Serials::kMask ? Masked(original) : original;
  report.command = "report";
  return report;
}

std::string DataText(const Report& report, std::span<const Verdict> verdicts, Serials serials) {
  Json document = JsonDocument(report);
  document["serials"] = serials == Serials::kMask ? "masked" : "shown";
  Json& list = document["verdicts"] = Json::array();
  for (const Verdict& verdict : verdicts) {
    list.push_back({{"id", verdict.id},
                    {"title", verdict.title},
                    {"level", LevelName(verdict.level)},
                    {"finding", WellFormedUtf8(verdict.finding)},
                    {"rule", verdict.rule}});
  }
  return Dump(document);
}

}  // namespace

std::string HtmlReportJson(const Report& original, Serials serials) {
  const Report report = Prepared(original, serials);
  return DataText(report, Judge(report), serials);
}

std::string HtmlReport(const Report& original, Serials serials) {
  const Report report = Prepared(original, serials);
  const std::vector<Verdict> verdicts = Judge(report);
  const std::span<const Reading> readings = report.readings;
  std::string page =
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      "<meta name=\"color-scheme\" content=\"light dark\">\n";
  page += Element("title", "", HtmlText(Heading(report) + ": health report, " + TimeText(report.time))) + "\n";
  page += Element("style", "", HtmlStyle()) + "\n</head>\n<body>\n<main>\n";
  page += Header(report, serials) + Navigation() + VerdictsSection(verdicts);
  page += BatterySection(readings) + AdapterSection(readings) + ThermalSection(readings) + RadioSection(readings);
  page += SettingsSection(readings) + InventorySection(readings) + MachineSection(readings) + Legend() + Footer(report);
  page += "</main>\n<script type=\"application/json\" id=\"vexahealth-data\">\n";
  page += JsonForScript(DataText(report, verdicts, serials)) + "</script>\n</body>\n</html>\n";
  return page;
}

}  // namespace vexahealth
