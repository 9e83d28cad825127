// The fan mutex over processes that have the shipped library: test mode keeps it, reading takes it for one call.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/e2e/library.h"
#include "tests/e2e/notebook.h"
#include "tests/e2e/peer.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

constexpr wchar_t kMutexName[] = L"Global\\FancontrolMutex";
const Lines kTaken = {"wait 10000", "waited 0", "= 1"};

// The EC's exchanges since the last time.
Lines TakeExchanges() {
  Lines log = TakeDriverLog();
  std::erase_if(log, [](const std::string& line) { return !line.starts_with("ec "); });
  return log;
}

class FanMutexOfProcesses : public EndToEnd {
 protected:
  // The driver opens behind its caller's back: an answer tells that it has.
  static void Begin(Peer& peer) {
    ASSERT_EQ(peer.Ask("initialize"), Lines{"= 1"});
    ASSERT_EQ(peer.Ask("number HealthyTable_FanCounts"), Lines{"= 2"});
    TakeExchanges();
  }
};

// Takes the 10, 5 and 5 seconds that it asks for.
TEST_F(FanMutexOfProcesses, TestModeOfOneKeepsTheOthersOut) {
  Peer owner("library");
  Peer other("library");
  Begin(owner);
  Begin(other);
  EXPECT_EQ(owner.Ask("testmode 1"), kTaken);
  EXPECT_THAT(TakeExchanges(),
              ElementsAre("ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 82 31 01 write -> 0x00 status 0x0"));

  EXPECT_EQ(other.Ask("testmode 1"), (Lines{"wait 10000", "waited 258", "= 0"}));
  EXPECT_EQ(other.Ask("fan 0"), (Lines{"wait 5000", "waited 258", "= 2147483647"}));
  EXPECT_THAT(other.Ask("trace"),
              testing::IsSupersetOf(
                  {"1 [MutexWrapper] Global\\FancontrolMutex has been called by other thread. Wait for the thread "
                   "finished.",
                   "5 [MutexWrapper] WARNING: Global\\FancontrolMutex has been executing for over 10000 milliseconds. "
                   "No more waiting.",
                   "5 [MutexWrapper] WARNING: Global\\FancontrolMutex has been executing for over 5000 milliseconds. "
                   "No more waiting."}));
  // The first call's wait was the one for its guard; a later one waits again.
  EXPECT_EQ(other.Ask("fan 0"), (Lines{"wait 5000", "waited 258", "= 2147483647"}));
  EXPECT_THAT(TakeExchanges(), IsEmpty());
  // What takes no mutex goes on.
  EXPECT_EQ(other.Ask("number HealthyTable_GetFanTestMode"), Lines{"= 1"});

  EXPECT_EQ(owner.Ask("testmode 0"), Lines{"= 1"});
  EXPECT_EQ(other.Ask("testmode 1"), kTaken);
  EXPECT_EQ(other.Ask("testmode 0"), Lines{"= 1"});
  EXPECT_EQ(owner.Ask("fan 1"), (Lines{"wait 5000", "waited 0", "= 2870"}));
}

TEST_F(FanMutexOfProcesses, ReadingInsideTestModeGivesBackItsOwnShareAlone) {
  Peer owner("library");
  Peer other("library");
  Begin(owner);
  Begin(other);
  EXPECT_EQ(owner.Ask("testmode 1"), kTaken);
  EXPECT_EQ(owner.Ask("fan 0"), (Lines{"wait 5000", "waited 0", "= 3120"}));
  const HANDLE mutex = OpenMutexW(SYNCHRONIZE, FALSE, kMutexName);
  EXPECT_EQ(WaitForSingleObject(mutex, 0), DWORD{WAIT_TIMEOUT});
  CloseHandle(mutex);
  EXPECT_EQ(owner.Ask("testmode 0"), Lines{"= 1"});
  EXPECT_EQ(other.Ask("testmode 1"), kTaken);
  EXPECT_EQ(other.Ask("fan 1"), (Lines{"wait 5000", "waited 0", "= 2870"}));
}

TEST_F(FanMutexOfProcesses, AnOwnerThatDiesFailsTheNextCallerOnceAndAtOnce) {
  for (const std::string command : {"testmode 1", "fan 1"}) {
    SCOPED_TRACE(command);
    const bool reads = command == "fan 1";
    const std::string wait = reads ? "wait 5000" : "wait 10000";
    const std::string failure = reads ? "= 2147483647" : "= 0";
    Peer other("library");
    Begin(other);
    {
      // It dies while the other one waits, with its guard not built yet ...
      Peer owner("library");
      Begin(owner);
      EXPECT_EQ(owner.Ask("testmode 1"), kTaken);
      TakeExchanges();
      other.Tell(command);
      EXPECT_EQ(other.Line(), wait);
      owner.Kill();
      EXPECT_EQ(other.Answer(), (Lines{"waited 128", failure}));
    }
    {
      // ... and before the other one asks.
      Peer owner("library");
      Begin(owner);
      EXPECT_EQ(owner.Ask("testmode 1"), kTaken);
      owner.Kill();
      TakeExchanges();
      EXPECT_EQ(other.Ask(command), (Lines{wait, "waited 128", failure}));
    }
    EXPECT_THAT(TakeExchanges(), IsEmpty());
    EXPECT_EQ(other.Ask(command), (Lines{wait, "waited 0", reads ? "= 2870" : "= 1"}));
  }
}

TEST_F(FanMutexOfProcesses, ANameTakenByAnotherKindOfObject) {
  const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, kMutexName);
  ASSERT_NE(event, nullptr);
  Peer peer("library");
  Begin(peer);
  peer.Ask("trace");
  EXPECT_EQ(peer.Ask("testmode 1"), Lines{"= 0"});
  EXPECT_EQ(peer.Ask("fan 0"), Lines{"= 2147483647"});
  EXPECT_THAT(TakeExchanges(), IsEmpty());
  const Lines trace = peer.Ask("trace");
  EXPECT_EQ(std::count(trace.begin(), trace.end(), "1 [MutexWrapper_mutexname] CreateMutex error: 6"), 2);
  EXPECT_EQ(peer.Ask("testmode 0"), Lines{"= 1"});
  EXPECT_THAT(TakeExchanges(),
              ElementsAre("ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 82 31 00 write -> 0x00 status 0x0"));
  // A process makes its guards once; the next one has the name again.
  CloseHandle(event);
  EXPECT_EQ(peer.Ask("testmode 1"), Lines{"= 0"});
  Peer next("library");
  Begin(next);
  EXPECT_EQ(next.Ask("testmode 1"), kTaken);
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
