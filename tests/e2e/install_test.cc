// The driver service: installed, moved, started and stopped by the library.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/e2e/library.h"
#include "tests/e2e/notebook.h"
#include "tests/support/arch_value.h"

namespace vexa::test {
namespace {

const ServiceConfiguration kInstalled = {
    .type = 1, .start = 3, .error_control = 1, .path = L"\\??\\C:\\Vexa\\VexaSAIO.sys", .display_name = L"VexaSAIO"};

std::wstring Arch() {
  wchar_t text[32] = {};
  DWORD size = sizeof text;
  RegGetValueW(HKEY_LOCAL_MACHINE, kConfigKeyName, L"Arch", RRF_RT_REG_SZ, nullptr, text, &size);
  return text;
}

// A folder that holds a copy of `file`, while it lives.
class FolderWithCopy {
 public:
  FolderWithCopy(const std::wstring& folder, const std::wstring& file) : folder_(folder) {
    CreateDirectoryW(folder.c_str(), nullptr);
    Add(file);
  }
  ~FolderWithCopy() {
    for (const std::wstring& copy : copies_) DeleteFileW(copy.c_str());
    RemoveDirectoryW(folder_.c_str());
  }
  void Add(const std::wstring& file) {
    copies_.push_back(folder_ + file.substr(file.find_last_of(L'\\')));
    EXPECT_TRUE(CopyFileW(file.c_str(), copies_.back().c_str(), FALSE));
  }

 private:
  std::wstring folder_;
  std::vector<std::wstring> copies_;
};

using Install = EndToEnd;

TEST_F(Install, FromNothing) {
  const Library library;
  EXPECT_EQ(ServiceState(), kNotRegistered);
  EXPECT_EQ(library.InitializeWinIo(), 1u);
  EXPECT_EQ(ServiceState(), DWORD{SERVICE_RUNNING});
  EXPECT_EQ(ServiceSettings(), kInstalled);
  EXPECT_EQ(Arch(), L"x64");
  EXPECT_EQ(library.GetDriverVersion(), 0x00010203u);
  EXPECT_EQ(library.GetRefCount(), 1u);
  EXPECT_EQ(library.GetIoDllVersion(), 65537u);
  EXPECT_EQ(library.wmiadd(0xFFFFFFFF), 0u);
  library.ShutdownWinIo();
  EXPECT_EQ(ServiceState(), DWORD{SERVICE_RUNNING});
  EXPECT_THAT(TakeDriverLog(),
              testing::ElementsAre("open VexaSAIO handles 1", "version -> 0x00010203", "references -> 0x00000001"));
}

TEST_F(Install, AServiceElsewhereIsRemovedAndCreatedAgain) {
  for (const bool running : {false, true}) {
    SCOPED_TRACE(running);
    RemoveService();
    const FolderWithCopy folder(L"C:\\Vexa-other", kDriverFile);
    RegisterService(L"\\??\\C:\\Vexa-other\\VexaSAIO.sys", L"old");
    if (running) EXPECT_TRUE(StartRegisteredService());
    const Library library;
    const Ready ready(library);
    EXPECT_EQ(ready.answer(), 1u);
    EXPECT_EQ(ServiceSettings(), kInstalled);
    EXPECT_EQ(library.GetRefCount(), 1u);
  }
}

TEST_F(Install, ALibraryUnderTheWindowsFolderRegistersUnderSystemRoot) {
  FolderWithCopy folder(L"C:\\windows\\vexa-e2e", kLibraryFile);
  folder.Add(kDriverFile);
  const Library library(L"C:\\windows\\vexa-e2e\\VexaWinIO64.dll");
  for (int round = 0; round < 2; ++round) {
    const Ready ready(library);
    EXPECT_EQ(ready.answer(), 1u);
    EXPECT_EQ(ServiceSettings().path, L"\\SystemRoot\\vexa-e2e\\VexaSAIO.sys");
    EXPECT_EQ(library.GetRefCount(), 1u);
  }
}

TEST_F(Install, AServiceLeftStoppedIsStartedAndNotCreatedAgain) {
  const Library library;
  // Nothing to stop.
  for (const uint32_t holds_mutex : {0u, 1u}) EXPECT_EQ(library.StopWinIoDriver(holds_mutex), 0u);
  RegisterService(L"\\??\\C:\\Vexa\\VexaSAIO.sys", L"kept");
  for (int round = 0; round < 2; ++round) {
    {
      const Ready ready(library);
    }
    EXPECT_EQ(ServiceState(), DWORD{SERVICE_RUNNING});
    EXPECT_EQ(ServiceSettings().display_name, L"kept");
    for (int stop = 0; stop < 2; ++stop) {
      EXPECT_EQ(library.StopWinIoDriver(0), 1u);
      EXPECT_EQ(ServiceState(), DWORD{SERVICE_STOPPED});
    }
  }
}

TEST_F(Install, WithoutTheDriverFileWhatIsRegisteredIsStarted) {
  constexpr wchar_t kElsewhere[] = L"\\??\\C:\\Vexa-other\\VexaSAIO.sys";
  const FolderWithCopy folder(L"C:\\Vexa-other", kDriverFile);
  RegisterService(kElsewhere, L"kept");
  const HiddenDriverFile hidden;
  const Library library;
  {
    const Ready ready(library);
    EXPECT_EQ(ready.answer(), 1u);
    EXPECT_EQ(library.GetRefCount(), 1u);
  }
  EXPECT_EQ(ServiceSettings().path, kElsewhere);
  EXPECT_EQ(ServiceSettings().display_name, L"kept");

  RemoveService();
  EXPECT_EQ(library.InitializeWinIo(), 0u);
  EXPECT_EQ(ServiceState(), kNotRegistered);
}

// A driver that refuses to start leaves the service registered, and the next attempt finds it.
TEST_F(Install, ADriverThatDoesNotStart) {
  UseScenario("start-fails");
  const Library library;
  EXPECT_EQ(library.InitializeWinIo(), 0u);
  EXPECT_EQ(ServiceState(), DWORD{SERVICE_STOPPED});
  EXPECT_EQ(ServiceSettings(), kInstalled);
  EXPECT_EQ(library.GetRefCount(), 0u);
  UseScenario("healthy-x64");
  const Ready ready(library);
  EXPECT_EQ(ready.answer(), 1u);
}

TEST_F(Install, TheFirmwareRouteLeavesServiceAndDeviceAloneAndIsLookedUpAtEachCall) {
  const Library library;
  {
    const ArchValue arch(L"ARM64");
    const Ready first(library), second(library);
    EXPECT_EQ(second.answer(), 1u);
    EXPECT_EQ(library.GetDriverVersion(), 0u);
    EXPECT_EQ(library.GetRefCount(), 0u);
  }
  EXPECT_EQ(ServiceState(), kNotRegistered);
  const Ready ready(library);
  EXPECT_EQ(library.GetDriverVersion(), 0x00010203u);
  const ArchValue arch(L"ARM64");
  EXPECT_EQ(library.GetDriverVersion(), 0u);
}

}  // namespace
}  // namespace vexa::test
