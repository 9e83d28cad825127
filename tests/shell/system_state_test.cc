// Tablet mode, local time and S mode: each call of the system in turn, its failure and what is given back.
#include <cstring>

#include "frame/library_state.h"
#include "tests/support/scripted_ec.h"
#include "tests/support/shell_test.h"
#include "vexa/system.h"

namespace vexa::test {
namespace {

constexpr wchar_t kAnalysisKey[] = L"SOFTWARE\\Vexa\\Vexa System Control Interface\\VexaSystemAnalysis";
constexpr uint32_t kNoAnswer = 0x7FFFFFFF;

// ---- Tablet mode ----

class TabletMode : public ShellTest {
 protected:
  TabletMode() {
    UseRevision(0x4142);
    ec_.answer = [](const EcCommandRecord& record) {
      return EcReply{.value = static_cast<uint8_t>(record.command == 0x8E ? 0xA5 : 0)};
    };
  }
  ~TabletMode() override { Forget(); }

  static void UseRevision(DWORD revision) {
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, kAnalysisKey, L"EcFwRev", REG_DWORD, &revision, sizeof revision);
  }
  static void Forget() { RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kAnalysisKey, L"EcFwRev"); }

  ScriptedEc ec_;
};

TEST_F(TabletMode, IsTheByteOfItsCommand) {
  for (const DWORD revision : {0x4142u, 0x7FFFu, 0xFFFEu, 0x10000u}) {
    UseRevision(revision);
    EXPECT_EQ(System_Read_TabletMode(), 0xA5u);
    EXPECT_THAT(ec_.TakeExchanges(), ElementsAre("8e 33 00 read"));
  }
}

TEST_F(TabletMode, IsNotAskedOfAnEcWithoutRevision) {
  UseRevision(0xFFFF);
  EXPECT_EQ(System_Read_TabletMode(), 0u);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
  EXPECT_THAT(Lines(), ElementsAre("5 [System_Read_TabletMode] This model is ODM, bypass cmd = 0x8E"));
  // Here the EC itself says that it has none.
  Forget();
  EXPECT_EQ(System_Read_TabletMode(), 0u);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre("bb 51 read"));
}

TEST_F(TabletMode, WithoutAnAnswer) {
  for (const ScriptedEc::Failure failure : {ScriptedEc::Failure::kStatus, ScriptedEc::Failure::kRequest}) {
    ec_.FailExchange(0, failure);
    EXPECT_EQ(System_Read_TabletMode(), kNoAnswer);
    EXPECT_THAT(ec_.TakeExchanges(), ElementsAre("8e 33 00 read"));
    // A revision that can't be read is not "none": the command is tried.
    Forget();
    ec_.FailExchange(0, failure);
    EXPECT_EQ(System_Read_TabletMode(), 0xA5u);
    EXPECT_THAT(ec_.TakeExchanges(), ElementsAre("bb 51 read", "8e 33 00 read"));
    UseRevision(0x4142);
  }
  g_library.initialised = false;
  EXPECT_EQ(System_Read_TabletMode(), kNoAnswer);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
}

// ---- Local time ----

void WINAPI FixedTime(LPSYSTEMTIME time) {
  *time = {.wYear = 2026, .wMonth = 2, .wDayOfWeek = 2, .wDay = 3, .wHour = 9, .wMinute = 5, .wMilliseconds = 999};
}

TEST(LocalTime, FillsItsTwentyBytesAndNoMore) {
  const ImportPatch time("GetLocalTime", FixedTime);
  char text[24];
  std::memset(text, '#', sizeof text);
  EXPECT_EQ(System_Read_LocalTime(text), 19u);
  EXPECT_STREQ(text, "2026-02-03 09:05:00");
  EXPECT_EQ(text[20], '#');
  EXPECT_EQ(System_Read_LocalTime(nullptr), 0u);
}

// ---- S mode ----

const HMODULE kPolicy = reinterpret_cast<HMODULE>(uintptr_t{0x301DB000});

class SMode : public ShellTest {
 protected:
  SMode() { self_ = this; }

