#include "radio/connection_type.h"

#include <winsock2.h>
#include <ws2ipdef.h>

#include <iphlpapi.h>

#include <vector>

#include "frame/export_wall.h"
#include "frame/handles.h"
#include "frame/line.h"
#include "frame/log.h"
#include "frame/text_value.h"
#include "radio/enumeration.h"
#include "radio/peripheral_class.h"
#include "radio/wifi_interface.h"
#include "vexa/peripherals.h"

namespace vexa {
namespace {

using InterfaceTable = Owner<MIB_IF_TABLE2*, FreeMibTable>;

// A row that is gone when its entry is read is left out.
std::vector<NetworkInterface> ReadInterfaces() {
  std::vector<NetworkInterface> interfaces;
  InterfaceTable table;
  if (GetIfTable2Ex(MibIfTableNormal, table.put()) != NO_ERROR) return interfaces;
  for (ULONG i = 0; i < table.get()->NumEntries; ++i) {
    MIB_IF_ROW2 row{};
    row.InterfaceLuid = table.get()->Table[i].InterfaceLuid;
    row.InterfaceIndex = table.get()->Table[i].InterfaceIndex;
    if (GetIfEntry2(&row) != NO_ERROR) continue;
    interfaces.push_back({.index = row.InterfaceIndex,
                          .type = row.Type,
                          .medium = NumberIn(row.PhysicalMediumType),
                          .hardware = row.InterfaceAndOperStatusFlags.HardwareInterface != 0,
                          .up = NumberIn(row.OperStatus) == IfOperStatusUp});
  }
  return interfaces;
}

}  // namespace

std::string_view ConnectionType() { return ConnectionName(ReadInterfaces()); }

std::optional<uint32_t> WifiInterfaceIndex() { return WifiIndex(ReadInterfaces()); }

}  // namespace vexa

VexaText RF_Net_Connected_Type() noexcept {
  using namespace vexa;
  return Guarded("RF_Net_Connected_Type", VexaText{}, [] {
    const std::string_view type = ConnectionType();
    LogBuilt(TraceLevel::kVerbose, [type] { return Line("[RF] RF_Net_Connected_Type", type); });
    return TextValue(type);
  });
}
