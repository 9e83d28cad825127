// The HTML report: whole whatever is missing, harmless whatever a device says, masked unless asked.
#include "client/html_report.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "client/charts.h"
#include "client/families.h"
#include "client/html_text.h"
#include "client/masking.h"
#include "client/plain_words.h"
#include "client/rules.h"

namespace vexahealth {
namespace {

using Json = nlohmann::ordered_json;

Report EmptyReport() {
  return {.library = {.path = "C:\\Vexa\\VexaWinIO64.dll", .loaded = true, .ready = true, .route = Route::kDriver},
          .readings = NothingOf(*FindCommand("all"), "not asked in this test"),
          .error = {},
          .command = "all",
          .time = "2026-02-03T08:05:00.000Z"};
}

void Set(Report& report, std::string_view key, const Value& value) {
  const auto found = std::ranges::find_if(report.readings, [&](const Reading& r) { return r.row->key == key; });
  ASSERT_NE(found, report.readings.end()) << key;
  *found = Ok(*found->row, value);
}

// The data in the page, as a program would read it.
Json DataOf(const std::string& page) {
  const std::string open = "<script type=\"application/json\" id=\"vexahealth-data\">";
  const size_t start = page.find(open) + open.size();
  return Json::parse(page.substr(start, page.find("</script>", start) - start));
}

size_t Count(std::string_view text, std::string_view part) {
  size_t count = 0;
  for (size_t place = text.find(part); place != std::string_view::npos; place = text.find(part, place + 1)) ++count;
  return count;
}

// Every element that is opened is closed, in order.
void ExpectWellNested(std::string_view page) {
  std::vector<std::string> open;
  for (size_t place = page.find('<'); place != std::string_view::npos; place = page.find('<', place + 1)) {
    const size_t end = page.find('>', place);
    ASSERT_NE(end, std::string_view::npos);
    const std::string_view tag = page.substr(place + 1, end - place - 1);
    const std::string name(tag.substr(0, tag.find(' ')));
    if (tag.starts_with('!') || tag.ends_with('/') || name == "meta" || name == "br") continue;
    if (!tag.starts_with('/')) {
      open.push_back(name);
    } else {
      ASSERT_FALSE(open.empty());
      ASSERT_EQ("/" + open.back(), name) << page.substr(place > 200 ? place - 200 : 0, 240);
      open.pop_back();
    }
  }
  EXPECT_TRUE(open.empty());
}

constexpr const char kHostile[] = "</script><img src=x onerror='a(1)'>&amp;\"\x1b[2J\u202e\xff;=1+1";

TEST(HtmlReport, EveryTextOfADeviceIsHarmless) {
  Report report = EmptyReport();
  for (Reading& reading : report.readings) {
    const bool masked = IsSerial(*reading.row);
    if (!masked) reading = Ok(*reading.row, kHostile, kHostile);
  }
  report.error = kHostile;
  report.library.path = kHostile;
  const std::string page = HtmlReport(report, Serials::kMask);
  ExpectWellNested(page);
  EXPECT_EQ(page.find("<img"), std::string::npos);
  EXPECT_EQ(Count(page, "<script"), 1u);
  EXPECT_EQ(Count(page, "</script"), 1u);
  EXPECT_EQ(page.find('\x1b'), std::string::npos);
  EXPECT_EQ(page.find("\u202e"), std::string::npos);
  EXPECT_EQ(page.find('\xff'), std::string::npos);
  EXPECT_EQ(DataOf(page)["readings"]["inventory.product"]["value"],
            "</script><img src=x onerror='a(1)'>&amp;\"\x1b[2J\u202e\ufffd;=1+1");
}

TEST(HtmlReport, ItIsWholeWhateverIsMissing) {
  for (const Status status :
       {Status::kNoAnswer, Status::kUnsupported, Status::kNotPresent, Status::kNotCollected, Status::kError}) {
    Report report = EmptyReport();
    for (Reading& reading : report.readings) reading = Missing(*reading.row, status, "");
    const std::string page = HtmlReport(report, Serials::kMask);
    ExpectWellNested(page);
    EXPECT_NE(page.find(StatusSentence(status)), std::string::npos);
    EXPECT_EQ(Json::parse(HtmlReportJson(report, Serials::kMask)), DataOf(page));
    for (const char* loads : {"http://", "https://", "url(", "@import", "<link"}) {
      EXPECT_EQ(page.find(loads), std::string::npos) << loads;
    }
  }
}

TEST(HtmlReport, SerialsStandInNoFormUnlessAsked) {
  Report report = EmptyReport();
  Set(report, "inventory.serial_number", "VX12345678");
  Set(report, "inventory.mac_addresses", "02:00:5E:10:00:01;02:00:5E:10:00:02");
  Set(report, "inventory.ssd_serial_numbers", "  S5H2NS1X123456  ;");
  Set(report, "inventory.disks", "Disk s5h2ns1x123456,512000000000,4,0");  // a firmware that puts it in the model
  Set(report, "inventory.board", "AL14");
  Set(report, "application.folder", "C:\\Users\\Ada Lovelace\\AppData\\Vexa\\");
  Set(report, "battery.serial_number", int64_t{19754});
  Set(report, "battery.manufacture_information", "0x4d,0x2a");
  report.library.path = "C:\\users\\Ada Lovelace\\Vexa\\VexaWinIO64.dll";
  const std::string masked = HtmlReport(report, Serials::kMask);
  for (const char* secret : {"VX12345678", "02:00:5E", "S5H2NS1X", "s5h2ns1x", "Lovelace", "19754", "0x4d,0x2a"}) {
    EXPECT_EQ(masked.find(secret), std::string::npos) << secret;
  }
  EXPECT_NE(masked.find("AL14"), std::string::npos);
  EXPECT_NE(masked.find("are masked"), std::string::npos);
  const Json data = DataOf(masked);
  EXPECT_EQ(data["serials"], "masked");
  EXPECT_EQ(data["readings"]["inventory.serial_number"],
            Json::parse(R"({"value": null, "unit": null, "status": "not_collected", "source": "WMIGetSN", "reason": )"
                        R"("masked: it tells this machine from others"})"));
  EXPECT_EQ(data["readings"]["inventory.disks"]["value"], "Disk [masked],512000000000,4,0");
  EXPECT_EQ(data["library"]["path"], "C:\\users\\[masked]\\Vexa\\VexaWinIO64.dll");

  const std::string shown = HtmlReport(report, Serials::kShow);
  for (const char* secret : {"VX12345678", "02:00:5E:10:00:02", "Lovelace", "19754"}) {
    EXPECT_NE(shown.find(secret), std::string::npos) << secret;
  }
  EXPECT_EQ(DataOf(shown)["serials"], "shown");
}

TEST(HtmlReport, TheContractIsMarkedOnceAmongTheObjects) {
  Report report = EmptyReport();
  Set(report, "adapter.contract.word", int64_t{0x000641F4});
  Set(report, "adapter.pdo.1.word", int64_t{0x0801912C});
  Set(report, "adapter.pdo.2.word", int64_t{0x000641F4});
  Set(report, "adapter.pdo.3.word", int64_t{0x000641F4});
  const std::string section = AdapterSection(report.readings);
  EXPECT_EQ(Count(section, "class=\"chosen\""), 1u);
  EXPECT_NE(section.find("Object 2 <span class=\"tag\">"), std::string::npos);
  EXPECT_NE(section.find("20\u00a0V"), std::string::npos);
  EXPECT_NE(section.find("100\u00a0W"), std::string::npos);
}

TEST(HtmlText, SizesListsAndDaysReadWell) {
  Report report = EmptyReport();
  const auto value = [&report](std::string_view key, const char* text) {
    Set(report, key, text);
    return HtmlValue(*FindReading(report.readings, key));
  };
  EXPECT_EQ(value("inventory.memory_size", "17179869184;8589934592"), "16\u00a0GiB<br>8\u00a0GiB");
  EXPECT_EQ(value("inventory.disks", "A,1024209543168,4,0"), "A, 1024.2\u00a0GB, 4, 0");
  EXPECT_EQ(value("inventory.ssd_free", "71303168"), "71.3\u00a0MB");
  EXPECT_EQ(value("inventory.ssd_free", "999999"), "999999");
  EXPECT_EQ(value("inventory.bios_date", "20250317000000.000000+000"), "2025-03-17");
  EXPECT_EQ(value("inventory.bios_date", "2025x317000000.000000+000"), "2025x317000000.000000+000");
  EXPECT_EQ(value("inventory.product", "<A>;B"), "&lt;A&gt;<br>B");
}

TEST(Charts, BarsAreMeasuredByTheCommonScale) {
  BandChart chart{.title = "5 GHz", .counts = {0, 2, 4, 0, 0, 0, 0, 0, 9}, .scale = 4};
  const std::string svg = BandSvg(chart);
  EXPECT_EQ(Count(svg, "<rect"), 3u);
  EXPECT_NE(svg.find("height=\"53.0\""), std::string::npos);  // half of 106
  EXPECT_EQ(Count(svg, "height=\"106.0\""), 2u);              // more than the scale ends at the top
  EXPECT_NE(svg.find("\u221220 to \u221230 dBm: 2;"), std::string::npos) << svg.substr(0, 300);
  ExpectWellNested(svg);
  chart.scale = 0;
  ExpectWellNested(BandSvg(chart));
}

TEST(Charts, CellsKeepTheirPlacesWhateverTheyTell) {
  const std::optional<int64_t> cells[] = {3701, std::nullopt, 3512};
  const std::string svg = CellsSvg(cells);
  EXPECT_EQ(Count(svg, "<circle"), 2u);
  EXPECT_NE(svg.find("Cell 2</text>"), std::string::npos);
  ExpectWellNested(svg);
  const std::optional<int64_t> extreme[] = {0, 65535};
  EXPECT_LT(Count(CellsSvg(extreme), "class=\"tick\""), 10u);
  EXPECT_EQ(CellsSvg(std::span<const std::optional<int64_t>>()), "");
}

}  // namespace
}  // namespace vexahealth
