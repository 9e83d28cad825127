// The line formats and Prometheus text, with texts as hostile as a device can make them.
#include "client/formats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "client/collect.h"
#include "client/families.h"
#include "client/prometheus.h"
#include "client/rules.h"
#include "client/tests/scripted_library.h"

namespace vexahealth {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kHostile[] = {
    "\x1b[2J\x1b]0;owned\x07",
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
    "back\\slash\\n",
};

std::string AsItIs(std::string_view text) { return std::string(text); }

Report ReportWith(const std::string& device_name) {
  TheScript() = HealthyScript();
  TheScript().texts["battery.device_name"] = device_name;
  return {.library = {.path = "C:\\x\\VexaWinIO64.dll", .loaded = true, .ready = true, .route = Route::kDriver},
          .readings = Collect({.resolve = ScriptedExports(), .ready = true, .route = Route::kDriver, .decode = AsItIs}),
          .error = {},
          .time = "2026-02-03T08:05:00.000Z"};
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
    const Report report = ReportWith(hostile);
    const size_t rows = report.readings.size();
    for (const Format format : {Format::kTable, Format::kJson, Format::kNdjson, Format::kCsv, Format::kPrometheus}) {
      const std::string text = Render(report, format);
      EXPECT_EQ(text.find('\x1b'), std::string::npos) << hostile;
      EXPECT_EQ(text.find("\u202e"), std::string::npos) << hostile;
      EXPECT_EQ(text.find("\u009b"), std::string::npos) << hostile;
      EXPECT_TRUE(std::ranges::none_of(text, [](char c) { return (c >= 0 && c < 0x20 && c != '\n') || c == 0x7F; }))
          << hostile;
    }
    EXPECT_EQ(Lines(NdjsonText(report)).size(), rows) << hostile;
    EXPECT_EQ(Lines(CsvText(report)).size(), rows + 1) << hostile;
    EXPECT_EQ(Lines(SampleLine(report)).size(), 1u) << hostile;
    for (const std::string& record : Lines(CsvText(report))) EXPECT_EQ(Fields(record).size(), 7u) << record;
    EXPECT_EQ(Fields(Lines(CsvSample(report)).front()).size(), rows + 1) << hostile;
    EXPECT_EQ(BareValue(*FindReading(report.readings, "battery.device_name")).find_first_of("\x1b\r\n\t\a"),
              std::string::npos);
  }
}

TEST(Ndjson, EachLineIsAReading) {
  const std::string text = NdjsonText(ReportWith("PACK"));
  EXPECT_EQ(Json::parse(LineWith(text, "\"battery.current\"")),
            Json::parse(R"({"time": "2026-02-03T08:05:00.000Z", "key": "battery.current", "value": -1234, "unit": "mA",
                            "status": "ok", "source": "BatteryHealthyTable_Current", "reason": null})"));
  EXPECT_EQ(Json::parse(LineWith(text, "cell_voltage_4"))["status"], "not_present");
}

TEST(Csv, QuotesAndDefusesFormulas) {
  const std::string plain = LineWith(CsvText(ReportWith("PACK")), "battery.current,");
  EXPECT_EQ(plain, "2026-02-03T08:05:00.000Z,battery.current,-1234,mA,ok,BatteryHealthyTable_Current,");
  const auto name = [](const char* text) { return Fields(LineWith(CsvText(ReportWith(text)), "device_name"))[2]; };
  EXPECT_EQ(name("a,\"b\""), "a,\"b\"");
  EXPECT_EQ(name("=1+1"), "'=1+1");
  EXPECT_EQ(name("-1"), "'-1");
  EXPECT_EQ(name("@x"), "'@x");
  EXPECT_EQ(name("\t=1"), "'\\x09=1");
}

TEST(Csv, SamplesHaveOneColumnPerReading) {
  const Report report = ReportWith("PACK");
  const std::vector<std::string> header = Fields(Lines(CsvSampleHeader(report)).front());
  const std::vector<std::string> sample = Fields(Lines(CsvSample(report)).front());
  ASSERT_EQ(header.size(), sample.size());
  const auto at = [&](std::string_view key) {
    return sample[static_cast<size_t>(std::ranges::find(header, key) - header.begin())];
  };
  EXPECT_EQ(at("time"), "2026-02-03T08:05:00.000Z");
  EXPECT_EQ(at("battery.rsoc"), "87");
  EXPECT_EQ(at("battery.error"), "false");
  EXPECT_EQ(at("battery.cell_voltage_4"), "");
}

TEST(SampleLine, TellsValuesAndWhatIsMissing) {
  const std::string line = SampleLine(ReportWith("PACK 3S1P"));
  EXPECT_TRUE(line.starts_with("time=2026-02-03T08:05:00.000Z library.dll_version=\"1.1\" "));
  EXPECT_NE(line.find(" battery.rsoc=87 "), std::string::npos);
  EXPECT_NE(line.find(" battery.cell_voltage_4=!not_present "), std::string::npos);
  EXPECT_NE(line.find(" battery.device_name=\"PACK 3S1P\" "), std::string::npos);
}

