// The process-wide snapshots that the Bluetooth and the USB exports answer from.
#ifndef VEXA_RADIO_PERIPHERAL_SNAPSHOTS_H_
#define VEXA_RADIO_PERIPHERAL_SNAPSHOTS_H_

#include <cstdint>
#include <string>

#include "frame/optional_library.h"
#include "vexa/base.h"

namespace vexa {

// Kept: plain variables without a lock, never refreshed once they are collected. Callers serialise themselves.
struct BluetoothSnapshot {
  uint32_t used = VEXA_NOT_COLLECTED;       // 1: the last radio has a connected device
  uint32_t connected = VEXA_NOT_COLLECTED;  // devices on the last radio that has any
  std::string types = VEXA_NOT_COLLECTED_TEXT;
  bool collected = false;
};

struct UsbSnapshot {
  uint32_t transferring = 0;
  std::string storage_versions = VEXA_NOT_COLLECTED_TEXT;
  std::string storage_ports = VEXA_NOT_COLLECTED_TEXT;
  uint32_t hdmi = 0;
  uint32_t type_a = 0;
  uint32_t type_c = 0;
  bool collected = false;
};

extern BluetoothSnapshot g_bluetooth;
extern OptionalLibrary g_bluetooth_library;
extern UsbSnapshot g_usb;

}  // namespace vexa

#endif  // VEXA_RADIO_PERIPHERAL_SNAPSHOTS_H_
