// The cross-process mutex guard, on real mutexes and real threads; waits that would last are scripted.
#include "frame/mutex_guard.h"

#include <thread>

#include "frame/handles.h"
#include "tests/support/shell_test.h"

namespace vexa::test {
namespace {

struct Waits {
  std::vector<DWORD> asked;
  DWORD answer = WAIT_TIMEOUT;
} g_waits;

DWORD WINAPI ScriptedWait(HANDLE, DWORD timeout_ms) {
  g_waits.asked.push_back(timeout_ms);
  return g_waits.answer;
}

struct CreateCall {
  bool has_null_dacl = false;
  bool inheritable = true;
  BOOL owned = TRUE;
  std::wstring name;
} g_create;
bool g_create_fails = false;
// In place of the real name, which this program's own guards may hold.
constexpr wchar_t kFanMutexHere[] = L"Global\\FancontrolMutex of the guard's tests";
ImportPatch* g_create_patch = nullptr;

HANDLE WINAPI RecordCreateMutex(LPSECURITY_ATTRIBUTES attributes, BOOL owned, LPCWSTR name) {
  g_create = {.owned = owned, .name = name ? name : L""};
  if (attributes != nullptr) {
    BOOL present = FALSE, defaulted = FALSE;
    PACL dacl = reinterpret_cast<PACL>(uintptr_t{1});
    GetSecurityDescriptorDacl(attributes->lpSecurityDescriptor, &present, &dacl, &defaulted);
    g_create.has_null_dacl = present && dacl == nullptr;
    g_create.inheritable = attributes->bInheritHandle;
  }
  if (g_create_fails) {
    SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
  }
  if (name != nullptr && std::wstring(name) == L"Global\\FancontrolMutex") name = kFanMutexHere;
  return g_create_patch->Original<HANDLE WINAPI(LPSECURITY_ATTRIBUTES, BOOL, LPCWSTR)>()(attributes, owned, name);
}

class MutexGuard : public ShellTest {
 protected:
  MutexGuard() {
    g_waits = {};
    g_create_fails = false;
    g_create_patch = &create_;
  }

