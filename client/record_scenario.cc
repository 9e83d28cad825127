// The scenario of a recording.
#include <algorithm>
#include <array>
#include <map>
#include <optional>

#include "client/json_parts.h"
#include "client/record_places.h"
#include "client/recording.h"
#include "client/text.h"
#include "client/values.h"

namespace vexahealth {
namespace {

constexpr uint8_t kFailed = 5;  // the driver's status of registers that did not answer
constexpr size_t kManufacturerSize = 16;

std::string Hex(uint32_t byte) { return Printf("0x%02X", byte); }

std::string HexBytes(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) text += Printf(text.empty() ? "%02X" : " %02X", static_cast<unsigned char>(byte));
  return text;
}

Json NumberRow(const char* place, uint8_t offset, std::string_view name, uint8_t length, uint32_t number) {
  const char* kind = length == 1 ? "byte" : length == 2 ? "word" : "dword";
  const uint32_t kept = length == 4 ? number : number & ((uint32_t{1} << 8 * length) - 1);
  return {{place, Hex(offset)}, {"name", name}, {kind, kept}};
}

Json FailedRow(const char* place, uint8_t offset, std::string_view name) {
  return {{place, Hex(offset)}, {"name", std::string(name) + ": no answer"}, {"status", kFailed}};
}

// Registers of the driver's part, group by group.
class DriverScenario {
 public:
  explicit DriverScenario(const Recording& recording, Serials serials) : recording_(recording), serials_(serials) {}

  Json Ec() {
    AddIdentity();
    for (const DriverPlace& place : DriverPlaces()) AddNumber(place);
    AddBits();
    AddManufacturer();
    AddPart();
    AddThermal();
    Json ec = {{"unlisted", {{"byte", 0}}}};
    if (!groups_[kInformationGroup].empty()) ec["information"] = {{"registers", groups_[kInformationGroup]}};
    ec["groups"] = Json::array();
    for (auto& [group, registers] : groups_) {
      if (group == kInformationGroup) continue;
      Json entry = {{"group", group}, {"registers", registers}};
      if (group == 2 && !fans_.empty()) entry["lists"] = Json::array({{{"index", "0x32"}, {"items", fans_}}});
      if (group == 1) AddHandshake(entry);
      ec["groups"].push_back(entry);
    }
    ec["gauge"] = Gauge();
    if (const std::optional<uint32_t> tablet = recording_.Number("system.tablet_mode")) {
      Json command = {{"command", "0x8E"}, {"data", {"0x33", "0x00"}}, {"name", "tablet mode"}};
      command[*tablet > 0xFF ? "status" : "byte"] = *tablet > 0xFF ? uint32_t{kFailed} : *tablet;
      ec["commands"] = Json::array({command});
    }
    return ec;
  }

  const Json& rules() const { return rules_; }

 private:
  void Put(uint8_t group, Json row) {
    Json& rows = groups_[group];
    if (rows.is_null()) rows = Json::array();
    rows.push_back(std::move(row));
  }

  void AddIdentity() {
    const std::optional<uint32_t> version = recording_.Number("ec.table_version");
    if (version) {
      Put(kInformationGroup, *version > 0xFF ? FailedRow("register", 0x50, "ec.table_version")
                                             : NumberRow("register", 0x50, "ec.table_version", 1, *version));
    }
    AddChipName();
    const std::optional<uint32_t> revision = recording_.Number("ec.firmware_revision");
    if (!revision || *revision > 0xFFFF || *revision == VEXA_NO_FIRMWARE_REVISION) return;
    // A revision that the library does not know has lost its characters: "00" is another one of them.
    const uint32_t word = *revision == VEXA_UNKNOWN_FIRMWARE_REVISION ? 0x3030 : *revision;
    Put(kInformationGroup, NumberRow("register", 0x03, "ec.firmware_revision", 1, word >> 8));
    Put(kInformationGroup, NumberRow("register", 0x04, "ec.firmware_revision", 1, word));
  }

