// The kind of the network link from the system's interface table, and its calls failing.
#include <winsock2.h>
#include <ws2ipdef.h>

#include <iphlpapi.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "tests/support/call_script.h"
#include "tests/support/import_patch.h"
#include "tests/support/trace_recorder.h"
#include "vexa/peripherals.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;

struct Table {
  std::vector<MIB_IF_ROW2> rows;
  std::vector<std::byte> memory;  // the table that is handed out
  int handed_out = 0;
  CallScript script;
}* g_table = nullptr;

NETIO_STATUS WINAPI GetTable(MIB_IF_TABLE_LEVEL level, PMIB_IF_TABLE2* table) {
  EXPECT_EQ(level, MibIfTableNormal);
  if (g_table->script.Fails("GetIfTable2Ex")) return ERROR_NOT_SUPPORTED;
  g_table->memory.resize(offsetof(MIB_IF_TABLE2, Table) + g_table->rows.size() * sizeof(MIB_IF_ROW2));
  *table = reinterpret_cast<MIB_IF_TABLE2*>(g_table->memory.data());
  (*table)->NumEntries = static_cast<ULONG>(g_table->rows.size());
  // Only the names of the rows: what they hold is to be asked for.
  for (size_t i = 0; i < g_table->rows.size(); ++i) (*table)->Table[i].InterfaceLuid = g_table->rows[i].InterfaceLuid;
  ++g_table->handed_out;
  return NO_ERROR;
}

NETIO_STATUS WINAPI GetEntry(PMIB_IF_ROW2 row) {
  const uint64_t luid = row->InterfaceLuid.Value;
  if (g_table->script.Fails("GetIfEntry2", std::to_string(luid))) return ERROR_FILE_NOT_FOUND;
  *row = g_table->rows.at(luid - 1);
  return NO_ERROR;
}

VOID WINAPI FreeTable(PVOID memory) {
  EXPECT_EQ(memory, g_table->memory.data());
  --g_table->handed_out;
}

class ConnectionTypes : public testing::Test {
 protected:
  ConnectionTypes() {
    g_table = &table_;
    TraceRecorder::Get().Enable(0);
    TraceRecorder::Get().TakeEvents();
  }
  ~ConnectionTypes() override { EXPECT_EQ(table_.handed_out, 0); }

  void Add(uint32_t type, bool hardware, IF_OPER_STATUS status) {
    MIB_IF_ROW2& row = table_.rows.emplace_back();
    row.InterfaceLuid.Value = table_.rows.size();
    row.Type = type;
    row.InterfaceAndOperStatusFlags.HardwareInterface = hardware;
    // The neighbouring flags mean something else.
    row.InterfaceAndOperStatusFlags.FilterInterface = !hardware;
    row.InterfaceAndOperStatusFlags.ConnectorPresent = !hardware;
    row.OperStatus = status;
  }
  std::string Answer() { return RF_Net_Connected_Type().text; }

  Table table_;
  ImportPatch get_table_{"GetIfTable2Ex", GetTable};
  ImportPatch get_entry_{"GetIfEntry2", GetEntry};
  ImportPatch free_table_{"FreeMibTable", FreeTable};
};

TEST_F(ConnectionTypes, AsksForEveryRow) {
  Add(6, true, IfOperStatusDown);
  Add(6, false, IfOperStatusUp);
  Add(244, true, IfOperStatusDormant);
  Add(71, true, IfOperStatusUp);
  EXPECT_EQ(Answer(), "WIFI");
  EXPECT_THAT(table_.script.Take(),
              ElementsAre("GetIfTable2Ex", "GetIfEntry2 1", "GetIfEntry2 2", "GetIfEntry2 3", "GetIfEntry2 4"));
  EXPECT_THAT(TraceRecorder::Get().TakeLines(), ElementsAre("5 [RF] RF_Net_Connected_TypeWIFI"));
  // No snapshot: each call looks.
  table_.rows[2].OperStatus = IfOperStatusUp;
  EXPECT_EQ(Answer(), "WWANPP2");
  table_.rows[0].OperStatus = IfOperStatusUp;
  EXPECT_EQ(Answer(), "ETHERNET");
}

TEST_F(ConnectionTypes, EachCallFailing) {
  Add(6, true, IfOperStatusUp);
  Add(71, true, IfOperStatusUp);
  table_.script.FailOnly(0, ERROR_NOT_SUPPORTED);
  EXPECT_EQ(Answer(), "Unknow");
  table_.script.Take();
  table_.script.FailOnly(1, ERROR_NOT_SUPPORTED);
  EXPECT_EQ(Answer(), "WIFI");
  table_.script.Take();
  table_.script.FailFrom(1, ERROR_NOT_SUPPORTED);
  EXPECT_EQ(Answer(), "Unknow");
}

}  // namespace
}  // namespace vexa::test
