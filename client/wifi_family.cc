// The Wi-Fi link and the access points around it.
#include <array>
#include <charconv>

#include "client/families.h"
#include "client/marked_values.h"
#include "client/rules.h"

namespace vexahealth {
namespace {

constexpr Section kWifi = Section::kWifi;
constexpr Section kPoints = Section::kAccessPoints;

// A row of the link; a row of a count inside of a text.
constexpr Row Link(std::string_view key, std::string_view label, std::string_view name, AskFunction ask, Kind kind) {
  return {.key = key, .label = label, .section = kWifi, .export_name = name, .ask = ask, .kind = kind};
}

constexpr Row Count(std::string_view key, std::string_view label, std::string_view name, AskFunction ask,
                    std::string_view member = {}) {
  return {.key = key,
          .label = label,
          .section = kPoints,
          .export_name = name,
          .ask = ask,
          .kind = Kind::kStations,
          .member = member};
}

#define VEXA_COUNT(key, label, name) Count("wifi." key, label, VEXA_EXPORT(name))
#define VEXA_MEMBER(key, label, name, member) Count("wifi." key, label, VEXA_EXPORT(name), member)
#define VEXA_BUCKET(band, label, name, from, to) \
  Count("wifi." band ".rssi." #from, label ", -" #from " to -" #to " dBm", VEXA_EXPORT(name), "-" #from "~-" #to)
#define VEXA_BUCKETS(band, label, name)                                               \
  VEXA_BUCKET(band, label, name, 10, 20), VEXA_BUCKET(band, label, name, 20, 30),     \
      VEXA_BUCKET(band, label, name, 30, 40), VEXA_BUCKET(band, label, name, 40, 50), \
      VEXA_BUCKET(band, label, name, 50, 60), VEXA_BUCKET(band, label, name, 60, 70), \
      VEXA_BUCKET(band, label, name, 70, 80), VEXA_BUCKET(band, label, name, 80, 90), \
      VEXA_BUCKET(band, label, name, 90, 100)

constexpr std::array<Row, 9 + 15 + 27> kRowsOfWifi = {{
    Link("wifi.connected", "Connected", VEXA_EXPORT(RF_WiFiIsConnected), Kind::kFlag),
    Link("wifi.card", "Adapter", VEXA_EXPORT(RF_WiFiCardName), Kind::kText),
    Link("wifi.rssi", "Signal", VEXA_EXPORT(RF_WiFiRssi), Kind::kDbm),
    Link("wifi.rssi_main", "Signal, main antenna", VEXA_EXPORT(RF_WiFi_Main_Aux_Rssi), Kind::kDbm),
    Link("wifi.rssi_aux", "Signal, other antenna", VEXA_EXPORT(RF_WiFi_Main_Aux_Rssi), Kind::kDbm),
    Link("wifi.channel", "Channel", VEXA_EXPORT(RF_WiFiChannel), Kind::kChannel),
    Link("wifi.phy", "Kind of link", VEXA_EXPORT(RF_PhyMode), Kind::kText),
    Link("wifi.max_rate", "Largest rate", VEXA_EXPORT(RF_WiFiMaxRate), Kind::kMegabits),
    Link("wifi.access_point_vendor", "Access point's vendor", VEXA_EXPORT(RF_AP_MAC), Kind::kText),

    VEXA_COUNT("band24.count", "2.4 GHz", RF_WiFi_2_4G_AP_Num),
    VEXA_MEMBER("band24.channel.1", "2.4 GHz, channel 1", RF_WiFi_2_4G_AP_Ch_Num, "ch1"),
    VEXA_MEMBER("band24.channel.6", "2.4 GHz, channel 6", RF_WiFi_2_4G_AP_Ch_Num, "ch6"),
    VEXA_MEMBER("band24.channel.11", "2.4 GHz, channel 11", RF_WiFi_2_4G_AP_Ch_Num, "ch11"),
    VEXA_MEMBER("band24.other_channels", "2.4 GHz, other channels", RF_WiFi_2_4G_AP_Ch_Num, "others"),
    VEXA_BUCKETS("band24", "2.4 GHz", RF_WiFi_2_4G_AP_RSSI_Num),
    VEXA_COUNT("band5.count", "5 GHz", RF_WiFi_5G_AP_Num),
    VEXA_MEMBER("band5.band.1", "5 GHz, 5151 to 5250 MHz", RF_WiFi_5G_AP_Band_Num, "band1"),
    VEXA_MEMBER("band5.band.2", "5 GHz, 5251 to 5350 MHz", RF_WiFi_5G_AP_Band_Num, "band2"),
    VEXA_MEMBER("band5.band.3", "5 GHz, 5471 to 5725 MHz", RF_WiFi_5G_AP_Band_Num, "band3"),
    VEXA_MEMBER("band5.band.4", "5 GHz, 5726 to 5850 MHz", RF_WiFi_5G_AP_Band_Num, "band4"),
    VEXA_BUCKETS("band5", "5 GHz", RF_WiFi_5G_AP_RSSI_Num),
    VEXA_COUNT("band6.count", "6 GHz", RF_WiFi_6G_AP_Num),
    VEXA_MEMBER("band6.unii.5", "6 GHz, 5926 to 6425 MHz", RF_WiFi_6G_AP_NUII_Num, "nuii5"),
    VEXA_MEMBER("band6.unii.6", "6 GHz, 6426 to 6525 MHz", RF_WiFi_6G_AP_NUII_Num, "nuii6"),
    VEXA_MEMBER("band6.unii.7", "6 GHz, 6526 to 6875 MHz", RF_WiFi_6G_AP_NUII_Num, "nuii7"),
    VEXA_MEMBER("band6.unii.8", "6 GHz, 6876 to 7125 MHz", RF_WiFi_6G_AP_NUII_Num, "nuii8"),
    VEXA_BUCKETS("band6", "6 GHz", RF_WiFi_6G_AP_RSSI_Num),
}};

#undef VEXA_BUCKETS
#undef VEXA_BUCKET
#undef VEXA_MEMBER
#undef VEXA_COUNT

constexpr MarkerReasons kReasons = {.not_collected = "no Wi-Fi adapter, or it is not connected",
                                    .failed = "the Wi-Fi service did not answer"};

// By itself the mark of nothing collected means that there is no link. Every value that a failed collection did not
// come to has it too; and beside a link the counts and the antennas have it while another link is in use.
void ExplainMissing(std::span<Reading> readings) {
  const Reading connected = readings.front();
  const bool failed = connected.status == Status::kNoAnswer;
  const bool link_is_told = FindReading(readings, "wifi.access_point_vendor")->status == Status::kOk;
  if (!failed && connected.value != Value(true)) return;
  for (Reading& reading : readings) {
    if (reading.status != Status::kNotPresent) continue;
    const bool counted = reading.row->section == kPoints || reading.row->export_name == "RF_WiFi_Main_Aux_Rssi";
    if (!failed && counted && link_is_told) {
      reading = Missing(*reading.row, Status::kNotCollected, "collected only while Wi-Fi is the network link");
    } else {
      reading =
          Missing(*reading.row, Status::kNoAnswer, failed ? kReasons.failed : "the Wi-Fi service does not tell it");
    }
  }
}

// "-52:-58": the antenna's number, where something was read.
Reading Antenna(const Row& row, const Answer& answer, bool main) {
  if (!answer) return DecideMarked(row, answer, kReasons);
  const std::string_view text = answer->text;
  const size_t colon = text.find(':');
  const std::string_view part =
      main ? text.substr(0, colon) : text.substr(colon == std::string_view::npos ? text.size() : colon + 1);
  int32_t dbm = 0;
  const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), dbm);
  if (error != std::errc() || end != part.data() + part.size()) {
    return Missing(row, Status::kError, "the answer is not two numbers");
  }
  return Ok(row, int64_t{dbm});
}

}  // namespace

std::span<const Row> WifiRows() { return kRowsOfWifi; }

std::vector<Reading> CollectWifi(Session& session) {
  session.Tell("Wi-Fi");
  std::vector<Reading> readings;
  AnswerCache answers(session.context());
  for (const Row& row : kRowsOfWifi) {
    if (row.key == "wifi.rssi_main" || row.key == "wifi.rssi_aux") {
      readings.push_back(Antenna(row, answers.Of(row), row.key == "wifi.rssi_main"));
    } else {
      readings.push_back(DecideMarked(row, answers.Of(row), kReasons));
    }
  }
  ExplainMissing(readings);
  return readings;
}

}  // namespace vexahealth