  // The name, and behind a short one what the kept name tells of the registers there.
  void AddChipName() {
    const Told* name = recording_.Find("ec.chip_name");
    const std::optional<uint32_t> kept = recording_.Number("ec.kept_chip_name");
    std::string bytes;
    if (kept && *kept != VEXA_NO_ANSWER) {
      for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(*kept >> shift);
    }
    if (name != nullptr && name->number == 1) {
      Put(kInformationGroup,
          NumberRow("register", 0x11, "length of the chip name", 1, static_cast<uint32_t>(name->text.size())));
      bytes.replace(0, std::min(bytes.size(), name->text.size()), name->text);
    } else if (name != nullptr) {
      Put(kInformationGroup, FailedRow("register", 0x11, "length of the chip name"));
    }
    if (!bytes.empty()) {
      Put(kInformationGroup, {{"register", "0x12"}, {"name", "ec.chip_name"}, {"hex", HexBytes(bytes)}});
    } else if (kept) {
      Put(kInformationGroup, FailedRow("register", 0x12, "ec.chip_name"));
    }
  }

  void AddNumber(const DriverPlace& place) {
    std::optional<uint32_t> number = recording_.Number(place.key);
    if (!number) return;
    const char* at = place.group == kInformationGroup ? "register" : "offset";
    if (*number == VEXA_NO_ANSWER) {
      // The highest byte is asked for first.
      Put(place.group, FailedRow(at, static_cast<uint8_t>(place.offset + place.length - 1), place.key));
      return;
    }
    if (*number == VEXA_NOT_AVAILABLE && place.group == 0x0C) return;  // the machine does not tell its wattages
    if (place.key == "battery.serial_number" && serials_ == Serials::kMask) number = 0;
    Put(place.group, NumberRow(at, place.offset, place.key, place.length, *number));
  }

  void AddBits() {
    std::map<std::pair<uint8_t, uint8_t>, std::pair<uint32_t, std::string>> bytes;
    for (const DriverBit& bit : DriverBits()) {
      const std::optional<uint32_t> number = recording_.Number(bit.key);
      if (!number) continue;
      auto& [byte, names] = bytes[{bit.group, bit.offset}];
      byte |= (*number & 1) << bit.bit;
      names += (names.empty() ? "" : ", ") + std::string(bit.key);
    }
    for (const auto& [place, byte] : bytes) {
      Put(place.first, NumberRow("offset", place.second, byte.second, 1, byte.first));
    }
    // Without normal adapters the machine charges from USB PD; with them alone it does not.
    const std::optional<uint32_t> pd = recording_.Number("adapter.pd_charging");
    if (pd) Put(4, NumberRow("offset", 0x08, "adapter.pd_charging", 1, *pd == 1 ? 0 : 0x80));
  }

  // The gauge's code is one of the name's characters.
  void AddManufacturer() {
    const Told* name = recording_.Find("battery.manufacturer");
    const std::optional<uint32_t> gauge = recording_.Number("battery.gauge_chip");
    if (name == nullptr) return;
    if (name->number != 1) {
      Put(1, FailedRow("offset", 0x10, "battery.manufacturer"));
      if (gauge && *gauge <= 0xFF) Put(1, NumberRow("offset", 0x13, "battery.gauge_chip", 1, *gauge));
      return;
    }
    std::string bytes = name->text.substr(0, kManufacturerSize);
    bytes.resize(kManufacturerSize, '\0');
    if (gauge && *gauge <= 0xFF) bytes[3] = static_cast<char>(*gauge);
    Put(1, {{"offset", "0x10"}, {"name", "battery.manufacturer"}, {"hex", HexBytes(bytes)}});
  }

