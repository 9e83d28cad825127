// The system inventory: one WMI query or more for each row.
#include <array>
#include <charconv>
#include <optional>

#include "client/families.h"
#include "client/rules.h"
#include "client/text.h"
#include "client/values.h"

namespace vexahealth {
namespace {

// Whether a machine may lack the thing, so that an empty answer means its absence. WMI's failures look the same.
enum class Absent { kNever, kMaybe };

constexpr Row Item(std::string_view key, std::string_view label, Section section, const char* name, Signature signature,
                   Kind kind, Absent absent) {
  return {.key = key,
          .label = label,
          .section = section,
          .export_name = name,
          .signature = signature,
          .kind = kind,
          .reserved = absent == Absent::kMaybe ? Reserved::kNotOffered : Reserved::kNone};
}

constexpr std::array<Row, 44> kRowsOfInventory = {{
    Item("inventory.serial_number", "Serial number", Section::kMachine, VEXA_EXPORT(WMIGetSN), Kind::kText,
         Absent::kNever),
    Item("inventory.product", "Product", Section::kMachine, VEXA_EXPORT(WMIGetProductName), Kind::kText,
         Absent::kNever),
    Item("inventory.family", "Product family", Section::kMachine, VEXA_EXPORT(WMIGetComputerFamilyName), Kind::kText,
         Absent::kMaybe),
    Item("inventory.board_maker", "Board maker", Section::kMachine, VEXA_EXPORT(WMIGetBiosManufacture), Kind::kText,
         Absent::kNever),
    Item("inventory.board", "Board", Section::kMachine, VEXA_EXPORT(WMIGetModelName), Kind::kText, Absent::kNever),
    Item("inventory.board_serial_number", "Board serial number", Section::kMachine, VEXA_EXPORT(WMIGetType2SN),
         Kind::kText, Absent::kMaybe),
    Item("inventory.uuid", "UUID", Section::kMachine, VEXA_EXPORT(WMIGetBoardUUID), Kind::kText, Absent::kNever),
    Item("inventory.order_number", "Order number", Section::kMachine, VEXA_EXPORT(WMIGet90Number), Kind::kText,
         Absent::kMaybe),
    Item("inventory.form", "Form", Section::kMachine, VEXA_EXPORT(WMIGetSystemChassisTypes), Kind::kText,
         Absent::kNever),
    Item("inventory.bios_version", "BIOS", Section::kMachine, VEXA_EXPORT(WMIGetBiosVersion), Kind::kText,
         Absent::kNever),
    Item("inventory.bios_date", "BIOS date", Section::kMachine, VEXA_EXPORT(WMIGetBiosReleaseDate), Kind::kText,
         Absent::kNever),
    Item("inventory.os", "Operating system", Section::kMachine, VEXA_EXPORT(WMIGetOSInfo), Kind::kText, Absent::kNever),
    Item("inventory.cpu", "Processor", Section::kProcessor, VEXA_EXPORT(WMIGetCPUInfo), Kind::kText, Absent::kNever),
    Item("inventory.cpu_architecture", "Processor architecture", Section::kProcessor,
         VEXA_EXPORT(WMIGetCPUArchitecture), Kind::kArchitecture, Absent::kNever),
    Item("inventory.cpu_load", "Processor load", Section::kProcessor, VEXA_EXPORT(WMIGetCPUUsg), Kind::kPercent,
         Absent::kNever),
    Item("inventory.memory", "Memory modules", Section::kProcessor, VEXA_EXPORT(WMIGetMemInfo), Kind::kText,
         Absent::kNever),
    Item("inventory.memory_part", "Memory parts", Section::kProcessor, VEXA_EXPORT(WMIGetMemModel), Kind::kText,
         Absent::kMaybe),
    Item("inventory.memory_maker", "Memory makers", Section::kProcessor, VEXA_EXPORT(WMIGetMemManufacture), Kind::kText,
         Absent::kMaybe),
    Item("inventory.memory_size", "Memory sizes", Section::kProcessor, VEXA_EXPORT(WMIGetMemSize), Kind::kText,
         Absent::kNever),
    Item("inventory.memory_speed", "Memory speed", Section::kProcessor, VEXA_EXPORT(WMIGetMemFrequency),
         Kind::kMegatransfers, Absent::kNever),
    Item("inventory.gpu", "Graphics", Section::kProcessor, VEXA_EXPORT(WMIGetGPUInfo), Kind::kText, Absent::kMaybe),
    Item("inventory.gpu_load", "Graphics load", Section::kProcessor, VEXA_EXPORT(WMIGetGPUUsg), Kind::kPercent,
         Absent::kNever),
    Item("inventory.disks", "Disks", Section::kStorage, VEXA_EXPORT(WMIGetPhysicalDiskInfo), Kind::kText,
         Absent::kMaybe),
    Item("inventory.disk_captions", "Fixed disks", Section::kStorage, VEXA_EXPORT(WMIGetHDDCaption), Kind::kText,
         Absent::kMaybe),
    Item("inventory.disk_sizes", "Fixed disk sizes", Section::kStorage, VEXA_EXPORT(WMIGetHDDSize), Kind::kText,
         Absent::kMaybe),
    Item("inventory.hdd", "Hard disks", Section::kStorage, VEXA_EXPORT(WMIGetHDDInfo), Kind::kText, Absent::kMaybe),
    Item("inventory.hdd_models", "Hard disk models", Section::kStorage, VEXA_EXPORT(WMIGetHDDModel), Kind::kText,
         Absent::kMaybe),
    Item("inventory.hdd_ids", "Hard disk ids", Section::kStorage, VEXA_EXPORT(WMIGetHDDList), Kind::kText,
         Absent::kMaybe),
    Item("inventory.hdd_free", "Hard disk free bytes", Section::kStorage, VEXA_EXPORT(WMIGetHDDUsage), Kind::kText,
         Absent::kMaybe),
    Item("inventory.hdd_serial_numbers", "Hard disk serials", Section::kStorage, VEXA_EXPORT(WMIGetHDDUsage),
         Kind::kText, Absent::kMaybe),
    Item("inventory.ssd_models", "SSD models", Section::kStorage, VEXA_EXPORT(WMIGetSSDModel), Kind::kText,
         Absent::kMaybe),
    Item("inventory.ssd_ids", "SSD ids", Section::kStorage, VEXA_EXPORT(WMIGetSSDList), Kind::kText, Absent::kMaybe),
    Item("inventory.ssd_free", "SSD free bytes", Section::kStorage, VEXA_EXPORT(WMIGetSSDUsage), Kind::kText,
         Absent::kMaybe),
    Item("inventory.ssd_serial_numbers", "SSD serials", Section::kStorage, VEXA_EXPORT(WMIGetSSDUsage), Kind::kText,
         Absent::kMaybe),
    Item("inventory.card_reader", "Card reader", Section::kStorage, VEXA_EXPORT(WMIGetCardReaderCaption), Kind::kText,
         Absent::kMaybe),
    Item("inventory.removable_disks", "Removable disks", Section::kStorage, VEXA_EXPORT(WMIGetSDCardCaption),
         Kind::kText, Absent::kMaybe),
    Item("inventory.removable_disk_sizes", "Removable disk sizes", Section::kStorage, VEXA_EXPORT(WMIGetSDCardSize),
         Kind::kText, Absent::kMaybe),
    Item("inventory.monitors", "Monitors", Section::kDisplay, VEXA_EXPORT(WMIGetLCDModel), Kind::kText, Absent::kMaybe),
    Item("inventory.brightness", "Brightness", Section::kDisplay, VEXA_EXPORT(WMIGetMonitorBrightness), Kind::kPercent,
         Absent::kMaybe),
    Item("inventory.external_monitors", "External monitors", Section::kDisplay, VEXA_EXPORT(WMIGetExternMonitorNum),
         Kind::kNumber32, Absent::kNever),
    Item("inventory.external_monitor_list", "External monitor ports", Section::kDisplay,
         VEXA_EXPORT(WMIGetExternMonitorPropList), Kind::kText, Absent::kMaybe),
    Item("inventory.mac_addresses", "MAC addresses", Section::kNetwork, VEXA_EXPORT(WMIGetMacAddress), Kind::kText,
         Absent::kMaybe),
    Item("inventory.wifi_adapter", "Wi-Fi adapter", Section::kNetwork, VEXA_EXPORT(WMIGetWiFiCardName), Kind::kText,
         Absent::kMaybe),
    Item("inventory.wifi_bytes_per_second", "Wi-Fi bytes per second", Section::kNetwork,
         VEXA_EXPORT(WMIGetWiFiBytesPersec), Kind::kText, Absent::kMaybe),
}};

Reading NoAnswer(const Row& row) {
  if (row.reserved == Reserved::kNotOffered) {
    return Missing(row, Status::kNotPresent, "the machine has none, or the query failed");
  }
  return Missing(row, Status::kNoAnswer, "the query failed, or has no such value");
}

Reading DecideText(const Row& row, const Answer& answer) {
  if (answer.form == Answer::Form::kMissingExport) return MissingExport(row);
  if (answer.form == Answer::Form::kUnterminated) return Missing(row, Status::kError, "the text is not terminated");
  if (answer.text.empty()) return NoAnswer(row);
  if (row.kind == Kind::kText) return Ok(row, answer.text);
  uint32_t number = 0;
  const char* end = answer.text.data() + answer.text.size();
  const auto [read, error] = std::from_chars(answer.text.data(), end, number);
  if (error != std::errc() || read != end) return NoAnswer(row);
  return Ok(row, int64_t{number});
}

Reading DecideNumber(const Row& row, const Answer& answer) {
  if (answer.form == Answer::Form::kMissingExport) return MissingExport(row);
  if (answer.number == VEXA_NOT_AVAILABLE) return NoAnswer(row);
  if (!InRange(row.kind, answer.number)) return OutOfRange(row, answer);
  return Ok(row, ValueFrom(row.kind, answer.number),
            row.key == "inventory.external_monitors" && answer.number == 0 ? "0 also when the query failed" : "");
}

// The two texts of a usage export: as with one text, the first call asks for the length.
struct Usage {
  Answer free_bytes;
  Answer serials;
};

Usage AskUsage(const Session& session, const char* name) {
  constexpr size_t kRoom = 4096;
  const auto ask = session.Find<decltype(&WMIGetHDDUsage)>(name);
  if (ask == nullptr) return {};
  const size_t length = ask(nullptr, nullptr, kInitializeCom);
  std::vector<wchar_t> free_bytes(length + kRoom);
  std::vector<wchar_t> serials(length + kRoom);
  if (length > 0) ask(free_bytes.data(), serials.data(), kInitializeCom);
  free_bytes.back() = L'\0';
  serials.back() = L'\0';
  const WideDecoder decode = session.context().decode_wide;
  return {.free_bytes = {.form = Answer::Form::kText, .number = 0, .text = decode(free_bytes.data())},
          .serials = {.form = Answer::Form::kText, .number = 0, .text = decode(serials.data())}};
}

Answer AskWifiAdapter(const Session& session, const Row& row) {
  const auto ask = session.Find<decltype(&WMIGetWiFiCardName)>(row.export_name);
  if (ask == nullptr) return {};
  wchar_t* name = nullptr;
  ask(&name, kInitializeCom);
  Answer answer{.form = Answer::Form::kText, .number = 0, .text = {}};
  if (name != nullptr) answer.text = session.context().decode_wide(name);
  session.context().free_text(name);
  return answer;
}

class InventoryCollector {
 public:
  explicit InventoryCollector(const Session& session) : session_(session) {}

