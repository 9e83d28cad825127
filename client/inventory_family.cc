// The system inventory: one WMI query or more for each row.
#include <array>
#include <charconv>
#include <optional>

#include "client/families.h"
#include "client/rules.h"

namespace vexahealth {
namespace {

// Whether a machine may lack the thing, so that an empty answer means its absence. WMI's failures look the same.
enum class Absent { kNever, kMaybe };

constexpr Row Item(std::string_view key, std::string_view label, Section section, std::string_view name,
                   AskFunction ask, Kind kind, Absent absent) {
  return {.key = key,
          .label = label,
          .section = section,
          .export_name = name,
          .ask = ask,
          .kind = kind,
          .may_lack = absent == Absent::kMaybe};
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
    Item("inventory.hdd_free", "Hard disk free bytes", Section::kStorage, VEXA_OWN_EXPORT(WMIGetHDDUsage), Kind::kText,
         Absent::kMaybe),
    Item("inventory.hdd_serial_numbers", "Hard disk serials", Section::kStorage, VEXA_OWN_EXPORT(WMIGetHDDUsage),
         Kind::kText, Absent::kMaybe),
    Item("inventory.ssd_models", "SSD models", Section::kStorage, VEXA_EXPORT(WMIGetSSDModel), Kind::kText,
         Absent::kMaybe),
    Item("inventory.ssd_ids", "SSD ids", Section::kStorage, VEXA_EXPORT(WMIGetSSDList), Kind::kText, Absent::kMaybe),
    Item("inventory.ssd_free", "SSD free bytes", Section::kStorage, VEXA_OWN_EXPORT(WMIGetSSDUsage), Kind::kText,
         Absent::kMaybe),
    Item("inventory.ssd_serial_numbers", "SSD serials", Section::kStorage, VEXA_OWN_EXPORT(WMIGetSSDUsage), Kind::kText,
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

Reading NoAnswer(const Row& row, vexa::Reason reason = vexa::Reason::kNoAnswer) {
  if (row.may_lack && reason == vexa::Reason::kNoAnswer) {
    return Missing(row, Status::kNotPresent, "the machine has none, or the query failed");
  }
  return Missing(row, reason, "the query failed, or has no such value");
}

Reading DecideItem(const Row& row, const Answer& answer) {
  if (!answer) return NoAnswer(row, answer.error());
  if (row.kind == Kind::kText) return answer->text.empty() ? NoAnswer(row) : Ok(row, answer->text);
  if (row.kind == Kind::kMegatransfers) {  // a number as a text
    uint32_t number = 0;
    const char* end = answer->text.data() + answer->text.size();
    const auto [read, error] = std::from_chars(answer->text.data(), end, number);
    return error != std::errc() || read != end ? NoAnswer(row) : Ok(row, int64_t{number});
  }
  const bool doubtful = row.key == "inventory.external_monitors" && answer->number == 0;
  return InItsRange(row, *answer, doubtful ? "0 also when the query failed" : "");
}

// Rows of one usage export are the two texts of one answer.
class UsageCache {
 public:
  explicit UsageCache(const Context& context) : context_(context) {}

  Answer Of(const Row& row) {
    const bool hard_disk = row.export_name == "WMIGetHDDUsage";
    std::optional<vexa::Answer<vexa::DiskUsage>>& usage = hard_disk ? hard_disks_ : solid_state_disks_;
    if (!usage) usage = hard_disk ? context_.library->WMIGetHDDUsage() : context_.library->WMIGetSSDUsage();
    if (!*usage) return std::unexpected(usage->error());
    const vexa::DiskUsage& texts = **usage;
    return Told{.number = 0,
                .text = context_.decode_wide(row.key.ends_with("_free") ? texts.free_bytes : texts.serials)};
  }

 private:
  const Context& context_;
  std::optional<vexa::Answer<vexa::DiskUsage>> hard_disks_;
  std::optional<vexa::Answer<vexa::DiskUsage>> solid_state_disks_;
};

}  // namespace

std::span<const Row> InventoryRows() { return kRowsOfInventory; }

std::vector<Reading> CollectInventory(Session& session) {
  std::vector<Reading> readings;
  const Context& context = session.context();
  UsageCache usage(context);
  for (const Row& row : kRowsOfInventory) {
    if (!session.Wants(row)) {
      readings.push_back(Missing(row, Status::kNotCollected, "not asked"));
      continue;
    }
    session.Tell(row.label);
    readings.push_back(DecideItem(row, row.ask == nullptr ? usage.Of(row) : row.ask(context)));
  }
  return readings;
}

}  // namespace vexahealth
