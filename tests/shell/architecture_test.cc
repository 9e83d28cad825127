// The registry value that chooses the route: read on every call, detected and stored when it can't be used.
#include "frame/architecture.h"

#include "frame/handles.h"
#include "tests/support/arch_value.h"
#include "tests/support/detection.h"
#include "tests/support/fake_wmi.h"
#include "tests/support/own_process.h"
#include "tests/support/registry_script.h"
#include "tests/support/shell_test.h"

namespace vexa::test {
namespace {

constexpr char kDetects[] = "5 [VexaWinDll][IsArchitectureARM64] cannot get REG_ARCHITECTURE key";
// What the registry holds in the value, terminator included; empty when it is missing.
std::wstring Stored(DWORD* type = nullptr) {
  wchar_t text[300] = {};
  DWORD size = sizeof text;
  if (RegGetValueW(HKEY_LOCAL_MACHINE, kConfigKeyName, L"Arch", RRF_RT_ANY, type, text, &size) != ERROR_SUCCESS) {
    return {};
  }
  return {text, size / sizeof(wchar_t)};
}

const std::wstring kStoredX64(L"x64\0", 4);
const std::wstring kStoredArm64(L"ARM64\0", 6);

void StoreBytes(DWORD type, const void* bytes, size_t size) {
  RegistryKey key;
  RegCreateKeyExW(HKEY_LOCAL_MACHINE, kConfigKeyName, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.put(), nullptr);
  RegSetValueExW(key.get(), L"Arch", 0, type, static_cast<const BYTE*>(bytes), static_cast<DWORD>(size));
}

class Architecture : public ShellTest {
 protected:
  Architecture() {
    ArchValue::Remove();
    DetectAs(0x8664);
    g_detections = 0;
  }
  ~Architecture() override {
    g_detection = nullptr;
    ArchValue::Remove();
  }

