// The fan mutex over processes that have the shipped library: test mode keeps it, reading takes it for one call.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/e2e/library.h"
#include "tests/e2e/notebook.h"
#include "tests/e2e/peer.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t kMutexName[] = L"Global\\FancontrolMutex";
const Lines kTaken = {"wait 10000", "waited 0", "= 1"};
const Lines kSecondFan = {"wait 5000", "waited 0", "= 2870"};
const Lines kNotRead = {"wait 5000", "waited 258", "= 2147483647"};

class FanMutexOfProcesses : public EndToEnd {
 protected:
  // The driver opens behind its caller's back: an answer tells that it has.
  static void Begin(Peer& peer) {
    ASSERT_EQ(peer.Ask("initialize"), Lines{"= 1"});
    ASSERT_EQ(peer.Ask("number HealthyTable_FanCounts"), Lines{"= 2"});
    TakeExchanges();
  }
};

TEST_F(FanMutexOfProcesses, TestModeOfOneKeepsTheOthersOut) {
  Peer owner, other;
  Begin(owner);
  Begin(other);
  EXPECT_EQ(owner.Ask("testmode 1"), kTaken);
  EXPECT_THAT(TakeExchanges(), ElementsAre("bb 50 read", "dd 82 31 01 write"));
  // Reading inside test mode gives back its own share alone.
  EXPECT_EQ(owner.Ask("fan 0"), (Lines{"wait 5000", "waited 0", "= 3120"}));
  TakeExchanges();

  // It asks for its whole time, and is told at once that it is over.
  other.Ask("hurry 100");
  EXPECT_EQ(other.Ask("testmode 1"), (Lines{"wait 10000", "waited 258", "= 0"}));
  EXPECT_EQ(other.Ask("fan 0"), kNotRead);
  // The first call's wait was the one for its guard; a later one waits again.
  EXPECT_EQ(other.Ask("fan 0"), kNotRead);
  EXPECT_THAT(TakeExchanges(), IsEmpty());
  // What takes no mutex goes on.
  EXPECT_EQ(other.Ask("number HealthyTable_GetFanTestMode"), Lines{"= 1"});

  EXPECT_EQ(owner.Ask("testmode 0"), Lines{"= 1"});
  EXPECT_EQ(other.Ask("testmode 1"), kTaken);
  EXPECT_EQ(other.Ask("testmode 0"), Lines{"= 1"});
  EXPECT_EQ(owner.Ask("fan 1"), kSecondFan);
}

TEST_F(FanMutexOfProcesses, AnOwnerThatDiesFailsTheNextCallerOnceAndAtOnce) {
  const struct {
    const char *command, *wait, *failure;
    Lines success;
  } kCallers[] = {{"testmode 1", "wait 10000", "= 0", kTaken}, {"fan 1", "wait 5000", "= 2147483647", kSecondFan}};
  for (const auto& caller : kCallers) {
    SCOPED_TRACE(caller.command);
    Peer other;
    Begin(other);
    // It dies while the other one waits, with its guard not built yet, and before the other one asks.
    for (const bool waiting : {true, false}) {
      Peer owner;
      Begin(owner);
      EXPECT_EQ(owner.Ask("testmode 1"), kTaken);
      TakeExchanges();
      if (!waiting) owner.Kill();
      other.Tell(caller.command);
      EXPECT_EQ(other.Line(), caller.wait);
      if (waiting) owner.Kill();
      EXPECT_EQ(other.Answer(), (Lines{"waited 128", caller.failure}));
    }
    EXPECT_THAT(TakeExchanges(), IsEmpty());
    EXPECT_EQ(other.Ask(caller.command), caller.success);
  }
}

TEST_F(FanMutexOfProcesses, UnloadingTheLibraryGivesItBack) {
  Library library;
  {
    const Ready ready(library);
    EXPECT_EQ(library.HealthyTable_SetFanTestMode(1), 1u);
    EXPECT_EQ(library.Quillo_Read_Fan(0), 3120u);
  }
  const HANDLE mutex = OpenMutexW(SYNCHRONIZE, FALSE, kMutexName);
  EXPECT_NE(mutex, nullptr);
  CloseHandle(mutex);
  EXPECT_TRUE(library.Free());
  EXPECT_EQ(OpenMutexW(SYNCHRONIZE, FALSE, kMutexName), nullptr);
}

}  // namespace
}  // namespace vexa::test
