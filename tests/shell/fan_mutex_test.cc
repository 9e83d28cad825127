// What the fan mutex guards, on the real mutex; waits that would last are scripted. Other processes: tests/e2e.
#include <thread>

#include "frame/handles.h"
#include "frame/mutex_guard.h"
#include "tests/support/ec_test.h"
#include "vexa/thermal.h"

namespace vexa::test {
namespace {

// How waits for the mutex end, and the bounds that they asked for.
struct {
  bool scripted = false;
  DWORD answer = WAIT_OBJECT_0;
  std::vector<DWORD> asked;
} g_waits;
ImportPatch* g_wait_patch = nullptr;

DWORD WINAPI Wait(HANDLE handle, DWORD timeout_ms) {
  g_waits.asked.push_back(timeout_ms);
  if (g_waits.scripted) return g_waits.answer;
  return g_wait_patch->Original<DWORD WINAPI(HANDLE, DWORD)>()(handle, timeout_ms);
}

class FanMutex : public EcTest {
 protected:
  FanMutex() {
    g_wait_patch = &wait_;
    // Each export makes its guard with its first call, which waits for what another one made already.
    HealthyTable_SetFanTestMode(0);
    Quillo_Read_Fan(0);
    UseVersion(28);
    g_waits = {};
  }
  ~FanMutex() override {
    g_waits.scripted = false;
    EXPECT_TRUE(IsFree());
  }

  // Whether another thread could have the mutex. Leaves no trace.
  static bool IsFree() {
    bool free = false;
    std::thread([&free] {
      const KernelHandle mutex(OpenMutexW(SYNCHRONIZE | MUTEX_MODIFY_STATE, FALSE, kFanMutexName));
      free = WaitForSingleObjectEx(mutex.get(), 0, FALSE) == WAIT_OBJECT_0;
      if (free) kRelease(mutex.get());
    }).join();
    return free;
  }

  static inline BOOL(WINAPI* const kRelease)(HANDLE) = ReleaseMutex;
  ImportPatch wait_{"WaitForSingleObject", Wait};
};

TEST_F(FanMutex, TestModeKeepsItUntilItIsTurnedOff) {
  EXPECT_EQ(HealthyTable_SetFanTestMode(1), 1u);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion, "dd 82 31 01"));
  EXPECT_THAT(TakeLines(), ElementsAre("5 [EC_BH][HealthyTable_SetFanTestMode]"));
  EXPECT_THAT(g_waits.asked, ElementsAre(10000));
  EXPECT_FALSE(IsFree());
  // Reading takes it once more and gives that back.
  EXPECT_NE(Quillo_Read_Fan(0), kNoAnswer);
  EXPECT_THAT(g_waits.asked, ElementsAre(10000, 5000));
  EXPECT_FALSE(IsFree());
  ec_.TakeExchanges();
  EXPECT_EQ(HealthyTable_SetFanTestMode(0), 1u);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion, "dd 82 31 00"));
  EXPECT_THAT(g_waits.asked, ElementsAre(10000, 5000));
  EXPECT_TRUE(IsFree());
}

TEST_F(FanMutex, EveryModeButZeroIsOnAndTestModeIsCounted) {
  for (const uint32_t mode : {2u, 0x80u, 0x100u, 0xFFFFFFFFu}) {
    EXPECT_EQ(HealthyTable_SetFanTestMode(mode), 1u);
    EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion, "dd 82 31 01"));
  }
  for (int i = 0; i < 4; ++i) {
    EXPECT_FALSE(IsFree());
    EXPECT_EQ(HealthyTable_SetFanTestMode(0), 1u);
  }
}

TEST_F(FanMutex, NothingIsSentWithoutIt) {
  g_waits.scripted = true;
  for (const DWORD answer : {DWORD{WAIT_TIMEOUT}, DWORD{WAIT_ABANDONED}, DWORD{WAIT_FAILED}}) {
    g_waits.answer = answer;
    g_waits.asked.clear();
    EXPECT_EQ(HealthyTable_SetFanTestMode(1), 0u);
    EXPECT_EQ(Quillo_Read_Fan(0), kNoAnswer);
    EXPECT_THAT(g_waits.asked, ElementsAre(10000, 5000));
  }
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
}

TEST_F(FanMutex, ClosedGateGivesItBackAndAFailedWriteKeepsIt) {
  for (const ScriptedEc::Failure failure : kFailures) {
    UseVersion(28);
    ec_.FailExchange(0, failure);
    EXPECT_EQ(HealthyTable_SetFanTestMode(1), 0u);
    EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion));
    EXPECT_THAT(TakeLines(),
                ElementsAre("5 [EC_BH][HealthyTable_SetFanTestMode]",
                            "5 [EC_BH][HealthyTable_SetFanTestMode] Fail. BatteryHealthyTable version: 2147483647"));
    EXPECT_TRUE(IsFree());

    ec_.FailExchange(1, failure);
    EXPECT_EQ(HealthyTable_SetFanTestMode(1), 0u);
    EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion, "dd 82 31 01"));
    EXPECT_FALSE(IsFree());

    // Turning off gives it back, whether the EC takes that or not.
    EXPECT_EQ(HealthyTable_SetFanTestMode(0), 0u);
    EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion, "dd 82 31 00"));
    EXPECT_TRUE(IsFree());
  }
  UseVersion(0);
  EXPECT_EQ(HealthyTable_SetFanTestMode(1), 0u);
  EXPECT_TRUE(IsFree());
}

TEST_F(FanMutex, ClosedGateWhileTurningOffGivesItBackToo) {
  EXPECT_EQ(HealthyTable_SetFanTestMode(1), 1u);
  UseVersion(0);
  EXPECT_EQ(HealthyTable_SetFanTestMode(0), 0u);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion));
}

TEST_F(FanMutex, AnotherThreadTurnsItOffInTheEcAlone) {
  EXPECT_EQ(HealthyTable_SetFanTestMode(1), 1u);
  ec_.TakeExchanges();
  TakeLines();
  std::thread([this] {
    EXPECT_EQ(HealthyTable_SetFanTestMode(0), 1u);
    EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion, "dd 82 31 00"));
  }).join();
  EXPECT_THAT(TakeLines(), Contains("1 [MutexWrapper] ReleaseMutex error: 288"));
  EXPECT_FALSE(IsFree());
  EXPECT_EQ(HealthyTable_SetFanTestMode(0), 1u);
}

TEST_F(FanMutex, ReadingGivesItBackWhateverItAnswers) {
  EXPECT_EQ(Quillo_Read_Fan(0x7F000000), 0u);
  EXPECT_TRUE(IsFree());
  UseVersion(0);
  EXPECT_EQ(Quillo_Read_Fan(0), kNotAvailable);
  EXPECT_TRUE(IsFree());
}

TEST_F(FanMutex, AThreadThatEndsInTestModeFailsTheNextCallerAlone) {
  std::thread([] { EXPECT_EQ(HealthyTable_SetFanTestMode(1), 1u); }).join();
  ec_.TakeExchanges();
  EXPECT_EQ(Quillo_Read_Fan(0), kNoAnswer);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
  EXPECT_EQ(HealthyTable_SetFanTestMode(1), 1u);
  EXPECT_EQ(HealthyTable_SetFanTestMode(0), 1u);
}

}  // namespace
}  // namespace vexa::test
