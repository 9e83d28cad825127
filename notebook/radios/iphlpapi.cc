// iphlpapi.dll of the simulated notebook: the table of network interfaces. Beside the library it is found before the
// system's own, which answers every other call.
#include <winsock2.h>
#include <ws2ipdef.h>

#include <iphlpapi.h>

#include <algorithm>

#include "guarded_memory.h"
#include "notebook.h"

namespace {

using namespace radios;

Notebook& NetworkNotebook() {
  static Notebook& notebook = *new Notebook(L"iphlpapi-counts.json");
  return notebook;
}

// Only within a call.
GuardedMemory& Memory() {
  static GuardedMemory& memory = *new GuardedMemory;
  return memory;
}

MIB_IF_ROW2 RowOf(const NetworkInterface& entry) {
  MIB_IF_ROW2 row{};
  row.InterfaceIndex = entry.index;
  row.InterfaceLuid.Info.NetLuidIndex = entry.index;
  row.InterfaceLuid.Info.IfType = entry.type;
  row.InterfaceGuid = WindowsGuid(entry.guid);
  CopyName(row.Alias, entry.name);
  CopyName(row.Description, entry.name);
  row.Type = entry.type;
  row.PhysicalMediumType = static_cast<NDIS_PHYSICAL_MEDIUM>(entry.medium);
  row.InterfaceAndOperStatusFlags.HardwareInterface = entry.hardware;
  row.OperStatus = entry.up ? IfOperStatusUp : IfOperStatusDown;
  row.AdminStatus = NET_IF_ADMIN_STATUS_UP;
  return row;
}

DWORD ListInterfaces(const Model& model, MIB_IF_TABLE2** table) {
  const size_t size = offsetof(MIB_IF_TABLE2, Table) + model.network.size() * sizeof(MIB_IF_ROW2);
  *table = static_cast<MIB_IF_TABLE2*>(Memory().Allocate(size));
  if (*table == nullptr) return ERROR_NOT_ENOUGH_MEMORY;
  NetworkNotebook().Count("allocated");
  (*table)->NumEntries = static_cast<ULONG>(model.network.size());
  std::ranges::transform(model.network, (*table)->Table, RowOf);
  return NO_ERROR;
}

// What the system's own library has allocated.
void FreeElsewhere(void* memory) {
  const HMODULE system = LoadLibraryW(L"C:\\windows\\system32\\iphlpapi.dll");
  const auto free =
      system == nullptr ? nullptr : reinterpret_cast<decltype(&FreeMibTable)>(GetProcAddress(system, "FreeMibTable"));
  if (free != nullptr) free(memory);
}

}  // namespace

extern "C" {

NETIO_STATUS WINAPI GetIfTable2Ex(MIB_IF_TABLE_LEVEL, PMIB_IF_TABLE2* table) {
  return NetworkNotebook().Run("GetIfTable2Ex", [=](const Model& model) -> DWORD {
    return table == nullptr ? DWORD{ERROR_INVALID_PARAMETER} : ListInterfaces(model, table);
  });
}

NETIO_STATUS WINAPI GetIfTable2(PMIB_IF_TABLE2* table) { return GetIfTable2Ex(MibIfTableNormal, table); }

// By the row's LUID, else by its index.
NETIO_STATUS WINAPI GetIfEntry2(PMIB_IF_ROW2 row) {
  return NetworkNotebook().Run("GetIfEntry2", [=](const Model& model) -> DWORD {
    if (row == nullptr) return ERROR_INVALID_PARAMETER;
    const auto entry = std::ranges::find_if(model.network, [row](const NetworkInterface& candidate) {
      const bool by_luid = row->InterfaceLuid.Value != 0;
      return by_luid ? RowOf(candidate).InterfaceLuid.Value == row->InterfaceLuid.Value
                     : candidate.index == row->InterfaceIndex;
    });
    if (entry == model.network.end()) return ERROR_FILE_NOT_FOUND;
    *row = RowOf(*entry);
    return NO_ERROR;
  });
}

VOID WINAPI FreeMibTable(PVOID memory) {
  NetworkNotebook().Run("FreeMibTable", [=](const Model&) -> DWORD {
    if (Memory().Free(memory)) {
      NetworkNotebook().Count("freed");
    } else {
      FreeElsewhere(memory);
    }
    return NO_ERROR;
  });
}

}  // extern "C"
