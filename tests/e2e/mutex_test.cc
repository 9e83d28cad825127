// Installing, starting and stopping, each serialised with other processes by one mutex.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/e2e/library.h"
#include "tests/e2e/notebook.h"
#include "tests/e2e/peer.h"

namespace vexa::test {
namespace {

using Lines = std::vector<std::string>;

// One of the three routines that take the mutex.
struct Routine {
  const char* name;
  DWORD state_before;  // of the service
  const char* command;
  const char* wait;
  DWORD state_after;
  Lines gave_up;  // of the trace
  Lines waited;
};

void PrintTo(const Routine& routine, std::ostream* stream) { *stream << routine.name; }

const Routine kRoutines[] = {
    {"Install", kNotRegistered, "initialize", "wait 5000", SERVICE_RUNNING,
     {"1 EnsureIoDriverRunning() has been called by other thread. Wait for the thread finished.",
      "5 WARNING: EnsureIoDriverRunning() has been executing for over 3 seconds. No more waiting."},
     {"1 EnsureIoDriverRunning() has been called by other thread. Wait for the thread finished.",
      "5 EnsureIoDriverRunning() is finished by other thread. Wait for the thread finished."}},
    {"Start", SERVICE_STOPPED, "initialize", "wait 3500", SERVICE_RUNNING,
     {"5 [StartWinIoDriverEx] has been called by other thread. Wait for the thread finished.",
      "5 WARNING: [StopWinIoDriverEx] has been executing for over 3500 ms. No more waiting."},
     {"5 [StartWinIoDriverEx] has been called by other thread. Wait for the thread finished.",
      "5 [StartWinIoDriverEx] is finished by other thread. Wait for the thread finished."}},
    {"Stop", SERVICE_RUNNING, "stop 0", "wait 2500", SERVICE_STOPPED,
     {"5 [StopWinIoDriverEx] has been called by other thread. Wait for the thread finished.",
      "5 WARNING: [StopWinIoDriverEx] has been executing for over 2500 ms. No more waiting."},
     {"5 [StopWinIoDriverEx] has been called by other thread. Wait for the thread finished.",
      "5 [StopWinIoDriverEx] is finished by other thread. Wait for the thread finished."}},
};

// The lines that speak of other threads.
Lines AboutTheMutex(const Lines& trace) {
  Lines lines;
  for (const std::string& line : trace) {
    if (line.find("other thread") != std::string::npos || line.find("No more waiting") != std::string::npos) {
      lines.push_back(line);
    }
  }
  return lines;
}

class Mutex : public EndToEnd, public testing::WithParamInterface<Routine> {
 protected:
  void SetUp() override {
    EndToEnd::SetUp();
    if (GetParam().state_before != kNotRegistered) RegisterService(L"\\??\\C:\\Vexa\\VexaSAIO.sys");
    if (GetParam().state_before == SERVICE_RUNNING) ASSERT_TRUE(StartRegisteredService());
  }
};

TEST_P(Mutex, GivesUpWhileTheOwnerLives) {
  Peer owner("owner");
  Peer waiter("library");
  EXPECT_EQ(owner.Ask("take"), Lines{"= 1"});
  EXPECT_EQ(waiter.Ask(GetParam().command), (Lines{GetParam().wait, "waited 258", "= 0"}));
  EXPECT_EQ(ServiceState(), GetParam().state_before);
  EXPECT_EQ(AboutTheMutex(waiter.Ask("trace")), GetParam().gave_up);
  owner.Exit();
  // The one that gave up holds nothing that the next attempt would wait for.
  EXPECT_EQ(waiter.Ask(GetParam().command), Lines{"= 1"});
  EXPECT_EQ(ServiceState(), GetParam().state_after);
  // Nor does the one that succeeded.
  EXPECT_EQ(OpenMutexW(SYNCHRONIZE, FALSE, L"VEXAWINIO_!@#$%^&*"), nullptr);
}

TEST_P(Mutex, CarriesOnWhenTheOwnerIsKilled) {
  Peer owner("owner");
  Peer waiter("library");
  EXPECT_EQ(owner.Ask("take"), Lines{"= 1"});
  waiter.Tell(GetParam().command);
  EXPECT_EQ(waiter.Line(), GetParam().wait);
  owner.Kill();
  EXPECT_EQ(waiter.Answer(), (Lines{"waited 128", "= 1"}));
  EXPECT_EQ(ServiceState(), GetParam().state_after);
}

TEST_P(Mutex, CarriesOnWhenTheOwnerGivesItBack) {
  Peer owner("owner");
  Peer waiter("library");
  EXPECT_EQ(owner.Ask("take"), Lines{"= 1"});
  waiter.Tell(GetParam().command);
  EXPECT_EQ(waiter.Line(), GetParam().wait);
  EXPECT_EQ(owner.Ask("release"), Lines{"= 1"});
  EXPECT_EQ(waiter.Answer(), (Lines{"waited 0", "= 1"}));
  EXPECT_EQ(AboutTheMutex(waiter.Ask("trace")), GetParam().waited);
}

// What holds the mutex is the thread, until it ends: the routine closes its handle and no more.
TEST_P(Mutex, IsClosedAndNotReleased) {
  Peer peer("library");
  const HANDLE mutex = CreateMutexW(nullptr, FALSE, L"VEXAWINIO_!@#$%^&*");
  EXPECT_EQ(peer.Ask(GetParam().command), (Lines{GetParam().wait, "waited 0", "= 1"}));
  EXPECT_EQ(WaitForSingleObject(mutex, 0), DWORD{WAIT_TIMEOUT});
  peer.Exit();
  EXPECT_EQ(WaitForSingleObject(mutex, 0), DWORD{WAIT_ABANDONED});
  ReleaseMutex(mutex);
  CloseHandle(mutex);
}

INSTANTIATE_TEST_SUITE_P(Routines, Mutex, testing::ValuesIn(kRoutines),
                         [](const auto& info) { return info.param.name; });

using MutexUntouched = EndToEnd;

TEST_F(MutexUntouched, ByARunningServiceAndByCallersThatHoldIt) {
  RegisterService(L"\\??\\C:\\Vexa\\VexaSAIO.sys");
  ASSERT_TRUE(StartRegisteredService());
  Peer owner("owner");
  Peer peer("library");
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