  static UINT WINAPI SystemFolder(LPWSTR folder, UINT size) {
    if (self_->script_.Fails("GetSystemDirectoryW", std::to_string(size))) return 0;
    const UINT length = static_cast<UINT>(self_->folder_.size());
    if (length >= size) return length + 1;
    std::memcpy(folder, self_->folder_.c_str(), (length + 1) * sizeof(wchar_t));
    return length;
  }
  static HMODULE WINAPI Load(LPCWSTR path, HANDLE file, DWORD flags) {
    if (self_->script_.Fails("LoadLibraryExW", Narrow(path) + (file ? " file " : " null ") + Hex(flags)))
      return nullptr;
    return kPolicy;
  }
  static FARPROC WINAPI LookUp(HMODULE module, LPCSTR name) {
    if (module != kPolicy) return self_->look_up_.Original<decltype(LookUp)>()(module, name);
    if (self_->script_.Fails("GetProcAddress", name)) return nullptr;
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(Query));
  }
  static HRESULT WINAPI Query(int* mode) {
    if (self_->script_.Fails("WldpQueryWindowsLockdownMode")) return E_FAIL;
    *mode = self_->mode_;
    return S_OK;
  }
  static BOOL WINAPI Free(HMODULE module) {
    if (module != kPolicy) return self_->free_.Original<decltype(Free)>()(module);
    (void)self_->script_.Fails("FreeLibrary");
    return TRUE;
  }

  static inline SMode* self_ = nullptr;
  CallScript script_;
  std::wstring folder_ = L"D:\\W100%s\\system32";
  int mode_ = 0;
  ImportPatch directory_{"GetSystemDirectoryW", SystemFolder};
  ImportPatch load_{"LoadLibraryExW", Load};
  ImportPatch look_up_{"GetProcAddress", LookUp};
  ImportPatch free_{"FreeLibrary", Free};
};

constexpr char kSuccess[] = "5 [System_Check_S_Mode] Load Dll Success\n";
constexpr char kFail[] = "5 [System_Check_S_Mode] QueryWindowsMode Fail\n";
constexpr char kResult0[] = "5 [System_Check_S_Mode] result = 0";
constexpr char kResult1[] = "5 [System_Check_S_Mode] result = 1";
constexpr char kDirectory[] = "GetSystemDirectoryW 260";
constexpr char kLoad[] = "LoadLibraryExW D:\\W100%s\\system32\\wldp.dll null 8";
constexpr char kLookUp[] = "GetProcAddress WldpQueryWindowsLockdownMode";
constexpr char kQuery[] = "WldpQueryWindowsLockdownMode";

TEST_F(SMode, IsTrialOrLocked) {
  for (const auto& [mode, answer] : {std::pair{0, 0u}, {1, 1u}, {2, 1u}, {3, 0u}, {-1, 0u}}) {
    mode_ = mode;
    EXPECT_EQ(System_Check_S_Mode(), answer) << mode;
    // Loaded and freed on each call.
    EXPECT_THAT(script_.Take(), ElementsAre(kDirectory, kLoad, kLookUp, kQuery, "FreeLibrary"));
    EXPECT_THAT(Lines(), ElementsAre(kSuccess, answer == 1 ? kResult1 : kResult0));
  }
}

TEST_F(SMode, EachCallFailingInTurn) {
  const struct {
    DWORD error;
    Strings calls, lines;
  } steps[] = {{5, {kDirectory}, {"5 [System_Check_S_Mode] Load Dll Error, error = 5"}},
               {126, {kDirectory, kLoad}, {"5 [System_Check_S_Mode] Load Dll Error, error = 126"}},
               {127, {kDirectory, kLoad, kLookUp, "FreeLibrary"}, {kSuccess, kFail, kResult0}},
               {1, {kDirectory, kLoad, kLookUp, kQuery, "FreeLibrary"}, {kSuccess, kFail, kResult0}}};
  mode_ = 2;
  for (int i = 0; i < 4; ++i) {
    script_.FailOnly(i, steps[i].error);
    EXPECT_EQ(System_Check_S_Mode(), 0u);
    EXPECT_EQ(script_.Take(), steps[i].calls);
    EXPECT_EQ(Lines(), steps[i].lines);
  }
}

// Nothing is loaded from anywhere else.
TEST_F(SMode, ASystemFolderTooLongIsNone) {
  folder_ = L"C:\\" + std::wstring(300, L'x');
  EXPECT_EQ(System_Check_S_Mode(), 0u);
  EXPECT_THAT(script_.Take(), ElementsAre(kDirectory));
  EXPECT_THAT(Lines(), ElementsAre("5 [System_Check_S_Mode] Load Dll Error, error = 122"));
}

}  // namespace
}  // namespace vexa::test
