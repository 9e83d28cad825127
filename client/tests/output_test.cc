// Every format over the readings of a scripted library, with texts as hostile as a device can make them.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "client/families.h"
#include "client/formats.h"
#include "client/json_report.h"
#include "client/prometheus.h"
#include "client/rules.h"
#include "client/table.h"
#include "client/tests/fake_library.h"
#include "client/text.h"
#include "client/watch.h"

namespace vexahealth {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kHostile[] = {"\x1b[2J\x1b]0;owned\x07",
                                    "a\r\nb\tc",
                                    "\u202egnp.exe",
                                    "\"},{\"x\":1",
                                    "=cmd|'/c calc'!A1",
                                    "x\"} 1\n# HELP evil",
                                    "\xff\xfe\x80",
                                    "\xed\xa0\x80",
                                    "<script>alert(1)</script>",
                                    "a,b;c\"d",
                                    "\u009b31m",
                                    "back\\slash\\n"};

Report Healthy() {
  TheScript() = HealthyScript();
  return ScriptedReport();
}

Report Named(const std::string& device_name) {
  TheScript() = HealthyScript();
  TheScript().SetText("battery.device_name", device_name);
  return ScriptedReport();
}

Report With(std::string_view key, const Value& value) {
  Report report = Healthy();
  report.readings[RowIndex(key)].value = value;
  return report;
}

std::vector<std::string> Lines(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::string LineWith(const std::string& text, std::string_view part) {
  for (const std::string& line : Lines(text)) {
    if (line.find(part) != std::string::npos) return line;
  }
  return "";
}

bool Has(const std::string& text, std::string_view part) { return text.find(part) != std::string::npos; }

// One field after the other, by the rules of RFC 4180.
std::vector<std::string> Fields(const std::string& record) {
  std::vector<std::string> fields(1);
  bool quoted = false;
  for (size_t i = 0; i < record.size(); ++i) {
    if (record[i] == '"' && quoted && i + 1 < record.size() && record[i + 1] == '"') {
      fields.back() += record[i++];
    } else if (record[i] == '"') {
      quoted = !quoted;
    } else if (record[i] == ',' && !quoted) {
      fields.emplace_back();
    } else {
      fields.back() += record[i];
    }
  }
  EXPECT_FALSE(quoted) << record;
  return fields;
}

TEST(Formats, NoFormatLetsAHostileTextThrough) {
  for (const char* hostile : kHostile) {
    const Report report = Named(hostile);
    const size_t rows = report.readings.size();
    for (const Format format : {Format::kTable, Format::kJson, Format::kNdjson, Format::kCsv, Format::kPrometheus}) {
      const std::string text = Render(report, format);
      EXPECT_FALSE(Has(text, "\x1b") || Has(text, "\u202e") || Has(text, "\u009b")) << hostile;
      EXPECT_TRUE(std::ranges::none_of(text, [](char c) { return (c >= 0 && c < 0x20 && c != '\n') || c == 0x7F; }))
          << hostile;
      EXPECT_EQ(WellFormedUtf8(text), text) << hostile;
    }
    EXPECT_EQ(Lines(NdjsonText(report)).size(), rows) << hostile;
    EXPECT_EQ(Lines(CsvText(report)).size(), rows + 1) << hostile;
    EXPECT_EQ(Lines(SampleLine(report)).size(), 1u) << hostile;
    for (const std::string& record : Lines(CsvText(report))) EXPECT_EQ(Fields(record).size(), 7u) << record;
    EXPECT_EQ(Fields(Lines(CsvSample(report)).front()).size(), rows + 1) << hostile;
    EXPECT_EQ(BareValue(*FindReading(report.readings, "battery.device_name")).find_first_of("\x1b\r\n\t\a"),
              std::string::npos);
    EXPECT_EQ(Json::parse(JsonText(report))["readings"]["battery.device_name"]["value"], WellFormedUtf8(hostile));
  }
}

TEST(JsonReport, AFailureKeepsTheShape) {
  const Report report{.library = {}, .readings = NothingCollected("why"), .error = "no \xff library"};
  const Json json = Json::parse(JsonText(report));
  EXPECT_EQ(json["error"], "no \ufffd library");
  EXPECT_EQ(json["library"]["loaded"], false);
  ASSERT_EQ(json["readings"].size(), kRowCount);
  for (const auto& reading : json["readings"]) EXPECT_EQ(reading["status"], "not_collected");
  EXPECT_EQ(json["readings"]["lid.state"]["reason"], "why");
  EXPECT_EQ(Json::parse(JsonHelpText("a\nb"))["help"], "a\nb");
  EXPECT_EQ(Json::parse(JsonVersionText({}, "missing"))["error"], "missing");
}

TEST(LineFormats, EachLineIsAReading) {
  const Report report = Named("PACK 3S1P");
  EXPECT_EQ(Json::parse(LineWith(NdjsonText(report), "\"battery.current\"")),
            Json::parse(R"({"time": "2026-02-03T08:05:00.000Z", "key": "battery.current", "value": -1234, "unit": "mA",
                            "status": "ok", "source": "BatteryHealthyTable_Current", "reason": null})"));
  EXPECT_EQ(LineWith(CsvText(report), "battery.current,"),
            "2026-02-03T08:05:00.000Z,battery.current,-1234,mA,ok,BatteryHealthyTable_Current,");
  const std::string line = SampleLine(report);
  EXPECT_TRUE(line.starts_with("time=2026-02-03T08:05:00.000Z library.dll_version=\"1.1\" "));
  EXPECT_TRUE(Has(line, " battery.rsoc=87 ") && Has(line, " battery.cell_voltage_4=!not_present "));
  EXPECT_TRUE(Has(line, " battery.device_name=\"PACK 3S1P\" "));
  const std::vector<std::string> header = Fields(Lines(CsvSampleHeader(report)).front());
  const std::vector<std::string> sample = Fields(Lines(CsvSample(report)).front());
  ASSERT_EQ(header.size(), sample.size());
  for (const auto& [key, value] : {std::pair{"time", "2026-02-03T08:05:00.000Z"},
                                   {"battery.rsoc", "87"},
                                   {"battery.error", "false"},
                                   {"battery.cell_voltage_4", ""}}) {
    EXPECT_EQ(sample[static_cast<size_t>(std::ranges::find(header, key) - header.begin())], value) << key;
  }
}

TEST(Csv, QuotesAndDefusesFormulas) {
  for (const auto& [text, field] :
       {std::pair{"a,\"b\"", "a,\"b\""}, {"=1+1", "'=1+1"}, {"-1", "'-1"}, {"@x", "'@x"}, {"\t=1", "'\\x09=1"}}) {
    EXPECT_EQ(Fields(LineWith(CsvText(Named(text)), "device_name"))[2], field);
  }
}

TEST(Prometheus, NumbersComeInBaseUnits) {
  const std::string text = "\n" + PrometheusText(Healthy());
  for (const char* line :
       {"vexahealth_up 1", "vexahealth_battery_voltage_volts 11.405", "vexahealth_battery_current_amperes -1.234",
        "vexahealth_battery_temperature_celsius 25.050", "vexahealth_battery_rsoc_percent 87",
        "vexahealth_battery_error 0", "vexahealth_battery_cell_voltage_volts{index=\"2\"} 3.803",
        "vexahealth_text_info{key=\"battery.device_name\",value=\"PACK 3S1P\"} 1",
        "vexahealth_reading_status{key=\"battery.cell_voltage_4\",status=\"not_present\",source="
        "\"BatteryHealthyTable_CellVoltage4\"} 1",
        "vexahealth_readings{status=\"error\"} 0", "# HELP vexahealth_battery_cell_voltage_volts Cell"}) {
    EXPECT_TRUE(Has(text, "\n" + std::string(line) + "\n")) << line;
  }
  EXPECT_FALSE(Has(text, "vexahealth_battery_cell_voltage_volts{index=\"4\"}"));
  EXPECT_TRUE(Has(PrometheusText(With("battery.temperature", int64_t{2731})), "_temperature_celsius -0.050\n"));
  EXPECT_TRUE(Has(PrometheusText(With("battery.temperature", int64_t{2631})), "_temperature_celsius -10.050\n"));
  // A number in place of a text stays a text, and the time of day is no series.
  const std::string dated = PrometheusText(With("battery.manufacture_date", int64_t{65535}));
  EXPECT_TRUE(Has(dated, "{key=\"battery.manufacture_date\",value=\"65535\"} 1\n"));
  EXPECT_FALSE(Has(dated, "\nvexahealth_battery_manufacture_date"));
  Report timed;
  timed.readings = {Ok(*FindRow("system.local_time"), "2026-02-03 08:05:00")};
  EXPECT_FALSE(Has(PrometheusText(timed), "08:05"));
  const std::string down = PrometheusText({.library = {}, .readings = NothingCollected("why"), .error = "missing"});
  EXPECT_TRUE(Has(down, "vexahealth_up 0\n") && Has(down, "vexahealth_readings{status=\"not_collected\"} 35\n"));
  EXPECT_FALSE(Has(down, "vexahealth_battery_"));
}

TEST(Table, GroupsExplainsAndKeepsItsColumns) {
  TheScript() = HealthyScript();
  TheScript()["battery.cycle_count"] = VEXA_NO_ANSWER;
  TheScript()["battery.cell_voltage_1"] = VEXA_NO_ANSWER;
  TheScript().SetText("battery.manufacture_information", "電池電池é,0x0");
  TheScript().SetText("battery.device_name", "\x1b[31m\r\nExternal power  yes");
  std::string table = TableText(ScriptedReport());
  EXPECT_TRUE(Has(LineWith(table, "Temperature"), "25.1 °C (298.2 K)"));
  EXPECT_TRUE(Has(LineWith(table, "Charge cycles"), "no answer: the EC did not answer"));
  EXPECT_TRUE(Has(LineWith(table, "Device name"), "\\x1b[31m\\x0d\\x0aExternal"));
  EXPECT_LT(table.find("Manufacture information"), table.find("Charger, power and lid"));
  const auto column = [&](std::string_view label, std::string_view mark) {
    const std::string line = LineWith(table, label);
    return DisplayWidth(line.substr(0, line.find(mark)));
  };
  const size_t notes = column("Battery error", "cross-checked");
  EXPECT_EQ(column("Manufacture information", "0x0 also"), notes);
  EXPECT_EQ(column("Cell 1", "no answer"), notes);

  // A long value is broken.
  std::string bytes, joined;
  for (int i = 0; i < 32; ++i) bytes += std::string(i == 0 ? "" : ",") + "0xab";
  TheScript().SetText("battery.manufacture_information", bytes);
  table = TableText(ScriptedReport());
  bool inside = false;
  for (const std::string& line : Lines(table)) {
    EXPECT_LE(DisplayWidth(line), 120u) << line;
    inside = Has(line, "Manufacture information") || (inside && line.starts_with("    "));
    if (inside) joined += line.substr(line.find("0x"));
  }
  EXPECT_EQ(joined, bytes);
}

TEST(NextStart, SamplesNeverOverlapNorPileUp) {
  EXPECT_EQ(NextStart(1000, 1300, 2000), 3000u);
  EXPECT_EQ(NextStart(1000, 3000, 2000), 3000u);
  EXPECT_EQ(NextStart(1000, 9000, 2000), 9000u);  // a slow sample: the next begins at once, and only one
}

Report At(const char* time, bool good = true, uint32_t charge = 87) {
  TheScript() = HealthyScript();
  TheScript()["battery.rsoc"] = charge;
  Report report = ScriptedReport({.ready = good});
  report.command = "battery";
  report.time = time;
  return report;
}

TEST(WatchPrinter, WithoutATerminal) {
  const auto printer = [](Format format, bool bare) {
    return WatchPrinter({.format = format, .bare = bare, .terminal = {}});
  };
  WatchPrinter lines = printer(Format::kTable, false);
  for (const char* time : {"t1", "t2"}) {
    const std::string line = lines.Next(At(time));
    EXPECT_TRUE(line.starts_with("time=" + std::string(time) + " "));
    EXPECT_EQ(std::ranges::count(line, '\n'), 1);
  }
  const std::string value = printer(Format::kJson, false).Next(At("t1"));
  EXPECT_EQ(std::ranges::count(value, '\n'), 1);
  EXPECT_EQ(Json::parse(value)["readings"]["battery.rsoc"]["value"], 87);
  WatchPrinter csv = printer(Format::kCsv, false);
  EXPECT_TRUE(csv.Next(At("t1")).starts_with("time,library.dll_version,"));
  EXPECT_TRUE(csv.Next(At("t2")).starts_with("t2,"));
  Report report = At("t1");
  report.readings = {report.readings[RowIndex("battery.rsoc")]};
  EXPECT_EQ(printer(Format::kTable, true).Next(report), "87\n");
  report.readings[0].status = Status::kNoAnswer;
  EXPECT_EQ(printer(Format::kTable, true).Next(report), "!no_answer\n");
}

TEST(WatchPrinter, ATerminalIsRedrawnAndKeepsTheLastGoodPicture) {
  WatchPrinter printer({.format = Format::kTable, .bare = false, .terminal = TerminalSize{200, 200}});
  const std::string first = printer.Next(At("t1", true, 55));
  EXPECT_TRUE(first.starts_with("\x1b[2J\x1b[H") && Has(first, "55 %"));
  const std::string second = printer.Next(At("t2", true, 54));
  EXPECT_TRUE(second.starts_with("\x1b[Ht2") && Has(second, "54 %"));
  const std::string failed = printer.Next(At("t3", false));
  EXPECT_TRUE(Has(failed, "54 %"));
  EXPECT_TRUE(Has(failed, "t3  battery: nothing answers since the picture below, taken t2"));
  EXPECT_TRUE(Has(printer.Next(At("t4", true, 53)), "53 %"));
  WatchPrinter small({.format = Format::kTable, .bare = false, .terminal = TerminalSize{10, 30}});
  const std::string picture = small.Next(At("t1"));
  EXPECT_EQ(std::ranges::count(picture, '\n'), 9);
  EXPECT_TRUE(Has(picture, " more lines"));
  const size_t line = picture.find("  Library interface");
  EXPECT_EQ(DisplayWidth(picture.substr(line, picture.find('\x1b', line) - line)), 29u);  // it is longer
}

}  // namespace
}  // namespace vexahealth