  void AddPart() {
    const std::optional<uint32_t> answer = recording_.Number("adapter.controller_part");
    if (!answer) return;
    if (!recording_.part) {
      Put(5, FailedRow("offset", 0x01, "adapter.controller_part"));
      return;
    }
    const VexaPdIcPartNumber& part = *recording_.part;
    Put(5, NumberRow("offset", 0x01, "length of the part number", 1, part.told_length));
    if (part.length > 0) {
      Put(5, {{"offset", "0x02"},
              {"name", "adapter.controller_part"},
              {"hex", HexBytes(std::string_view(part.text, part.length))}});
    }
  }

  void AddThermal() {
    if (const std::optional<uint32_t> board = recording_.Number("temperature.board")) {
      Put(2, *board == VEXA_NO_ANSWER ? FailedRow("offset", 0x10, "temperature.board")
                                      : NumberRow("offset", 0x10, "board sensors", 1, *board == 0 ? 0 : 1));
      if (*board != VEXA_NO_ANSWER) Put(2, NumberRow("offset", 0x12, "temperature.board", 1, *board));
    }
    AddFans();
  }

  // A list's items hold numbers only: silence is a rule for all of them, and of one among others it becomes 0.
  void AddFans() {
    bool silent = true;
    for (unsigned fan = 1; fan <= VEXA_MAX_FAN_INDEX + 1; ++fan) {
      const std::optional<uint32_t> rpm = recording_.Number(Printf("fan.%u.speed", fan));
      if (!rpm) break;
      const bool answered = *rpm <= 0xFFFF;
      silent = silent && !answered;
      fans_.push_back(Json::array({{{"offset", "0x33"}, {"word", answered ? *rpm : 0}}}));
    }
    if (fans_.empty() || !silent) return;
    rules_.push_back({{"description", "fans: no answer"},
                      {"on", {{"ec_command", "0xDD"}, {"group", 2}, {"offset", "0x34"}}},
                      {"then", {{"driver_status", kFailed}}}});
  }

  void AddHandshake(Json& group) const {
    const Told* answer = recording_.Find("battery.manufacture_information");
    if (answer == nullptr) return;
    std::string bytes;
    for (size_t place = 0; place < answer->text.size();) {
      const size_t end = std::min(answer->text.find(',', place), answer->text.size());
      bytes += static_cast<char>(std::strtoul(answer->text.c_str() + place, nullptr, 16));
      place = end + 1;
    }
    if (!bytes.empty() && serials_ == Serials::kMask) std::ranges::fill(bytes, '\0');
    if (bytes.size() == 32) {
      group["handshake"] = {{"hex", HexBytes(bytes)}};
    } else {
      group["handshake"] = {{"hex", HexBytes(std::string(32, '\0'))}, {"precharge_timeout", true}};
    }
  }

  Json Gauge() {
    Json registers = Json::array();
    for (const GaugePlace& place : GaugePlaces()) {
      const Told* answer = recording_.Find(place.key);
      if (answer == nullptr) continue;
      Json row = {{"register", Hex(place.gauge_register)}, {"name", place.key}};
      const bool answered = place.text ? answer->number == 1 : answer->number != VEXA_NO_ANSWER;
      if (!answered) {
        rules_.push_back({{"description", std::string(place.key) + ": no answer"},
                          {"on", {{"ec_command", "0xDE"}, {"data", {"0x03", Hex(place.gauge_register)}}}},
                          {"then", {{"driver_status", kFailed}}}});
        continue;
      }
      if (place.text) {
        if (answer->text.empty()) continue;
        row["hex"] = HexBytes(answer->text);
      } else {
        row["dword"] = answer->number;
      }
      registers.push_back(row);
    }
    return registers;
  }