TEST(Prometheus, NumbersComeInBaseUnits) {
  const std::string text = PrometheusText(ReportWith("PACK"));
  for (const char* line :
       {"vexahealth_up 1", "vexahealth_battery_voltage_volts 11.405", "vexahealth_battery_current_amperes -1.234",
        "vexahealth_battery_temperature_celsius 25.050", "vexahealth_battery_rsoc_percent 87",
        "vexahealth_battery_error 0", "vexahealth_battery_cell_voltage_volts{index=\"2\"} 3.803",
        "vexahealth_text_info{key=\"battery.device_name\",value=\"PACK\"} 1",
        "vexahealth_reading_status{key=\"battery.cell_voltage_4\",status=\"not_present\",source="
        "\"BatteryHealthyTable_CellVoltage4\"} 1",
        "vexahealth_readings{status=\"error\"} 0", "# HELP vexahealth_battery_cell_voltage_volts Cell"}) {
    EXPECT_NE(("\n" + text).find("\n" + std::string(line) + "\n"), std::string::npos) << line;
  }
  EXPECT_EQ(text.find("vexahealth_battery_cell_voltage_volts{index=\"4\"}"), std::string::npos);
}

TEST(Prometheus, ANumberInPlaceOfATextStaysAText) {
  TheScript() = HealthyScript();
  Report report = ReportWith("PACK");
  for (Reading& reading : report.readings) {
    if (reading.row->key == "battery.manufacture_date") reading.value = int64_t{65535};
  }
  const std::string text = PrometheusText(report);
  EXPECT_NE(text.find("{key=\"battery.manufacture_date\",value=\"65535\"} 1\n"), std::string::npos);
  EXPECT_EQ(text.find("\nvexahealth_battery_manufacture_date"), std::string::npos);
}

TEST(Prometheus, FreezingIsNegative) {
  TheScript() = HealthyScript();
  Report report = ReportWith("PACK");
  for (const auto& [deci_kelvin, expected] : {std::pair{2731, "vexahealth_battery_temperature_celsius -0.050"},
                                              std::pair{2631, "vexahealth_battery_temperature_celsius -10.050"}}) {
    for (Reading& reading : report.readings) {
      if (reading.row->key == "battery.temperature") reading.value = int64_t{deci_kelvin};
    }
    EXPECT_NE(PrometheusText(report).find("\n" + std::string(expected) + "\n"), std::string::npos) << expected;
  }
}

TEST(Prometheus, EveryMetricStandsTogetherUnderOneType) {
  for (const char* hostile : kHostile) {
    std::vector<std::string> seen;
    std::string current, helped;
    for (const std::string& line : Lines(PrometheusText(ReportWith(hostile)))) {
      if (line.starts_with("# HELP ")) {
        helped = line.substr(7, line.find(' ', 7) - 7);
        EXPECT_GT(line.size(), 8 + helped.size()) << line;
      } else if (line.starts_with("# TYPE ")) {
        current = line.substr(7, line.rfind(' ') - 7);
        EXPECT_EQ(std::ranges::count(seen, current), 0) << current;
        EXPECT_EQ(helped, current);
        seen.push_back(current);
      } else {
        EXPECT_TRUE(line.starts_with(current + "{") || line.starts_with(current + " ")) << line;
        EXPECT_EQ(line.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_"), current.size()) << line;
      }
    }
  }
}

TEST(Prometheus, TheTimeOfDayIsNoSeries) {
  const Row* row = FindRow("system.local_time");
  ASSERT_NE(row, nullptr);
  Report report;
  report.readings = {Ok(*row, std::string("2026-02-03 08:05:00"))};
  const std::string text = PrometheusText(report);
  EXPECT_EQ(text.find("08:05"), std::string::npos);
  EXPECT_NE(text.find("vexahealth_reading_status{key=\"system.local_time\",status=\"ok\""), std::string::npos);
}

TEST(Prometheus, ALibraryThatIsNotThereIsDown) {
  const Report report{.library = {}, .readings = NothingCollected("why"), .error = "missing"};
  const std::string text = PrometheusText(report);
  EXPECT_NE(text.find("vexahealth_up 0\n"), std::string::npos);
  EXPECT_NE(text.find("vexahealth_readings{status=\"not_collected\"} 35\n"), std::string::npos);
  EXPECT_EQ(text.find("vexahealth_battery_"), std::string::npos);
}

TEST(Formats, TheWordsOfFormat) {
  EXPECT_EQ(FormatFrom("prometheus"), Format::kPrometheus);
  EXPECT_EQ(FormatFrom("JSON"), std::nullopt);
  EXPECT_EQ(FormatFrom(""), std::nullopt);
}

}  // namespace
}  // namespace vexahealth
