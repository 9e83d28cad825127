// The driver service: installed, moved, started and stopped by the library.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/e2e/library.h"
#include "tests/e2e/notebook.h"
#include "tests/support/arch_value.h"
#include "tests/support/import_patch.h"

namespace vexa::test {
namespace {

const ServiceConfiguration kInstalled = {.type = 1,
                                         .start = 3,
                                         .error_control = 1,
                                         .path = L"\\??\\C:\\Vexa\\VexaSAIO.sys",
                                         .display_name = L"VexaSAIO"};

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
  EXPECT_THAT(TakeDriverLog(), testing::ElementsAre("open VexaSAIO handles 1", "version -> 0x00010203",
                                                    "references -> 0x00000001"));
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
  RegisterService(L"\\??\\C:\\Vexa\\VexaSAIO.sys", L"kept");
  const Library library;
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(library.InitializeWinIo(), 1u);
    EXPECT_EQ(ServiceState(), DWORD{SERVICE_RUNNING});
    EXPECT_EQ(ServiceSettings().display_name, L"kept");
    library.ShutdownWinIo();
    EXPECT_EQ(library.StopWinIoDriver(0), 1u);
    EXPECT_EQ(ServiceState(), DWORD{SERVICE_STOPPED});
  }
}

TEST_F(Install, WithoutTheDriverFileWhatIsRegisteredIsStarted) {
  const FolderWithCopy folder(L"C:\\Vexa-other", kDriverFile);
  RegisterService(L"\\??\\C:\\Vexa-other\\VexaSAIO.sys", L"kept");
  const HiddenDriverFile hidden;
  const Library library;
  {
    const Ready ready(library);
    EXPECT_EQ(ready.answer(), 1u);
    EXPECT_EQ(library.GetRefCount(), 1u);
  }
  EXPECT_EQ(ServiceSettings().path, L"\\??\\C:\\Vexa-other\\VexaSAIO.sys");
  EXPECT_EQ(ServiceSettings().display_name, L"kept");

  RemoveService();
  EXPECT_EQ(library.InitializeWinIo(), 0u);
  EXPECT_EQ(ServiceState(), kNotRegistered);
}

TEST_F(Install, StoppingARunningAStoppedAndNoService) {
  const Library library;
  EXPECT_EQ(library.StopWinIoDriver(0), 0u);
  EXPECT_EQ(library.StopWinIoDriver(1), 0u);
  { const Ready ready(library); }
  EXPECT_EQ(ServiceState(), DWORD{SERVICE_RUNNING});
  EXPECT_EQ(library.StopWinIoDriver(0), 1u);
  EXPECT_EQ(ServiceState(), DWORD{SERVICE_STOPPED});
  EXPECT_EQ(library.StopWinIoDriver(0), 1u);
  EXPECT_EQ(ServiceSettings(), kInstalled);
}

TEST_F(Install, TheRouteIsLookedUpAtEachCall) {
  const Library library;
  const Ready ready(library);
  EXPECT_EQ(library.GetDriverVersion(), 0x00010203u);
  {
    const ArchValue arch(L"ARM64");
    EXPECT_EQ(library.GetDriverVersion(), 0u);
    EXPECT_EQ(library.GetRefCount(), 0u);
  }
  EXPECT_EQ(library.GetDriverVersion(), 0x00010203u);
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

TEST_F(Install, TheFirmwareRouteLeavesServiceAndDeviceAlone) {
  const ArchValue arch(L"ARM64");
  const Library library;
  EXPECT_EQ(library.InitializeWinIo(), 1u);
  EXPECT_EQ(library.InitializeWinIo(), 1u);
  EXPECT_EQ(library.GetDriverVersion(), 0u);
  EXPECT_EQ(library.GetRefCount(), 0u);
  library.ShutdownWinIo();
  library.ShutdownWinIo();
  EXPECT_EQ(ServiceState(), kNotRegistered);
}

TEST_F(Install, AnyOtherArchTextTakesTheDriver) {
  const ArchValue arch(L"arm64");
  const Library library;
  const Ready ready(library);
  EXPECT_EQ(ready.answer(), 1u);
  EXPECT_EQ(library.GetRefCount(), 1u);
  EXPECT_EQ(Arch(), L"arm64");
}

std::vector<DWORD> g_shares;     // asked for at each opening of the device
size_t g_refused_openings = 0;  // of them, that fail

HANDLE WINAPI RefusingCreateFile(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                 DWORD disposition, DWORD flags, HANDLE model) {
  if (std::wstring(name) == L"\\\\.\\VexaSAIO" && access == (GENERIC_READ | GENERIC_WRITE)) {
    g_shares.push_back(share);
    if (g_shares.size() <= g_refused_openings) {
      SetLastError(ERROR_SHARING_VIOLATION);
      return INVALID_HANDLE_VALUE;
    }
  }
  return CreateFileW(name, access, share, security, disposition, flags, model);
}

TEST_F(Install, TheDeviceIsOpenedAloneElseShared) {
  const Library library;
  const ImportPatch open("CreateFileW", RefusingCreateFile, library.module());
  const std::vector<DWORD> kShares = {0, FILE_SHARE_READ | FILE_SHARE_WRITE};
  for (const size_t refused : {size_t{0}, size_t{1}, size_t{2}}) {
    SCOPED_TRACE(refused);
    g_shares.clear();
    g_refused_openings = refused;
    const Ready ready(library);
    EXPECT_EQ(ready.answer(), refused < 2 ? 1u : 0u);
    EXPECT_EQ(library.GetRefCount(), refused < 2 ? 1u : 0u);
    EXPECT_EQ(g_shares, std::vector(kShares.begin(), kShares.begin() + (refused == 0 ? 1 : 2)));
  }
}

}  // namespace
}  // namespace vexa::test