  const Recording& recording_;
  Serials serials_;
  std::map<int, Json> groups_;
  Json fans_ = Json::array();
  Json rules_ = Json::array();
};

Json FirmwareGauge(const Recording& recording, Serials serials) {
  Json registers = Json::array();
  for (const FirmwareGaugePlace& place : FirmwareGaugePlaces()) {
    const std::optional<uint32_t> number = recording.Number(place.key);
    const bool masked = place.key == "battery.serial_number" && serials == Serials::kMask;
    // A failed call and a gauge that is not there read as 0, and so does this.
    const uint32_t word = number && *number != VEXA_NO_ANSWER && !masked ? *number : 0;
    registers.push_back(NumberRow("register", place.gauge_register, place.key, 2, word));
  }
  if (const std::optional<uint32_t> error = recording.Number("battery.error")) {
    registers.push_back(NumberRow("register", 0x99, "battery.error", 2, *error == 1 ? 0x80 : 0));
  }
  for (const GaugePlace& place : GaugePlaces()) {
    if (!place.text) continue;
    const Told* answer = recording.Find(place.key);
    Json row = {{"register", Hex(place.gauge_register)}, {"name", place.key}};
    if (answer != nullptr && answer->number == 1 && !answer->text.empty()) {
      row["hex"] = HexBytes(answer->text);
    } else {
      row["hex"] = "00";
      row["count"] = 0;
    }
    registers.push_back(row);
  }
  return registers;
}

Json FirmwareTables(const Recording& recording) {
  std::map<uint8_t, Json> tables;
  for (const FirmwarePlace& place : FirmwarePlaces()) {
    const std::optional<uint32_t> number = recording.Number(place.key);
    if (!number || *number == VEXA_NO_ANSWER) continue;  // what is not listed does not answer
    Json& rows = tables[place.table];
    if (rows.is_null()) rows = Json::array();
    rows.push_back(NumberRow("offset", place.offset, place.key, place.length, *number));
  }
  const std::optional<uint32_t> mode = recording.Number("fan.test_mode");
  if (mode && *mode != VEXA_NO_ANSWER) {
    Json& rows = tables[1];
    if (rows.is_null()) rows = Json::array();
    rows.push_back(NumberRow("offset", 0x02, "fan.test_mode", 1, *mode << 1));
  }
  Json list = Json::array();
  for (const auto& [table, rows] : tables) list.push_back({{"table", table}, {"registers", rows}});
  return list;
}

// The wattages, which the firmware route takes from the ACPI device.
Json AcpiMethods(const Recording& recording) {
  constexpr std::pair<std::string_view, int> kWattages[] = {
      {"adapter.standard_power", 1}, {"adapter.sufficient_power", 2}, {"adapter.champion_port_power", 3}};
  Json methods = Json::array();
  for (const auto& [key, argument] : kWattages) {
    const std::optional<uint32_t> watts = recording.Number(key);
    if (!watts || *watts > 0xFFFF) continue;
    methods.push_back(
        {{"method", "DSTS"}, {"arguments", {"0x001200F2", argument}}, {"name", key}, {"result", 0x10000u | *watts}});
  }
  return methods;
}

}  // namespace

std::string ScenarioText(const Recording& recording, Serials serials) {
  const bool firmware = recording.route == Route::kFirmware;
  Json scenario;
  scenario["description"] = "Recorded by vexahealth " + std::string(kClientVersion) + " at " + recording.time +
                            (serials == Serials::kMask ? "; serial number and manufacture information masked." : ".");
  if (!firmware) {
    scenario["driver"] = {{"version", recording.Number("driver.version").value_or(0)}};
    DriverScenario driver(recording, serials);
    scenario["ec"] = driver.Ec();
    if (!driver.rules().empty()) scenario["rules"] = driver.rules();
    return Dump(scenario);
  }
  scenario["acpi"] = {{"unlisted", {{"result", 0}}}, {"methods", AcpiMethods(recording)}};
  scenario["firmware"] = {
      {"ec", {{"tables", FirmwareTables(recording)}, {"gauge", FirmwareGauge(recording, serials)}}}};
  return Dump(scenario);
}

}  // namespace vexahealth
