// The EC command channel and the catalogue's row reader: bytes on the wire, statuses, lines.
#include "frame/ec_command.h"

#include <cstring>

#include "ec/table_row.h"
#include "frame/library_state.h"
#include "tests/support/allocations.h"
#include "tests/support/ec_test.h"

namespace vexa::test {
namespace {

class EcCommand : public EcTest {
 protected:
  ~EcCommand() override { TraceRecorder::Get().Enable(0); }

  void Answer(const EcReply& reply) {
    ec_.answer = [reply](const EcCommandRecord&) { return reply; };
  }
  static std::vector<uint8_t> BytesOf(const EcCommandRecord& record) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(&record);
    return {bytes, bytes + sizeof record};
  }

  uint32_t status_ = 0xDEAD;
};

TEST_F(EcCommand, RecordBytesAndLines) {
  Answer({.value = 0x42});
  const uint8_t data[] = {0x00, 0x11};
  EXPECT_EQ(RwEcCmd(2, 0x87, data, 1, &status_), 0x42);
  EXPECT_EQ(status_, 0u);
  EXPECT_THAT(BytesOf(ec_.records.at(0)), ElementsAre(0x87, 2, 0x00, 0x11, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0));
  const uint8_t eight[] = {1, 2, 3, 4, 5, 6, 7, 0xF0};
  EXPECT_EQ(RwEcCmd(8, 0x0A, eight, 0, &status_), 0x42);
  EXPECT_THAT(BytesOf(ec_.records.at(1)), ElementsAre(0x0A, 8, 1, 2, 3, 4, 5, 6, 7, 0xF0, 0, 0, 0, 0, 0, 0));
  RwEcCmd(0, 0xA1, nullptr, 1, &status_);
  RwEcCmd(0, 0xA1, nullptr, 0, &status_);
  EXPECT_THAT(Lines(), ElementsAre("5 [RwEcCmd] cmd: 0x87 DataList: 0x0 0x11 ReadData",
                                   "5 [RwEcCmd] cmd: 0xa DataList: 0x1 0x2 0x3 0x4 0x5 0x6 0x7 0xf0",
                                   "5 [RwEcCmd] cmd: 0xa1 DataList: ReadData", "5 [RwEcCmd] cmd: 0xa1 DataList:"));
  EXPECT_THAT(LastOf(ec_.TakeExchanges(), 2), ElementsAre("a1 read", "a1"));
  // More than a record holds go to the driver, which refuses them, without an overrun.
  const uint8_t many[255] = {1};
  RwEcCmd(255, 0x80, many, 0, &status_);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre("80 01 00 00 00 00 00 00 00 +247"));
}

TEST_F(EcCommand, RefusedBeforeInitialisation) {
  g_library.initialised = false;
  EXPECT_EQ(RwEcCmd(0, 0x80, nullptr, 1, &status_), 0);
  EXPECT_EQ(status_, 1u);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
  EXPECT_THAT(Lines(), ElementsAre("5 [RwEcCmd] cmd: 0x80 DataList: ReadData",
                                   "5 [RwEcCmd] IOstatus = VEXAIO_STATUS_NO_INITIALIZED"));
}

TEST_F(EcCommand, StatusIsHandedOnWithItsByteAndAFailedRequestIsSilent) {
  TraceRecorder::Get().Enable(1);
  const struct {
    EcReply reply;
    uint8_t byte;
    uint32_t status;
    Strings lines;
  } replies[] = {
      {{.value = 9, .status = 0xC0DE}, 9, 0xC0DE, {"1 [RwEcCmd] IOstatus = c0de"}},
      {{.value = 9, .status = 2},
       9,
       2,
       {"1 [RwEcCmd] IOstatus = 2", "1 [RwEcCmd] IOstatus = VEXAIO_STATUS_INVALID_DATANUM"}},
      {{.value = 9, .request_fails = true}, 0, 0x7FFFFFFF, {}},
  };
  for (const auto& one : replies) {
    Answer(one.reply);
    EXPECT_EQ(RwEcCmd(0, 0x80, nullptr, 1, &status_), one.byte);
    EXPECT_EQ(status_, one.status);
    EXPECT_EQ(ec_.TakeExchanges().size(), 1u);  // not tried again
    EXPECT_EQ(Lines(), one.lines);
  }
}

int g_requests = 0;
BOOL WINAPI CountRequest(HANDLE, DWORD, LPVOID, DWORD, LPVOID, DWORD, LPDWORD, LPOVERLAPPED) {
  ++g_requests;
  return TRUE;
}

TEST_F(EcCommand, OneRequestAndNoAllocationWhileNobodyTraces) {
  TraceRecorder::Get().Disable();
  const ImportPatch device("DeviceIoControl", CountRequest);
  const uint8_t data[] = {1, 0x30, 0};
  g_requests = 0;
  const size_t before = AllocationCount();
  RwEcCmd(3, 0xDD, data, 1, &status_);
  EXPECT_EQ(AllocationCount(), before);
  EXPECT_EQ(g_requests, 1);
}

using TableRow = EcTest;

TEST_F(TableRow, EachKindOfRow) {
  const struct {
    uint8_t command, group;
    uint32_t offset;
    uint8_t length, value;
    uint32_t answer;
    Strings exchanges;
  } rows[] = {
      {0xDD, 1, 0x30, 2, 0, 0x3130, {"dd 01 31 00 read", "dd 01 30 00 read"}},  // the high byte first
      {0xBB, 0x51, 0x51, 1, 0, 0x51, {"bb 51 read"}},
      {0xDD, 0x82, 0x32, 1, 3, 0x32, {"dd 82 32 03"}},
      {0xDD, 0x02, 0x32, 1, 3, 0x32, {"dd 02 32 00 read"}},  // the value is for written rows only
      {0xDD, 1, 0x30, 0, 0, 0, {}},
      {0xDD, 1, 0x100, 2, 0, 0x0100, {"dd 01 01 00 read", "dd 01 00 00 read"}},  // offsets wrap
      // The fold shifts by the step's number.
      {0xDD, 1, 0x10, 3, 0, 0x12110010, {"dd 01 12 00 read", "dd 01 11 00 read", "dd 01 10 00 read"}},
  };
  for (const auto& row : rows) {
    uint8_t failures = 0;
    EXPECT_EQ(ReadEcTableValue(row.command, row.group, row.offset, row.length, row.value, failures), row.answer);
    EXPECT_EQ(ec_.TakeExchanges(), row.exchanges);
  }
}

TEST_F(TableRow, FourFailuresInARowStopTheTraffic) {
  uint8_t failures = 0;
  ec_.FailExchange(1, ScriptedEc::Failure::kRequest);
  EXPECT_EQ(ReadEcTableValue(0xDD, 1, 0x30, 2, 0, failures), kNoAnswer);  // never a partial value
  EXPECT_EQ(failures, 1);
  failures = 0;
  ec_.answer = [](const EcCommandRecord&) { return EcReply{.status = 5}; };
  ec_.TakeExchanges();
  for (int i = 0; i < 6; ++i) EXPECT_EQ(ReadEcTableValue(0xDD, 1, 0x30, 2, 0, failures), kNoAnswer);
  EXPECT_EQ(ec_.TakeExchanges().size(), 4u);
  EXPECT_EQ(failures, 4);
  failures = 3;
  ec_.answer = [](const EcCommandRecord&) { return EcReply{.value = 1}; };
  EXPECT_EQ(ReadEcTableValue(0xDD, 1, 0x30, 1, 0, failures), 1u);
  EXPECT_EQ(failures, 0);
}

}  // namespace
}  // namespace vexa::test
