// The power adapter, its USB Power Delivery contract and its cable.
#include <algorithm>
#include <array>
#include <utility>

#include "client/families.h"
#include "client/power_object.h"
#include "client/rules.h"
#include "client/values.h"

namespace vexahealth {
namespace {

constexpr Section kAdapter = Section::kAdapter;
constexpr Section kPd = Section::kPowerDelivery;
constexpr Gate kTable = Gate::kTable;
constexpr size_t kPartsOfObject = 6;

// Rows of one power data object: the word itself, and what it says.
#define VEXA_PART(key, label, name, kind) {key, label, kPd, VEXA_EXPORT(name), kind, kTable, OnFirmware::kPlain, true}
#define VEXA_OBJECT(key, label, name)                                                           \
  {key ".word", label, kPd, VEXA_EXPORT(name), Kind::kPowerObject, kTable},                     \
      VEXA_PART(key ".supply", label " kind", name, Kind::kText),                               \
      VEXA_PART(key ".min_voltage", label " least voltage", name, Kind::kMillivolts),           \
      VEXA_PART(key ".max_voltage", label " largest voltage", name, Kind::kMillivolts),         \
      VEXA_PART(key ".max_current", label " largest current", name, Kind::kMilliampsRequested), \
      VEXA_PART(key ".max_power", label " largest power", name, Kind::kMilliwatts)

constexpr std::array<Row, 9 + 8 * kPartsOfObject + 13> kRowsOfAdapter = {{
    {"adapter.online", "External power", kAdapter, VEXA_EXPORT(Power_Read_ACDCMode), Kind::kFlag},
    {"adapter.pd_charging", "Runs on USB PD", kAdapter, VEXA_EXPORT(Power_PD_Charging), Kind::kFlag, kTable},
    {"adapter.standard_power", "Adapter sold with it", kAdapter, VEXA_EXPORT(Adapter_Read_Standard_Watt), Kind::kWatts,
     Gate::kController},
    {"adapter.sufficient_power", "Least that is enough", kAdapter, VEXA_EXPORT(Adapter_Read_Sufficient_Watt),
     Kind::kWatts, Gate::kController},
    {"adapter.champion_port_power", "At the champion port", kAdapter, VEXA_EXPORT(Adapter_Read_ChampionPort_Watt),
     Kind::kWatts, Gate::kController},
    {"adapter.controller_part", "PD controller", kAdapter, VEXA_OWN_EXPORT(Adapter_Read_PD_IC_PN), Kind::kText, kTable},
    {"charger.interrupt", "Charger interrupt", kAdapter, VEXA_EXPORT(Adapter_Read_Charger_Interrupt), Kind::kHex8,
     kTable},
    {"charger.information", "Charger information", kAdapter, VEXA_EXPORT(Adapter_Read_Charger_Information), Kind::kHex8,
     kTable},
    {"adapter.data_configuration", "Power data configuration", kAdapter,
     VEXA_EXPORT(Adapter_Read_Power_Big_Data_Config), Kind::kHex8, kTable},

    VEXA_OBJECT("adapter.contract", "Contract", Adapter_Read_Contract_PDO),
    VEXA_OBJECT("adapter.pdo.1", "Object 1", Adapter_Read_PDO1),
    VEXA_OBJECT("adapter.pdo.2", "Object 2", Adapter_Read_PDO2),
    VEXA_OBJECT("adapter.pdo.3", "Object 3", Adapter_Read_PDO3),
    VEXA_OBJECT("adapter.pdo.4", "Object 4", Adapter_Read_PDO4),
    VEXA_OBJECT("adapter.pdo.5", "Object 5", Adapter_Read_PDO5),
    VEXA_OBJECT("adapter.pdo.6", "Object 6", Adapter_Read_PDO6),
    VEXA_OBJECT("adapter.pdo.7", "Object 7", Adapter_Read_PDO7),
    {"adapter.pdo_power_record", "Wattage record", kPd, VEXA_EXPORT(Adapter_Read_PDO_Watt), Kind::kHex32, kTable},
    {"adapter.alert", "Last alert", kPd, VEXA_EXPORT(Adapter_Read_PD_ADO), Kind::kHex8, kTable},
    {"adapter.source.vendor_id", "Source vendor", kPd, VEXA_EXPORT(Adapter_Read_PD_Get_Source_Cap_Extend_VID),
     Kind::kHex16, kTable},
    {"adapter.source.product_id", "Source product", kPd, VEXA_EXPORT(Adapter_Read_PD_Get_Source_Cap_Extend_PID),
     Kind::kHex16, kTable},
    {"adapter.source.certificate_id", "Source certificate", kPd, VEXA_EXPORT(Adapter_Read_PD_Get_Source_Cap_Extend_XID),
     Kind::kHex32, kTable},
    {"adapter.source.firmware_version", "Source firmware", kPd,
     VEXA_EXPORT(Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion), Kind::kHex8, kTable},
    {"adapter.source.hardware_version", "Source hardware", kPd,
     VEXA_EXPORT(Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion), Kind::kHex8, kTable},
    {"adapter.source.temperature", "Source temperature", kPd, VEXA_EXPORT(Adapter_Read_PD_Get_Status_Temperature),
     Kind::kCelsius, kTable},
    {"adapter.source.event_flags", "Source event flags", kPd, VEXA_EXPORT(Adapter_Read_PD_Get_Status_EventFlag),
     Kind::kHex8, kTable},
    {"cable.vendor_id", "Cable vendor", kPd, VEXA_EXPORT(Adapter_Read_PD_Get_Emark_VID), Kind::kHex32, kTable},
    {"cable.product_id", "Cable product", kPd, VEXA_EXPORT(Adapter_Read_PD_Get_Emark_PID), Kind::kHex16, kTable},
    {"cable.certificate_id", "Cable certificate", kPd, VEXA_EXPORT(Adapter_Read_PD_Get_Emark_XID), Kind::kHex32,
     kTable},
    {"cable.other", "Cable marker, rest", kPd, VEXA_EXPORT(Adapter_Read_PD_Get_Emark_Other), Kind::kHex32, kTable},
}};

#undef VEXA_OBJECT
#undef VEXA_PART

Reading PowerLineReading(const Session& session, const Row& row) {
  const Answer answer = row.ask(session.context());
  if (!answer) return Missing(row, answer.error(), "the system does not know");
  return Ok(row, answer->number != 0, "by the system's power status");
}

Reading PartNumber(Session& session, const Row& row) {
  if (std::optional<Reading> decided = session.Ec().WithoutCall(row)) return std::move(*decided);
  const auto answer = session.context().library->Adapter_Read_PD_IC_PN();
  if (!answer) return Missing(row, answer.error(), "the EC did not answer");
  const VexaPdIcPartNumber& part = *answer;
  if (part.length >= VEXA_PD_IC_PN_CAPACITY || part.length > part.told_length) {
    return Missing(row, Status::kError, "the part number does not keep to its record");
  }
  const std::string_view bytes(part.text, part.length);
  if (bytes.find_first_not_of('\0') == std::string_view::npos) {
    return Missing(row, Status::kNotPresent, "the EC has no part number");
  }
  const std::string_view text = bytes.substr(0, bytes.find('\0'));
  return Ok(row, session.context().decode(text), part.told_length > part.length ? "longer than the record: cut" : "");
}

// Puts the parts of a power data object behind its word.
void AddParts(std::span<const Row> rows, const Reading& word, std::vector<Reading>& readings) {
  const auto* number = std::get_if<int64_t>(&word.value);
  if (number == nullptr) {
    for (const Row& row : rows) readings.push_back(Missing(row, word.status, word.note));
    return;
  }
  const PowerObject object = DecodePowerObject(static_cast<uint32_t>(*number));
  const bool numbers = object.supply != Supply::kReserved;
  const auto add = [&](const Row& row, std::optional<int> value) {
    readings.push_back(value ? Ok(row, int64_t{*value})
                             : Missing(row, Status::kNotPresent, "an object of this kind does not tell it"));
  };
  readings.push_back(Ok(rows[0], SupplyName(object.supply)));
  add(rows[1], numbers ? std::optional(object.min_millivolts) : std::nullopt);
  add(rows[2], numbers ? std::optional(object.max_millivolts) : std::nullopt);
  add(rows[3], object.max_milliamps);
  add(rows[4], object.max_milliwatts);
}

// Every source offers 5 V as its first object: without that there is no source to tell anything, and 0 stands for that.
void MarkAbsentSource(std::span<Reading> readings) {
  const Reading* first = FindReading(readings, "adapter.pdo.1.word");
  if (first->status != Status::kNotPresent) return;
  for (Reading& reading : readings) {
    const bool of_source = reading.row->key.starts_with("adapter.source.") || reading.row->key == "adapter.alert" ||
                           reading.row->key == "adapter.pdo_power_record";
    const bool zero = reading.value == Value(int64_t{0}) ||
                      (reading.row->kind == Kind::kCelsius && reading.status == Status::kNoAnswer);
    if (of_source && zero) {
      reading = Missing(*reading.row, Status::kNotPresent, "no USB PD source is attached");
    }
  }
}

}  // namespace

std::span<const Row> AdapterRows() { return kRowsOfAdapter; }

// The data flags (Adapter_Read_Power_Data_Flag) are left alone: reading them clears them for whoever waits for them.
std::vector<Reading> CollectAdapter(Session& session) {
  std::vector<Reading> readings;
  for (size_t i = 0; i < kRowsOfAdapter.size(); ++i) {
    const Row& row = kRowsOfAdapter[i];
    if (row.key == "adapter.online") {
      readings.push_back(PowerLineReading(session, row));
    } else if (row.ask == nullptr) {
      readings.push_back(PartNumber(session, row));
    } else if (row.kind == Kind::kPowerObject) {
      Reading word = session.Ec().Ask(row);
      if (word.value == Value(int64_t{0})) {
        word = Missing(row, Status::kNotPresent,
                       row.key == "adapter.contract.word" ? "no contract" : "the source offers no such object");
      }
      readings.push_back(word);
      AddParts(std::span(kRowsOfAdapter).subspan(i + 1, kPartsOfObject - 1), word, readings);
      i += kPartsOfObject - 1;
    } else {
      readings.push_back(session.Ec().Ask(row));
    }
  }
  MarkAbsentSource(readings);
  return readings;
}

}  // namespace vexahealth