  static void DetectAs(USHORT native) {
    g_detection = [native](USHORT* machine) {
      *machine = native;
      return true;
    };
  }
};

TEST_F(Architecture, MissingValueIsDetectedOnceAndStored) {
  for (const bool arm64 : {true, false}) {
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kConfigKeyName);
    DetectAs(arm64 ? 0xAA64 : 0x8664);
    g_detections = 0;
    EXPECT_EQ(IsArchitectureARM64(), arm64);
    EXPECT_THAT(Lines(), ElementsAre(kDetects));
    DWORD type = 0;
    EXPECT_EQ(Stored(&type), arm64 ? kStoredArm64 : kStoredX64);
    EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
    // From here on the registry answers, whatever the system would say.
    DetectAs(arm64 ? 0x8664 : 0xAA64);
    EXPECT_EQ(IsArchitectureARM64(), arm64);
    EXPECT_EQ(g_detections, 1);
    EXPECT_THAT(Lines(), IsEmpty());
  }
}

// A system that doesn't tell its machine is asked for its processor's architecture.
TEST_F(Architecture, FailingDetectionAsksTheInventory) {
  FakeWmi wmi;
  g_detection = [](USHORT* machine) {
    *machine = 0xAA64;
    return false;
  };
  const struct {
    WmiValue architecture;
    bool is_arm64;
  } processors[] = {
      {Number(VT_I4, 12), true}, {Number(VT_I4, 9), false}, {Number(VT_I4, 5), false}, {Number(VT_NULL, 0), false}};
  for (const auto& processor : processors) {
    ArchValue::Remove();
    g_detections = 0;
    wmi.rows[L"select * from Win32_Processor"] = {{{L"Architecture", processor.architecture}}};
    EXPECT_EQ(IsArchitectureARM64(), processor.is_arm64);
    EXPECT_EQ(g_detections, 1);
    EXPECT_EQ(Stored(), processor.is_arm64 ? kStoredArm64 : kStoredX64);
    const Strings calls = wmi.TakeCalls();
    EXPECT_EQ(CountOf(calls, "CoInitializeEx 0"), 1);
    EXPECT_EQ(CountOf(calls, "ExecQuery WQL select * from Win32_Processor 30"), 1);
    EXPECT_EQ(Lines()[0], kDetects);
  }
  ArchValue::Remove();
  wmi.script.Fail("ConnectServer", 0x80041003);
  EXPECT_FALSE(IsArchitectureARM64());
  EXPECT_EQ(Stored(), kStoredX64);
  // Nothing is asked when the system tells, or when the value is there.
  wmi.TakeCalls();
  EXPECT_FALSE(IsArchitectureARM64());
  ArchValue::Remove();
  DetectAs(0xAA64);
  EXPECT_TRUE(IsArchitectureARM64());
  EXPECT_THAT(wmi.TakeCalls(), IsEmpty());
}

TEST_F(Architecture, OnlyTheExactTextIsArm64) {
  const DWORD number = 1;
  const std::wstring long_text = L"ARM64" + std::wstring(200, L'A');
  const struct {
    DWORD type;
    const void* bytes;
    size_t size;
    bool is_arm64;  // where the system says x64
    bool replaced;
  } values[] = {
      {REG_SZ, L"ARM64", 12, true, false},
      {REG_SZ, L"arm64", 12, false, false},
      {REG_SZ, L"ARM64 ", 14, false, false},
      {REG_SZ, L" ARM64", 14, false, false},
      {REG_SZ, L"ARM6", 10, false, false},
      {REG_SZ, L"ARM64X", 14, false, false},
      {REG_SZ, L"", 2, false, false},
      // A text ends at its first zero, or without one.
      {REG_SZ, L"ARM64\0junk", 22, true, false},
      {REG_SZ, L"x64\0ARM64", 20, false, false},
      {REG_SZ, L"ARM64!", 10, true, false},
      {REG_SZ, L"ARM64!", 8, false, false},
      // Longer than what is read: it can't be "ARM64", and it is nobody's to replace.
      {REG_SZ, long_text.c_str(), 412, false, false},
      // The text of the read error counts as missing, and so does a value of another type.
      {REG_SZ, L"ERROR_READREG", 28, false, true},
      {REG_DWORD, &number, 4, false, true},
      {REG_EXPAND_SZ, L"ARM64", 12, false, true},
      {REG_BINARY, L"ARM64", 12, false, true},
      {REG_MULTI_SZ, L"ARM64\0", 14, false, true},
  };
  for (const auto& value : values) {
    SCOPED_TRACE(testing::Message() << "type " << value.type << ", " << value.size << " bytes");
    StoreBytes(value.type, value.bytes, value.size);
    g_detections = 0;
    EXPECT_EQ(IsArchitectureARM64(), value.is_arm64);
    EXPECT_EQ(g_detections, value.replaced ? 1 : 0);
    EXPECT_EQ(Lines(), value.replaced ? Strings{kDetects} : Strings{});
    DWORD type = 0;
    const std::wstring stored = Stored(&type);
    EXPECT_EQ(stored == kStoredX64, value.replaced);
    EXPECT_EQ(type, value.replaced ? DWORD{REG_SZ} : value.type);
  }
}

// Keys that can't be opened for reading, for writing, or made.
class ArchitectureKeys : public Architecture {
 protected:
  RegistryScript registry_;
  CallScript& script_ = registry_.script;
};

TEST_F(ArchitectureKeys, AnswerIsDetectedEvenIfItCanNotBeStored) {
  constexpr char kRead[] = "read HKLM SOFTWARE\\Vexa\\Config 20019";
  constexpr char kWrite[] = "open HKLM SOFTWARE\\Vexa\\Config 20006";
  constexpr char kCreateKey[] = "create HKLM SOFTWARE\\Vexa\\Config f003f";
  ArchValue::Set(L"x64");
  script_.Take();
  DetectAs(0xAA64);
  script_.Fail("read", 0);
  script_.Fail("open", 0);
  script_.Fail("create", 0);
  EXPECT_TRUE(IsArchitectureARM64());
  EXPECT_THAT(script_.Take(), ElementsAre(kRead, kWrite, kCreateKey));
  EXPECT_THAT(Lines(), ElementsAre(kDetects));
  EXPECT_EQ(Stored(), kStoredX64);
  // Nothing is remembered: the next call detects again.
  EXPECT_TRUE(IsArchitectureARM64());
  EXPECT_EQ(g_detections, 2);

  // The key that can't be opened for writing is made; the length counts the terminator.
  script_.Take();
  script_.Succeed("create");
  EXPECT_TRUE(IsArchitectureARM64());
  EXPECT_THAT(script_.Take(), ElementsAre(kRead, kWrite, kCreateKey, "set Arch 1 c"));
  EXPECT_EQ(Stored(), kStoredArm64);
}

TEST_F(ArchitectureKeys, ReadingOpensForReadingAlone) {
  ArchValue::Set(L"x64");
  script_.Take();
  EXPECT_FALSE(IsArchitectureARM64());
  EXPECT_THAT(script_.Take(), ElementsAre("read HKLM SOFTWARE\\Vexa\\Config 20019"));
}

// The look-up is done once per process, so this one runs in a process whose system has no function.
TEST_F(Architecture, SystemWithoutTheFunctionAsksTheInventory) {
  if (RunInOwnProcess(kWithoutDetection)) return;
  FakeWmi wmi;
  wmi.rows[L"select * from Win32_Processor"] = {{{L"Architecture", Number(VT_I4, 12)}}};
  EXPECT_TRUE(IsArchitectureARM64());
  EXPECT_EQ(g_detections, 0);
  EXPECT_EQ(Stored(), kStoredArm64);
}

}  // namespace
}  // namespace vexa::test
