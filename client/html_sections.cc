// The sections of the HTML report.
#include <algorithm>
#include <array>
#include <numeric>
#include <optional>
#include <vector>

#include "client/charts.h"
#include "client/html_parts.h"
#include "client/html_report.h"
#include "client/html_text.h"
#include "client/plain_words.h"
#include "client/power_object.h"
#include "client/text.h"

namespace vexahealth {
namespace {

std::optional<int64_t> Number(std::span<const Reading> readings, const std::string& key) {
  const Reading* reading = FindReading(readings, key);
  const auto* number = reading == nullptr ? nullptr : std::get_if<int64_t>(&reading->value);
  return number == nullptr ? std::nullopt : std::optional(*number);
}

// The one reason why nothing of a section is known, as a sentence.
std::string OneReason(const Reading& reading) {
  return Element("p", "class=\"plain\"",
                 HtmlText(Capital(reading.note.empty() ? StatusSentence(reading.status) : reading.note) + "."));
}

// The section's first reading; the section must have one.
const Reading* FirstOf(std::span<const Reading> readings, Section section) {
  return &*std::ranges::find_if(readings,
                                [section](const Reading& reading) { return reading.row->section == section; });
}

// True when every reading of the section lacks its value for the same reason.
bool AllMissingAlike(std::span<const Reading> readings, Section section) {
  const Reading* first = FirstOf(readings, section);
  return std::ranges::all_of(readings, [&](const Reading& reading) {
    return reading.row->section != section ||
           (reading.status != Status::kOk && reading.status == first->status && reading.note == first->note);
  });
}

// How full the battery is.
std::string ChargeBar(std::span<const Reading> readings) {
  const std::optional<int64_t> percent = Number(readings, "battery.rsoc");
  if (!percent) return {};
  const int wide = static_cast<int>(std::clamp<int64_t>(*percent, 0, 100));
  const std::optional<int64_t> remaining = Number(readings, "battery.remaining_capacity");
  const std::optional<int64_t> full = Number(readings, "battery.full_charge_capacity");
  std::string caption = "<b>Charge</b>";
  if (remaining && full) {
    caption += Printf(", %d of %d", static_cast<int>(*remaining), static_cast<int>(*full));
  }
  return Element("p", "class=\"caption\"", caption) + "\n" +
         Printf(
             "<svg class=\"charge\" viewBox=\"0 0 100 4\" preserveAspectRatio=\"none\" role=\"img\" "
             "aria-label=\"State of charge: %d %%\">",
             wide) +
         "<rect class=\"track\" width=\"100\" height=\"4\"/>" +
         Printf("<rect class=\"bar\" width=\"%d\" height=\"4\"/></svg>\n", wide);
}

std::string CellsFigure(std::span<const Reading> readings) {
  std::vector<std::optional<int64_t>> cells;
  int64_t lowest = INT64_MAX;
  int64_t highest = 0;
  size_t told = 0;
  for (int i = 1; i <= 4; ++i) {
    const std::string key = Printf("battery.cell_voltage_%d", i);
    const Reading* reading = FindReading(readings, key);
    if (reading == nullptr || reading->status == Status::kNotPresent) continue;
    const std::optional<int64_t> cell = Number(readings, key);
    cells.push_back(cell);
    if (!cell) continue;
    lowest = std::min(lowest, *cell);
    highest = std::max(highest, *cell);
    ++told;
  }
  if (told == 0) return {};
  std::string caption = "<b>Cell voltages</b> in volts";
  if (told > 1) caption += Printf(", %d mV from lowest to highest", static_cast<int>(highest - lowest));
  return Element("figure", "", Element("figcaption", "", caption) + CellsSvg(cells)) + "\n";
}

std::string SupplyTitle(Supply supply) {
  switch (supply) {
    case Supply::kFixed: return "Fixed";
    case Supply::kBattery: return "Battery";
    case Supply::kVariable: return "Variable";
    case Supply::kProgrammable: return "Programmable (PPS)";
    case Supply::kAdjustableEpr: return "Adjustable (AVS, extended range)";
    case Supply::kAdjustableSpr: return "Adjustable (AVS)";
    case Supply::kReserved: return "Reserved";
  }
  return "Reserved";
}

std::string Thousandths(int number, const char* unit) {
  std::string text = Printf("%d.%03d", number / 1000, number % 1000);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text + "\u00a0" + unit;
}

// One row of the table of objects.
std::string ObjectRow(const std::string& name, uint32_t word, bool chosen) {
  const PowerObject object = DecodePowerObject(word);
  const auto cell = [](const std::string& text) { return Element("td", "class=\"n\"", HtmlText(text)); };
  std::string voltage = Thousandths(object.max_millivolts, "V");
  if (object.min_millivolts != object.max_millivolts) {
    voltage = Thousandths(object.min_millivolts, "V") + " \u2013 " + voltage;
  }
  if (object.supply == Supply::kReserved) voltage = "\u2013";
  std::string row = "<th scope=\"row\">" + HtmlText(name) +
                    (chosen && name != "Contract" ? " <span class=\"tag\">contract</span>" : "") +
                    Element("span", "class=\"note\"", HtmlText(SupplyTitle(object.supply))) + "</th>";
  row += cell(voltage);
  row += cell(object.max_milliamps ? Thousandths(*object.max_milliamps, "A") : "\u2013");
  row += cell(object.max_milliwatts ? Thousandths(*object.max_milliwatts, "W") : "\u2013");
  row += Element("td", "class=\"n code\"", Printf("0x%08x", word));
  return Element("tr", chosen ? "class=\"chosen\"" : "", row) + "\n";
}

std::string ObjectsTable(std::span<const Reading> readings) {
  const std::optional<int64_t> contract = Number(readings, "adapter.contract.word");
  std::string rows;
  bool found = false;
  for (int i = 1; i <= 7; ++i) {
    const std::optional<int64_t> word = Number(readings, Printf("adapter.pdo.%d.word", i));
    if (!word) continue;
    const bool chosen = word == contract && !found;
    found = found || chosen;
    rows += ObjectRow(Printf("Object %d", i), static_cast<uint32_t>(*word), chosen);
  }
  if (contract && !found) rows = ObjectRow("Contract", static_cast<uint32_t>(*contract), true) + rows;
  std::string block = Element("h3", "", "Contract and what the source offers");
  if (rows.empty()) {
    const Reading* reading = FindReading(readings, "adapter.contract.word");
    return reading == nullptr ? "" : Element("div", "class=\"block\"", block + OneReason(*reading)) + "\n";
  }
  block += Element(
      "div", "class=\"wide\"",
      Element("table", "class=\"grid\"",
              "<thead><tr><th scope=\"col\">Object</th>"
              "<th scope=\"col\" class=\"n\">Voltage</th><th scope=\"col\" class=\"n\">Current</th>"
              "<th scope=\"col\" class=\"n\">Power</th><th scope=\"col\" class=\"n code\">Word</th></tr></thead>\n"
              "<tbody>\n" +
                  rows + "</tbody>"));
  return Element("div", "class=\"block\"", block) + "\n";
}

struct Band {
  const char* key;
  const char* title;
};
constexpr Band kBands[] = {{"wifi.band24", "2.4 GHz"}, {"wifi.band5", "5 GHz"}, {"wifi.band6", "6 GHz"}};

std::string BucketKey(const Band& band, size_t bucket) {
  return Printf("%s.rssi.%d", band.key, 10 * (static_cast<int>(bucket) + 1));
}

// ", 4 access points, 1 of them in none of these ranges"
std::string AccessPointsText(const Reading& total, const BandChart& chart) {
  const auto* count = std::get_if<int64_t>(&total.value);
  if (count == nullptr) return {};
  std::string text = Printf(", %lld access point%s", static_cast<long long>(*count), *count == 1 ? "" : "s");
  const int64_t drawn = std::accumulate(chart.counts.begin(), chart.counts.end(), int64_t{0});
  if (drawn < *count) text += Printf(", %lld of them in none of these ranges", static_cast<long long>(*count - drawn));
  return text;
}

// A chart per band, or the reason why there is none.
std::string BandFigures(std::span<const Reading> readings) {
  std::array<BandChart, std::size(kBands)> charts;
  int64_t scale = 3;
  for (size_t i = 0; i < charts.size(); ++i) {
    charts[i].title = kBands[i].title;
    for (size_t bucket = 0; bucket < kSignalBuckets; ++bucket) {
      charts[i].counts[bucket] = Number(readings, BucketKey(kBands[i], bucket)).value_or(0);
      scale = std::max(scale, charts[i].counts[bucket]);
    }
  }
  std::string figures;
  for (size_t i = 0; i < charts.size(); ++i) {
    charts[i].scale = scale;
    const Reading* first = FindReading(readings, BucketKey(kBands[i], 0));
    const Reading* total = FindReading(readings, std::string(kBands[i].key) + ".count");
    if (first == nullptr || total == nullptr) continue;
    const std::string title = Element("b", "", kBands[i].title) + AccessPointsText(*total, charts[i]);
    figures += Element("figure", "",
                       Element("figcaption", "", title) +
                           (first->status == Status::kOk ? BandSvg(charts[i]) : OneReason(*first))) +
               "\n";
  }
  return Element("div", "class=\"figures\"", figures) + "\n";
}

bool IsBucket(const Row& row) { return row.key.find(".rssi.") != std::string_view::npos; }

}  // namespace

std::string BatterySection(std::span<const Reading> readings) {
  const Reading* voltage = FindReading(readings, "battery.voltage");
  const bool absent = voltage != nullptr && voltage->status == Status::kNotPresent;
  std::string content;
  if (absent) {
    content = OneReason(*voltage);
  } else {
    content = Tiles(readings, {"battery.rsoc", "battery.cycle_count", "battery.full_charge_capacity",
                               "battery.remaining_capacity", "battery.voltage", "battery.current",
                               "battery.temperature", "battery.manufacture_date"}) +
              ChargeBar(readings);
  }
  const std::string figure = absent ? "" : CellsFigure(readings);
  const std::string pack = ReadingsTable(readings, Section::kBattery, "Battery readings");
  const std::string charger = ReadingsTable(readings, Section::kCharger, "Charger, power and lid");
  if (figure.empty()) {
    content += Element("div", "class=\"columns\"", pack + charger);
  } else {
    content += Element("div", "class=\"beside\"",
                       Element("div", "class=\"figure\"", figure) + Element("div", "class=\"long\"", pack) +
                           Element("div", "class=\"short\"", charger));
  }
  return SectionBlock("battery", "Battery", content + "\n");
}

std::string AdapterSection(std::span<const Reading> readings) {
  std::string content = ObjectsTable(readings);
  content += Element("div", "class=\"columns\"",
                     ReadingsTable(readings, Section::kAdapter, "Adapter and charger") +
                         ReadingsTable(readings, Section::kPowerDelivery, "USB Power Delivery",
                                       [](const Row& row) { return row.kind == Kind::kPowerObject; }));
  return SectionBlock("adapter", "Power adapter", content);
}

std::string ThermalSection(std::span<const Reading> readings) {
  if (AllMissingAlike(readings, Section::kThermal)) {
    return SectionBlock("thermal", "Fans and temperatures", OneReason(*FirstOf(readings, Section::kThermal)));
  }
  const auto on_tile = [](const Reading& reading) {
    const Row& row = *reading.row;
    return row.section == Section::kThermal && (row.kind == Kind::kRpm || row.kind == Kind::kCelsius) &&
           reading.status == Status::kOk;
  };
  std::string tiles;
  for (const Reading& reading : readings) {
    if (on_tile(reading)) tiles += Tile(reading) + "\n";
  }
  std::string content = tiles.empty() ? "" : Element("dl", "class=\"tiles\"", tiles) + "\n";
  content += ReadingsTable(readings, Section::kThermal, {}, [&](const Row& row) {
    const Reading& reading = *FindReading(readings, row.key);
    return on_tile(reading) && reading.note.empty();
  });
  return SectionBlock("thermal", "Fans and temperatures", content);
}

std::string RadioSection(std::span<const Reading> readings) {
  const bool counted = !AllMissingAlike(readings, Section::kAccessPoints);
  std::string link = ReadingsTable(readings, Section::kWifi, "Wi-Fi link");
  if (counted) link += ReadingsTable(readings, Section::kAccessPoints, "Access points by channel", IsBucket);
  std::string content = Element("div", "class=\"columns\"", link) + "\n";
  content += Element("h3", "", "Access points of the connected network, by signal in dBm");
  content += counted ? BandFigures(readings) : OneReason(*FirstOf(readings, Section::kAccessPoints));
  content += Element("div", "class=\"columns\"",
                     ReadingsTable(readings, Section::kBluetooth, "Bluetooth") +
                         ReadingsTable(readings, Section::kUsb, "USB, disks and HDMI"));
  return SectionBlock("radio", "Radios and ports", content);
}

std::string SettingsSection(std::span<const Reading> readings) {
  return SectionBlock("settings", "Settings",
                      Element("div", "class=\"columns\"",
                              ReadingsTable(readings, Section::kChargeLimit, "Charge limit") +
                                  ReadingsTable(readings, Section::kQuietFan, "Quiet fan") +
                                  ReadingsTable(readings, Section::kApplication, "Application folder")));
}

std::string InventorySection(std::span<const Reading> readings) {
  std::string blocks;
  for (const Section section :
       {Section::kMachine, Section::kProcessor, Section::kStorage, Section::kDisplay, Section::kNetwork}) {
    blocks += ReadingsTable(readings, section, SectionTitle(section));
  }
  return SectionBlock("inventory", "Inventory", Element("div", "class=\"columns\"", blocks));
}

std::string MachineSection(std::span<const Reading> readings) {
  std::string blocks;
  for (const Section section : {Section::kController, Section::kLibrary, Section::kSystem}) {
    blocks += ReadingsTable(readings, section, SectionTitle(section));
  }
  return SectionBlock("controller", "Controller and system", Element("div", "class=\"columns\"", blocks));
}

}  // namespace vexahealth
