// The report that a person mails: one HTML file with everything in it, readable without script and on paper.
#ifndef CLIENT_HTML_REPORT_H_
#define CLIENT_HTML_REPORT_H_

#include <span>
#include <string>
#include <string_view>

#include "client/reading.h"
#include "client/verdicts.h"

namespace vexahealth {

// `report` is that of the command "all". Unless serials are shown, it is masked here, in the text and in the data
// alike.
enum class Serials { kMask, kShow };
[[nodiscard]] std::string HtmlReport(const Report& report, Serials serials);

// The data of the page alone as one JSON value: the report's own with its verdicts.
[[nodiscard]] std::string HtmlReportJson(const Report& report, Serials serials);

// The page's style sheet.
std::string_view HtmlStyle();

// Parts of the page: each a <section> with a heading.
std::string BatterySection(std::span<const Reading> readings);
std::string AdapterSection(std::span<const Reading> readings);
std::string ThermalSection(std::span<const Reading> readings);
std::string RadioSection(std::span<const Reading> readings);
std::string SettingsSection(std::span<const Reading> readings);
std::string InventorySection(std::span<const Reading> readings);
std::string MachineSection(std::span<const Reading> readings);

}  // namespace vexahealth

#endif  // CLIENT_HTML_REPORT_H_
