// The EC command channel and the catalogue's row reader: bytes on the wire, statuses, lines.
#include "frame/ec_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "ec/table_row.h"
#include "frame/library_state.h"
#include "tests/support/allocations.h"
#include "tests/support/scripted_ec.h"
#include "tests/support/trace_recorder.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EcCommand : public testing::Test {
 protected:
  EcCommand() {
    TraceRecorder::Get().Enable(0);
    TraceRecorder::Get().TakeEvents();
  }
  ~EcCommand() override { TraceRecorder::Get().Enable(0); }

  std::vector<std::string> Lines() { return TraceRecorder::Get().TakeLines(); }

  ScriptedEc ec_;
  uint32_t status_ = 0xDEAD;
};

TEST_F(EcCommand, RecordBytes) {
  ec_.answer = [](const EcCommandRecord&) { return EcReply{.value = 0x42}; };
  const uint8_t data[] = {0x00, 0x11};
  EXPECT_EQ(RwEcCmd(2, 0x87, data, 1, &status_), 0x42);
  EXPECT_EQ(status_, 0u);
  ASSERT_EQ(ec_.records.size(), 1u);
  uint8_t bytes[16];
  std::memcpy(bytes, &ec_.records[0], sizeof bytes);
  EXPECT_THAT(bytes, ElementsAre(0x87, 2, 0x00, 0x11, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0));
  EXPECT_THAT(Lines(), ElementsAre("5 [RwEcCmd] cmd: 0x87 DataList: 0x0 0x11 ReadData"));

  const uint8_t eight[] = {1, 2, 3, 4, 5, 6, 7, 0xF0};
  EXPECT_EQ(RwEcCmd(8, 0x0A, eight, 0, &status_), 0x42);
  std::memcpy(bytes, &ec_.records[1], sizeof bytes);
  EXPECT_THAT(bytes, ElementsAre(0x0A, 8, 1, 2, 3, 4, 5, 6, 7, 0xF0, 0, 0, 0, 0, 0, 0));
  EXPECT_THAT(Lines(), ElementsAre("5 [RwEcCmd] cmd: 0xa DataList: 0x1 0x2 0x3 0x4 0x5 0x6 0x7 0xf0"));
}

TEST_F(EcCommand, NoData) {
  RwEcCmd(0, 0xA1, nullptr, 1, &status_);
  RwEcCmd(0, 0xA1, nullptr, 0, &status_);
  EXPECT_THAT(Lines(), ElementsAre("5 [RwEcCmd] cmd: 0xa1 DataList: ReadData", "5 [RwEcCmd] cmd: 0xa1 DataList:"));
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre("a1 read", "a1"));
}

TEST_F(EcCommand, RefusedBeforeInitialisation) {
  g_library.initialised = false;
  EXPECT_EQ(RwEcCmd(0, 0x80, nullptr, 1, &status_), 0);
  EXPECT_EQ(status_, 1u);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
  EXPECT_THAT(Lines(), ElementsAre("5 [RwEcCmd] cmd: 0x80 DataList: ReadData",
                                   "5 [RwEcCmd] IOstatus = VEXAIO_STATUS_NO_INITIALIZED"));
}

TEST_F(EcCommand, DriverStatusIsHandedOnWithItsByte) {
  TraceRecorder::Get().Enable(1);
  ec_.answer = [](const EcCommandRecord&) { return EcReply{.value = 9, .status = 0xC0DE}; };
  EXPECT_EQ(RwEcCmd(0, 0x80, nullptr, 1, &status_), 9);
  EXPECT_EQ(status_, 0xC0DEu);
  EXPECT_THAT(Lines(), ElementsAre("1 [RwEcCmd] IOstatus = c0de"));
  ec_.answer = [](const EcCommandRecord&) { return EcReply{.value = 9, .status = 2}; };
  RwEcCmd(0, 0x80, nullptr, 1, &status_);
  EXPECT_THAT(Lines(), ElementsAre("1 [RwEcCmd] IOstatus = 2", "1 [RwEcCmd] IOstatus = VEXAIO_STATUS_INVALID_DATANUM"));
}

