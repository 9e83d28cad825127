// Bluetooth, USB, disks, HDMI and the kind of network link.
#include <array>

#include "client/families.h"
#include "client/marked_values.h"
#include "client/rules.h"

namespace vexahealth {
namespace {

constexpr Row Part(std::string_view key, std::string_view label, Section section, std::string_view name,
                   AskFunction ask, Kind kind, std::string_view member = {}) {
  return {
      .key = key, .label = label, .section = section, .export_name = name, .ask = ask, .kind = kind, .member = member};
}

#define VEXA_USB_STORAGE(key, label, member) \
  Part("usb.storage." key, "USB " label " storage", Section::kUsb, VEXA_EXPORT(RF_USBNum), Kind::kNumber32, member)

constexpr std::array<Row, 14> kRowsOfPeripherals = {{
    Part("network.link", "Network link", Section::kWifi, VEXA_EXPORT(RF_Net_Connected_Type), Kind::kText),
    Part("bluetooth.used", "In use", Section::kBluetooth, VEXA_EXPORT(RF_BTIsUsed), Kind::kFlag),
    Part("bluetooth.devices", "Connected devices", Section::kBluetooth, VEXA_EXPORT(RF_BTConnectedNum),
         Kind::kNumber32),
    Part("bluetooth.kinds", "Kinds of devices", Section::kBluetooth, VEXA_EXPORT(RF_BTConnectedType), Kind::kText),
    Part("usb.ports.type_a", "Type-A ports in use", Section::kUsb, VEXA_EXPORT(RF_USB_A_Num), Kind::kNumber32),
    Part("usb.ports.type_c", "Type-C ports in use", Section::kUsb, VEXA_EXPORT(RF_USB_C_Num), Kind::kNumber32),
    VEXA_USB_STORAGE("usb20", "2.0", "usb2_0"),
    VEXA_USB_STORAGE("usb21", "2.1", "usb2_1"),
    VEXA_USB_STORAGE("usb30", "3.0", "usb3_0"),
    VEXA_USB_STORAGE("usb31", "3.1", "usb3_1"),
    VEXA_USB_STORAGE("usb32", "3.2", "usb3_2"),
    Part("usb.storage.ports", "Ports of USB storage", Section::kUsb, VEXA_EXPORT(RF_USBPort), Kind::kText),
    Part("disk.busy", "Disk busy", Section::kUsb, VEXA_EXPORT(RF_USBIsTranster), Kind::kFlag),
    Part("hdmi.in_use", "HDMI in use", Section::kUsb, VEXA_EXPORT(RF_USBHDMIIsUsed), Kind::kFlag),
}};

#undef VEXA_USB_STORAGE

constexpr MarkerReasons kBluetoothReasons = {.not_collected = "no Bluetooth radio, or no device on it",
                                             .failed = "the Bluetooth system did not answer"};
constexpr MarkerReasons kUsbReasons = {.not_collected = "the system can't list its USB devices",
                                       .failed = "the USB devices could not be asked"};

Reading DecidePart(const Row& row, const Answer& answer) {
  if (row.section == Section::kBluetooth) return DecideMarked(row, answer, kBluetoothReasons);
  Reading reading = DecideMarked(row, answer, kUsbReasons);
  if (reading.status == Status::kNotPresent) {
    reading.note =
        row.key == "network.link" ? "no hardware interface is up, or the system does not tell" : "no USB storage";
  }
  if (row.kind == Kind::kFlag && reading.value == Value(false)) {
    reading.note = "false also when the system did not answer";
  }
  return reading;
}

}  // namespace

std::span<const Row> PeripheralRows() { return kRowsOfPeripherals; }

std::vector<Reading> CollectPeripherals(Session& session) {
  std::vector<Reading> readings;
  AnswerCache answers(session.context());
  for (const Row& row : kRowsOfPeripherals) {
    if (!session.Wants(row)) {
      readings.push_back(Missing(row, Status::kNotCollected, "not asked"));
      continue;
    }
    session.Tell(row.label);
    readings.push_back(DecidePart(row, answers.Of(row)));
  }
  return readings;
}

}  // namespace vexahealth
