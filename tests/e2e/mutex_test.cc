// Installing, starting and stopping, each serialised with other processes by one mutex.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/e2e/library.h"
#include "tests/e2e/notebook.h"
#include "tests/e2e/peer.h"

namespace vexa::test {
namespace {

constexpr wchar_t kMutexName[] = L"VEXAWINIO_!@#$%^&*";

// One of the three routines that take the mutex.
struct Routine {
  const char* name;
  DWORD state_before;  // of the service
  const char* command;
  const char* wait;
  DWORD state_after;
};

void PrintTo(const Routine& routine, std::ostream* stream) { *stream << routine.name; }

constexpr Routine kRoutines[] = {{"Install", kNotRegistered, "initialize", "wait 5000", SERVICE_RUNNING},
                                 {"Start", SERVICE_STOPPED, "initialize", "wait 3500", SERVICE_RUNNING},
                                 {"Stop", SERVICE_RUNNING, "stop 0", "wait 2500", SERVICE_STOPPED}};

void PutService(DWORD state) {
  if (state != kNotRegistered) RegisterService(L"\\??\\C:\\Vexa\\VexaSAIO.sys");
  if (state == SERVICE_RUNNING) ASSERT_TRUE(StartRegisteredService());
}

class Mutex : public EndToEnd, public testing::WithParamInterface<Routine> {
 protected:
  void SetUp() override {
    EndToEnd::SetUp();
    PutService(GetParam().state_before);
  }

  // The waiter has asked for the mutex, which the owner has.
  void BeginToWait() {
    EXPECT_EQ(owner_.Ask("take"), Lines{"= 1"});
    waiter_.Tell(GetParam().command);
    EXPECT_EQ(waiter_.Line(), GetParam().wait);
  }

  Peer owner_;
  Peer waiter_;
};

TEST_P(Mutex, GivesUpWhileTheOwnerLives) {
  BeginToWait();
  EXPECT_EQ(waiter_.Answer(), (Lines{"waited 258", "= 0"}));
  EXPECT_EQ(ServiceState(), GetParam().state_before);
  owner_.Exit();
  // The one that gave up holds nothing that the next attempt would wait for.
  EXPECT_EQ(waiter_.Ask(GetParam().command), Lines{"= 1"});
  EXPECT_EQ(ServiceState(), GetParam().state_after);
  // Nor does the one that succeeded.
  EXPECT_EQ(OpenMutexW(SYNCHRONIZE, FALSE, kMutexName), nullptr);
}

TEST_P(Mutex, CarriesOnWhenTheOwnerIsKilled) {
  BeginToWait();
  owner_.Kill();
  EXPECT_EQ(waiter_.Answer(), (Lines{"waited 128", "= 1"}));
  EXPECT_EQ(ServiceState(), GetParam().state_after);
}

TEST_P(Mutex, CarriesOnWhenTheOwnerGivesItBack) {
  BeginToWait();
  EXPECT_EQ(owner_.Ask("release"), Lines{"= 1"});
  EXPECT_EQ(waiter_.Answer(), (Lines{"waited 0", "= 1"}));
}

// What holds the mutex is the thread, until it ends: the routine closes its handle and no more.
TEST_P(Mutex, IsClosedAndNotReleased) {
  const HANDLE mutex = CreateMutexW(nullptr, FALSE, kMutexName);
  EXPECT_EQ(waiter_.Ask(GetParam().command), (Lines{GetParam().wait, "waited 0", "= 1"}));
  EXPECT_EQ(WaitForSingleObject(mutex, 0), DWORD{WAIT_TIMEOUT});
  waiter_.Exit();
  EXPECT_EQ(WaitForSingleObject(mutex, 0), DWORD{WAIT_ABANDONED});
  ReleaseMutex(mutex);
  CloseHandle(mutex);
}

INSTANTIATE_TEST_SUITE_P(Routines, Mutex, testing::ValuesIn(kRoutines),
                         [](const auto& info) { return info.param.name; });

using MutexUntouched = EndToEnd;

TEST_F(MutexUntouched, ByARunningServiceAndByCallersThatHoldIt) {
  PutService(SERVICE_RUNNING);
  Peer owner, peer;
  EXPECT_EQ(owner.Ask("take"), Lines{"= 1"});
  EXPECT_EQ(peer.Ask("initialize"), Lines{"= 1"});
  EXPECT_EQ(peer.Ask("references"), Lines{"= 1"});
  peer.Ask("shutdown");
  EXPECT_EQ(peer.Ask("stop 1"), Lines{"= 1"});
  EXPECT_EQ(ServiceState(), DWORD{SERVICE_STOPPED});
  EXPECT_EQ(peer.Ask("stop 0"), Lines{"= 1"});
}

}  // namespace
}  // namespace vexa::test