  ImportPatch create_{"CreateMutexW", RecordCreateMutex};
};

// Runs `body` on a thread that has ended when this returns: what it owned is abandoned.
template <typename Body>
void OnThread(Body body) {
  std::thread(body).join();
}

constexpr char kCalled[] =
    "1 [MutexWrapper] Global\\FancontrolMutex has been called by other thread. Wait for the thread finished.";

TEST_F(MutexGuard, FirstFanGuardWaitsForNothing) {
  MutexWrapper guard = MutexWrapper::Fan(10000);
  EXPECT_EQ(g_create.name, L"Global\\FancontrolMutex");
  EXPECT_TRUE(g_create.has_null_dacl);
  EXPECT_FALSE(g_create.inheritable);
  EXPECT_FALSE(g_create.owned);
  EXPECT_THAT(Lines(), IsEmpty());
  EXPECT_EQ(guard.Unlock(), 0u);  // built, not owned
  EXPECT_THAT(Lines(), ElementsAre("1 [MutexWrapper] ReleaseMutex error: 288"));
  EXPECT_EQ(guard.Lock(0), 1u);
  OnThread([] {
    const KernelHandle other(OpenMutexW(SYNCHRONIZE, FALSE, kFanMutexHere));
    EXPECT_EQ(WaitForSingleObject(other.get(), 0), DWORD{WAIT_TIMEOUT});
  });
  EXPECT_EQ(guard.Unlock(), 1u);
}

TEST_F(MutexGuard, WaitWhileBuildingIsTheLock) {
  MutexWrapper first = MutexWrapper::Fan(10000);
  MutexWrapper second = MutexWrapper::Fan(4000);
  EXPECT_THAT(Lines(), ElementsAre(kCalled,
                                   "5 [MutexWrapper] Global\\FancontrolMutex is finished by other thread. Wait "
                                   "for the thread finished."));
  EXPECT_EQ(second.Lock(4000), 1u);
  // One release frees it: nothing was acquired twice.
  EXPECT_EQ(second.Unlock(), 1u);
  EXPECT_EQ(second.Unlock(), 0u);
}

TEST_F(MutexGuard, LostWaitWhileBuildingIsLostOnceAndNotWaitedTwice) {
  MutexWrapper first = MutexWrapper::Fan(10000);
  const ImportPatch wait("WaitForSingleObject", ScriptedWait);
  MutexWrapper second = MutexWrapper::Fan(5000);
  EXPECT_THAT(Lines(), ElementsAre(kCalled,
                                   "5 [MutexWrapper] WARNING: Global\\FancontrolMutex has been executing for "
                                   "over 5000 milliseconds. No more waiting."));
  EXPECT_EQ(second.Lock(5000), 0u);
  EXPECT_THAT(g_waits.asked, ElementsAre(5000));
  g_waits.answer = WAIT_OBJECT_0;
  EXPECT_EQ(second.Lock(700), 1u);
  EXPECT_THAT(g_waits.asked, ElementsAre(5000, 700));
}

TEST_F(MutexGuard, WaitWhileBuildingThatIsGivenBackIsNoLock) {
  MutexWrapper first = MutexWrapper::Fan(10000);
  MutexWrapper second = MutexWrapper::Fan(4000);
  EXPECT_EQ(second.Unlock(), 1u);
  HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  HANDLE taken = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  std::thread owner([&] {
    EXPECT_EQ(first.Lock(0), 1u);
    SetEvent(taken);
    WaitForSingleObjectEx(done, INFINITE, FALSE);
    EXPECT_EQ(first.Unlock(), 1u);
  });
  WaitForSingleObjectEx(taken, INFINITE, FALSE);
  EXPECT_EQ(second.Lock(0), 0u);
  // A wait that was lost while building is over as well: the next lock waits for itself.
  MutexWrapper third = MutexWrapper::Fan(0);
  EXPECT_EQ(third.Unlock(), 0u);
  SetEvent(done);
  owner.join();
  EXPECT_EQ(third.Lock(0), 1u);
  EXPECT_EQ(third.Unlock(), 1u);
  CloseHandle(taken);
  CloseHandle(done);
}

// A thread takes the mutex and ends.
void Abandon() {
  OnThread([] {
    const KernelHandle mutex(OpenMutexW(MUTEX_ALL_ACCESS, FALSE, kFanMutexHere));
    EXPECT_EQ(WaitForSingleObject(mutex.get(), 0), DWORD{WAIT_OBJECT_0});
  });
}

TEST_F(MutexGuard, AbandonedMutexFailsOnceAndIsGivenBack) {
  MutexWrapper guard = MutexWrapper::Fan(0);
  Abandon();
  EXPECT_EQ(guard.Lock(0), 0u);
  OnThread([&] {
    EXPECT_EQ(guard.Lock(0), 1u);
    EXPECT_EQ(guard.Unlock(), 1u);
  });
  // So it is while another guard is built.
  Abandon();
  Lines();
  MutexWrapper built = MutexWrapper::Fan(0);
  EXPECT_THAT(Lines(), ElementsAre(kCalled));
  EXPECT_EQ(built.Lock(0), 0u);
  EXPECT_EQ(built.Lock(0), 1u);
}

TEST_F(MutexGuard, OtherWaitResultsFail) {
  MutexWrapper guard;
  const ImportPatch wait("WaitForSingleObject", ScriptedWait);
  for (const DWORD answer : {DWORD{WAIT_TIMEOUT}, DWORD{WAIT_FAILED}, DWORD{WAIT_IO_COMPLETION}}) {
    g_waits.answer = answer;
    EXPECT_EQ(guard.Lock(1234), 0u);
  }
  EXPECT_THAT(g_waits.asked, ElementsAre(1234, 1234, 1234));
}

TEST_F(MutexGuard, CreationFailureLeavesAGuardThatNeverWaits) {
  g_create_fails = true;
  const ImportPatch wait("WaitForSingleObject", ScriptedWait);
  g_waits.answer = WAIT_OBJECT_0;
  MutexWrapper unnamed;
  MutexWrapper fan = MutexWrapper::Fan(10000);
  EXPECT_THAT(Lines(),
              ElementsAre("1 [MutexWrapper] CreateMutex error: 5", "1 [MutexWrapper_mutexname] CreateMutex error: 5"));
  EXPECT_EQ(unnamed.Lock(1), 0u);
  EXPECT_EQ(fan.Lock(1), 0u);
  EXPECT_EQ(fan.Unlock(), 0u);
  EXPECT_THAT(g_waits.asked, IsEmpty());
}

TEST_F(MutexGuard, EcLogGuardIsOnePerProcess) {
  MutexWrapper& guard = MutexWrapper::EcLog();
  EXPECT_EQ(&guard, &MutexWrapper::EcLog());
  EXPECT_EQ(guard.Lock(0), 1u);
  const KernelHandle other(OpenMutexW(SYNCHRONIZE, FALSE, L"Global\\SaveEcLogMutex"));
  EXPECT_TRUE(other);
  EXPECT_EQ(guard.Unlock(), 1u);
}

TEST_F(MutexGuard, DestroyingReleasesAndCloses) {
  {
    MutexWrapper guard = MutexWrapper::Fan(0);
    ASSERT_EQ(guard.Lock(0), 1u);
  }
  EXPECT_EQ(OpenMutexW(SYNCHRONIZE, FALSE, kFanMutexHere), nullptr);
  MutexWrapper keep = MutexWrapper::Fan(0);
  {
    MutexWrapper guard = MutexWrapper::Fan(0);
  }  // owned since it was built
  OnThread([&] { EXPECT_EQ(keep.Lock(0), 1u); });
}

}  // namespace
}  // namespace vexa::test