  Reading Collect(const Row& row) {
    if (!session_.Wants(row)) return Missing(row, Status::kNotCollected, "not asked");
    session_.Tell(row.label);
    if (row.signature != Signature::kOwn) {
      const Context& context = session_.context();
      const Answer answer = Call(row, context.resolve(row.export_name), nullptr, context.decode_wide);
      return row.signature == Signature::kComNumber ? DecideNumber(row, answer) : DecideText(row, answer);
    }
    if (row.key == "inventory.wifi_adapter") return DecideText(row, AskWifiAdapter(session_, row));
    const Usage& usage = UsageOf(row);
    return DecideText(row, row.key.ends_with("_free") ? usage.free_bytes : usage.serials);
  }

 private:
  const Usage& UsageOf(const Row& row) {
    std::optional<Usage>& usage = row.key.starts_with("inventory.hdd") ? hard_disks_ : solid_state_disks_;
    if (!usage) usage = AskUsage(session_, row.export_name);
    return *usage;
  }

  const Session& session_;
  std::optional<Usage> hard_disks_;
  std::optional<Usage> solid_state_disks_;
};

}  // namespace

std::span<const Row> InventoryRows() { return kRowsOfInventory; }

std::vector<Reading> CollectInventory(Session& session) {
  std::vector<Reading> readings;
  InventoryCollector collector(session);
  for (const Row& row : kRowsOfInventory) readings.push_back(collector.Collect(row));
  return readings;
}

}  // namespace vexahealth
