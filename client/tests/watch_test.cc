#include "client/watch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "client/collect.h"
#include "client/tests/scripted_library.h"

namespace vexahealth {
namespace {

std::string AsItIs(std::string_view text) { return std::string(text); }

Report ReportAt(const char* time, bool good = true, uint32_t charge = 87) {
  TheScript() = HealthyScript();
  TheScript().numbers["battery.rsoc"] = charge;
  return {.library = {.loaded = true, .ready = good, .route = Route::kDriver},
          .readings = Collect({.resolve = ScriptedExports(), .ready = good, .route = Route::kDriver, .decode = AsItIs}),
          .error = {},
          .command = "battery",
          .time = time};
}

TEST(NextStart, SamplesNeverOverlapNorPileUp) {
  EXPECT_EQ(NextStart(1000, 1300, 2000), 3000u);
  EXPECT_EQ(NextStart(1000, 3000, 2000), 3000u);
  EXPECT_EQ(NextStart(1000, 9000, 2000), 9000u);  // a slow sample: the next begins at once, and only one
}

TEST(WatchPrinter, ALineForEachSampleWithoutATerminal) {
  WatchPrinter lines({.format = Format::kTable, .bare = false, .terminal_rows = {}});
  for (const char* time : {"t1", "t2"}) {
    const std::string line = lines.Next(ReportAt(time));
    EXPECT_TRUE(line.starts_with("time=" + std::string(time) + " "));
    EXPECT_EQ(std::ranges::count(line, '\n'), 1);
    EXPECT_EQ(line.find('\x1b'), std::string::npos);
  }
  WatchPrinter json({.format = Format::kJson, .bare = false, .terminal_rows = {}});
  const std::string value = json.Next(ReportAt("t1"));
  EXPECT_EQ(std::ranges::count(value, '\n'), 1);
  EXPECT_EQ(nlohmann::json::parse(value)["readings"]["battery.rsoc"]["value"], 87);
}

TEST(WatchPrinter, CsvHasItsHeaderOnce) {
  WatchPrinter printer({.format = Format::kCsv, .bare = false, .terminal_rows = {}});
  EXPECT_TRUE(printer.Next(ReportAt("t1")).starts_with("time,library.dll_version,"));
  EXPECT_TRUE(printer.Next(ReportAt("t2")).starts_with("t2,"));
}

TEST(WatchPrinter, OneReadingIsABareLine) {
  Report report = ReportAt("t1");
  const Reading charge = *FindReading(report.readings, "battery.rsoc");
  report.readings = {charge};
  WatchPrinter printer({.format = Format::kTable, .bare = true, .terminal_rows = {}});
  EXPECT_EQ(printer.Next(report), "87\n");
  report.readings[0].status = Status::kNoAnswer;
  EXPECT_EQ(printer.Next(report), "!no_answer\n");
}

TEST(WatchPrinter, ATerminalIsRedrawnAndKeepsTheLastGoodPicture) {
  WatchPrinter printer({.format = Format::kTable, .bare = false, .terminal_rows = 200});
  const std::string first = printer.Next(ReportAt("t1", true, 55));
  EXPECT_TRUE(first.starts_with("\x1b[2J\x1b[H"));
  EXPECT_NE(first.find("55 %"), std::string::npos);
  const std::string second = printer.Next(ReportAt("t2", true, 54));
  EXPECT_TRUE(second.starts_with("\x1b[Ht2"));
  EXPECT_NE(second.find("54 %"), std::string::npos);
  const std::string failed = printer.Next(ReportAt("t3", false));
  EXPECT_NE(failed.find("54 %"), std::string::npos);
  EXPECT_NE(failed.find("t3  battery: nothing answers since the picture below, taken t2"), std::string::npos);
  EXPECT_NE(printer.Next(ReportAt("t4", true, 53)).find("53 %"), std::string::npos);
}

TEST(WatchPrinter, ATallPictureIsCutToTheTerminal) {
  WatchPrinter printer({.format = Format::kTable, .bare = false, .terminal_rows = 10});
  const std::string picture = printer.Next(ReportAt("t1"));
  EXPECT_EQ(std::ranges::count(picture, '\n'), 9);
  EXPECT_NE(picture.find(" more lines"), std::string::npos);
}

}  // namespace
}  // namespace vexahealth
