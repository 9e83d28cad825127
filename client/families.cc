#include "client/families.h"

#include <algorithm>
#include <array>
#include <utility>

#include "client/collect.h"
#include "client/settings_calls.h"
#include "client/settings_rules.h"

namespace vexahealth {
namespace {

std::vector<Reading> CollectBase(Session& session) { return Collect(session.Ec()); }

std::vector<Reading> CollectSettings(Session& session) {
  session.Tell("settings");
  const Context& context = session.context();
  return DecideSettings(AskSettings(context));
}

using enum Section;

const std::array<Command, 8> kTheCommands = {{
    {"status",
     "Print every reading of the EC, the battery, the adapter, the fans and the system (the default)",
     {kLibrary, kController, kBattery, kCharger, kAdapter, kPowerDelivery, kThermal, kSystem}},
    {"battery", "Print the battery, the charger and the lid", {kBattery, kCharger}},
    {"adapter", "Print the power adapter and its USB Power Delivery contract", {kAdapter, kPowerDelivery}},
    {"thermal", "Print fans and temperatures", {kThermal}},
    {"radio", "Print Wi-Fi, Bluetooth, USB and the network link", {kWifi, kAccessPoints, kBluetooth, kUsb}},
    {"inventory",
     "Print board, BIOS, processor, memory, disks, displays and network adapters",
     {kMachine, kProcessor, kStorage, kDisplay, kNetwork}},
    {"settings", "Print the charge limit and the quiet fan, or change them", {kChargeLimit, kQuietFan, kApplication}},
    {"all",
     "Print everything, as fleet agents want it",
     {kLibrary, kController, kBattery,      kCharger,     kAdapter,  kPowerDelivery, kThermal,
      kSystem,  kWifi,       kAccessPoints, kBluetooth,   kUsb,      kMachine,       kProcessor,
      kStorage, kDisplay,    kNetwork,      kChargeLimit, kQuietFan, kApplication}},
}};

bool Shows(const Command& command, const Row& row) {
  return std::ranges::find(command.sections, row.section) != command.sections.end();
}

bool Selects(const Command& command, const Row& row, std::string_view key) {
  return key.empty() ? Shows(command, row) : row.key == key;
}

std::vector<Reading> InSectionOrder(std::vector<Reading> readings) {
  std::vector<Reading> sorted;
  for (size_t section = 0; section <= static_cast<size_t>(kLastSection); ++section) {
    for (Reading& reading : readings) {
      if (reading.row->section == static_cast<Section>(section)) sorted.push_back(std::move(reading));
    }
  }
  return sorted;
}

}  // namespace

const Asker& Session::Ec() {
  if (!ec_) ec_ = std::make_unique<Asker>(context_);
  return *ec_;
}

std::span<const Family> Families() {
  static const std::array<Family, 9> families = {{
      {"battery", kRows, true, CollectBase},
      {"identity", IdentityRows(), true, CollectIdentity},
      {"adapter", AdapterRows(), true, CollectAdapter},
      {"thermal", ThermalRows(), true, CollectThermal},
      {"system", SystemRows(), true, CollectSystem},
      {"wifi", WifiRows(), false, CollectWifi},
      {"peripherals", PeripheralRows(), false, CollectPeripherals},
      {"inventory", InventoryRows(), false, CollectInventory},
      {"settings", kSettingRows, false, CollectSettings},
  }};
  return families;
}

std::span<const Command> Commands() { return kTheCommands; }

const Command* FindCommand(std::string_view name) {
  const auto found = std::ranges::find(kTheCommands, name, &Command::name);
  return found == kTheCommands.end() ? nullptr : &*found;
}

const Row* FindRow(std::string_view key) {
  for (const Family& family : Families()) {
    const auto row = std::ranges::find(family.rows, key, &Row::key);
    if (row != family.rows.end()) return &*row;
  }
  return nullptr;
}

bool NeedsDriver(const Command& command, std::string_view key) {
  return std::ranges::any_of(Families(), [&](const Family& family) {
    return family.needs_driver &&
           std::ranges::any_of(family.rows, [&](const Row& row) { return Selects(command, row, key); });
  });
}

std::vector<Reading> CollectCommand(const Command& command, Context context, std::string_view key) {
  context.wanted = [&command, key](const Row& row) { return Selects(command, row, key); };
  Session session(context);
  std::vector<Reading> readings;
  for (const Family& family : Families()) {
    if (std::ranges::none_of(family.rows, context.wanted)) continue;
    for (Reading& reading : family.collect(session)) {
      if (context.wanted(*reading.row)) readings.push_back(std::move(reading));
    }
  }
  return InSectionOrder(std::move(readings));
}

std::vector<Reading> NothingOf(const Command& command, std::string_view reason, std::string_view key) {
  std::vector<Reading> readings;
  for (const Family& family : Families()) {
    for (Reading& reading : NothingCollected(reason, family.rows)) {
      if (Selects(command, *reading.row, key)) readings.push_back(std::move(reading));
    }
  }
  return InSectionOrder(std::move(readings));
}

}  // namespace vexahealth