TEST_F(EcCommand, FailedRequestIsSilentAndNotRetried) {
  ec_.answer = [](const EcCommandRecord&) { return EcReply{.value = 9, .request_fails = true}; };
  TraceRecorder::Get().Enable(1);
  EXPECT_EQ(RwEcCmd(0, 0x80, nullptr, 1, &status_), 0);
  EXPECT_EQ(status_, 0x7FFFFFFFu);
  EXPECT_EQ(ec_.TakeExchanges().size(), 1u);
  EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(EcCommand, AnswersOfAnyLengthComeFromAZeroedRecord) {
  ec_.answer = [](const EcCommandRecord&) { return EcReply{.value = 0x77, .status = 0xFFFFFFFF}; };
  for (uint32_t size = 0; size <= 16; ++size) {
    ec_.answer_size = size;
    EXPECT_EQ(RwEcCmd(0, 0x80, nullptr, 1, &status_), size > 11 ? 0x77 : 0) << size;
    EXPECT_EQ(status_, size <= 12 ? 0u : 0xFFFFFFFFu >> (8 * (16 - size))) << size;
  }
}

TEST_F(EcCommand, TooManyDataBytesAreRefusedByTheDriverWithoutOverrun) {
  const uint8_t data[255] = {1};
  RwEcCmd(255, 0x80, data, 0, &status_);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre("80 01 00 00 00 00 00 00 00 +247"));
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

class TableRow : public EcCommand {
 protected:
  uint8_t failures_ = 0;
};

TEST_F(TableRow, TwoByteRowReadsTheHighByteFirst) {
  EXPECT_EQ(ReadEcTableValue(0xDD, 1, 0x30, 2, 0, failures_), 0x3130u);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre("dd 01 31 00 read", "dd 01 30 00 read"));
}

TEST_F(TableRow, InformationRowSendsItsRegister) {
  EXPECT_EQ(ReadEcTableValue(0xBB, 0x51, 0x51, 1, 0, failures_), 0x51u);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre("bb 51 read"));
}

TEST_F(TableRow, WrittenRowSendsTheValueAndAsksForNothing) {
  ReadEcTableValue(0xDD, 0x82, 0x32, 1, 3, failures_);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre("dd 82 32 03"));
  // The value is for written rows only.
  ReadEcTableValue(0xDD, 0x02, 0x32, 1, 3, failures_);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre("dd 02 32 00 read"));
}

TEST_F(TableRow, EmptyRowIsZeroAndOffsetsWrap) {
  EXPECT_EQ(ReadEcTableValue(0xDD, 1, 0x30, 0, 0, failures_), 0u);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
  EXPECT_EQ(ReadEcTableValue(0xDD, 1, 0x100, 2, 0, failures_), 0x0100u);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre("dd 01 01 00 read", "dd 01 00 00 read"));
}

TEST_F(TableRow, FoldShiftsByTheStepNumber) {
  EXPECT_EQ(ReadEcTableValue(0xDD, 1, 0x10, 3, 0, failures_), ((0x12u << 8 | 0x11u) << 16) | 0x10u);
}

TEST_F(TableRow, FourFailuresInARowStopTheTraffic) {
  ec_.answer = [](const EcCommandRecord&) { return EcReply{.status = 5}; };
  for (int i = 0; i < 6; ++i) EXPECT_EQ(ReadEcTableValue(0xDD, 1, 0x30, 2, 0, failures_), 0x7FFFFFFFu);
  EXPECT_EQ(ec_.TakeExchanges().size(), 4u);
  EXPECT_EQ(failures_, 4);

  failures_ = 3;
  ec_.answer = [](const EcCommandRecord&) { return EcReply{.value = 1}; };
  EXPECT_EQ(ReadEcTableValue(0xDD, 1, 0x30, 1, 0, failures_), 1u);
  EXPECT_EQ(failures_, 0);
}

TEST_F(TableRow, NeverAPartialValue) {
  ec_.FailExchange(1, ScriptedEc::Failure::kRequest);
  EXPECT_EQ(ReadEcTableValue(0xDD, 1, 0x30, 2, 0, failures_), 0x7FFFFFFFu);
  EXPECT_EQ(failures_, 1);
}

}  // namespace
}  // namespace vexa::test
