// The companion app's version and the system-control driver's: each call of the system, its failure, and the buffer.
#include <windows.h>

#include <cfgmgr32.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <map>
#include <string>
#include <vector>

#include "tests/support/call_script.h"
#include "tests/support/import_patch.h"
#include "tests/support/registry_script.h"
#include "tests/support/trace_recorder.h"
#include "vexa/system.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A caller's buffer: what lies behind its capacity must stay.
class Buffer {
 public:
  Buffer() { std::wmemset(text_, L'#', std::size(text_)); }
  ~Buffer() { EXPECT_EQ(text_[VEXA_VERSION_CAPACITY], L'#'); }

  wchar_t* data() { return text_; }
  bool IsUntouched() const {
    return std::all_of(text_, text_ + std::size(text_), [](wchar_t character) { return character == L'#'; });
  }
  std::wstring Text() const { return text_; }

 private:
  wchar_t text_[VEXA_VERSION_CAPACITY + 1];
};

// ---- Companion app ----

class CompanionVersion : public testing::Test {
 protected:
  CompanionVersion() {
    self_ = this;
    // The library looks the function up once: it must find this one.
    const ImportPatch look_up("GetProcAddress", LookUp);
    look_up_ = &look_up;
    Buffer buffer;
    GetUWPVersion(buffer.data());
    script_.Take();
    look_up_ = nullptr;
  }

  static FARPROC WINAPI LookUp(HMODULE module, LPCSTR name) {
    const bool is_text = reinterpret_cast<uintptr_t>(name) >= 0x10000;
    if (is_text && std::string_view("GetPackagesByPackageFamily") == name) {
      return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(Packages));
    }
    return look_up_->Original<decltype(LookUp)>()(module, name);
  }
  static LONG WINAPI Packages(PCWSTR family, UINT32* count, PWSTR* names, UINT32* length, PWSTR buffer) {
    CompanionVersion& test = *self_;
    EXPECT_STREQ(family, L"VexaSystems.VexaCompanion_v3x4p8k2m9q7t");
    const UINT32 held_names = *count, held_length = *length;
    *count = static_cast<UINT32>(test.packages_.size());
    *length = 0;
    for (const std::wstring& package : test.packages_) *length += static_cast<UINT32>(package.size() + 1);
    const std::string text = std::to_string(held_names) + " " + std::to_string(held_length);
    if (test.script_.Fails("Packages", text)) return static_cast<LONG>(GetLastError());
    if (test.packages_.empty()) return ERROR_SUCCESS;
    if (held_names < *count || held_length < *length) return ERROR_INSUFFICIENT_BUFFER;
    for (size_t i = 0; i < test.packages_.size(); ++i) {
      names[i] = buffer;
      std::wmemcpy(buffer, test.packages_[i].c_str(), test.packages_[i].size() + 1);
      buffer += test.packages_[i].size() + 1;
    }
    return ERROR_SUCCESS;
  }

  static inline CompanionVersion* self_ = nullptr;
  static inline const ImportPatch* look_up_ = nullptr;
  CallScript script_;
  std::vector<std::wstring> packages_;
};

TEST_F(CompanionVersion, IsTheSecondPieceOfTheFirstPackage) {
  packages_ = {L"Vexa_3.0.12.0_x64__v3x4p8k2m9q7t", L"Vexa_9.9.9.9_x64__v3x4p8k2m9q7t"};
  Buffer buffer;
  GetUWPVersion(buffer.data());
  EXPECT_EQ(buffer.Text(), L"3.0.12.0");
  EXPECT_THAT(script_.Take(), ElementsAre("Packages 0 0", "Packages 2 65"));
  GetUWPVersion(nullptr);
  EXPECT_THAT(script_.Take(), IsEmpty());
}

TEST_F(CompanionVersion, LeavesTheBufferWhenAnythingFails) {
  Buffer buffer;
  GetUWPVersion(buffer.data());  // no package
  EXPECT_THAT(script_.Take(), ElementsAre("Packages 0 0"));
  packages_ = {L"Vexa_3.0.12.0_x64__v3x4p8k2m9q7t"};
  for (int failing = 0; failing < 2; ++failing) {
    for (const DWORD error : {ERROR_NOT_ENOUGH_MEMORY, ERROR_INSUFFICIENT_BUFFER}) {
      if (failing == 0 && error == ERROR_INSUFFICIENT_BUFFER) continue;  // that is what it is asked for
      script_.FailOnly(failing, error);
      GetUWPVersion(buffer.data());
      EXPECT_EQ(script_.Take().size(), static_cast<size_t>(failing) + 1);
    }
  }
  script_.FailOnly(-1, 0);
  packages_ = {L"Vexa-3.0.12.0-x64"};
  GetUWPVersion(buffer.data());
  packages_ = {L"Vexa_" + std::wstring(64, L'1') + L"_x64"};
  GetUWPVersion(buffer.data());
  EXPECT_TRUE(buffer.IsUntouched());
  packages_ = {L"Vexa_" + std::wstring(63, L'1') + L"_x64"};
  GetUWPVersion(buffer.data());
  EXPECT_EQ(buffer.Text(), std::wstring(63, L'1'));
}

TEST_F(CompanionVersion, APackageThatGoesBetweenTheTwoCalls) {
  Buffer buffer;
  script_.FailOnly(0, ERROR_INSUFFICIENT_BUFFER);
  GetUWPVersion(buffer.data());
  EXPECT_THAT(script_.Take(), ElementsAre("Packages 0 0", "Packages 0 0"));
  EXPECT_TRUE(buffer.IsUntouched());
}

// ---- System-control driver ----

constexpr wchar_t kClass[] = L"SYSTEM\\ControlSet001\\Control\\Class\\{4d36e97d-e325-11ce-bfc1-08002be10318}";
constexpr wchar_t kDriver[] = L"{4d36e97d-e325-11ce-bfc1-08002be10318}\\0042";
constexpr wchar_t kDescription[] = L"Vexa System Control Interface V2";

struct FakeDevice {
  std::wstring id, description, driver;
  ULONG type = REG_SZ;
};

class DriverVersion : public testing::Test {
 protected:
  DriverVersion() {
    self_ = this;
    devices_ = {{L"ACPI\\VEXA9001\\1", L"Something else", L"{other}\\0001"},
                {L"ACPI\\VEXA2018\\0", kDescription, kDriver},
                {L"ACPI\\VEXA2018\\1", kDescription, L"{later}\\0002"}};
    Store(REG_SZ, L"3.1.22.0");
    TraceRecorder::Get().TakeEvents();
  }
  ~DriverVersion() override { RegDeleteTreeW(HKEY_LOCAL_MACHINE, kClass); }

  static void Store(DWORD type, const std::wstring& text) {
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, (std::wstring(kClass) + L"\\0042").c_str(), L"DriverVersion", type,
                    text.c_str(), static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }

  std::wstring List() const {
    std::wstring list;
    for (const FakeDevice& device : devices_) list += device.id + L'\0';
    return list + L'\0';
  }
  static CONFIGRET WINAPI ListSize(PULONG size, PCWSTR filter, ULONG flags) {
    EXPECT_EQ(filter, nullptr);
    if (self_->script_.Fails("size", Hex(flags))) return CR_FAILURE;
    *size = static_cast<ULONG>(self_->List().size());
    return CR_SUCCESS;
  }
  static CONFIGRET WINAPI ListIds(PCWSTR filter, PZZWSTR ids, ULONG size, ULONG flags) {
    EXPECT_EQ(filter, nullptr);
    if (self_->script_.Fails("list", std::to_string(size) + " " + Hex(flags))) return CR_BUFFER_SMALL;
    const std::wstring list = self_->List().substr(0, size);
    std::wmemcpy(ids, list.data(), list.size());
    return CR_SUCCESS;
  }
  static CONFIGRET WINAPI Locate(PDEVINST device, DEVINSTID_W id, ULONG flags) {
    if (self_->script_.Fails("locate", Narrow(id) + " " + Hex(flags))) return CR_NO_SUCH_DEVNODE;
    for (size_t i = 0; i < self_->devices_.size(); ++i) {
      if (self_->devices_[i].id == id) *device = static_cast<DEVINST>(i + 1);
    }
    return CR_SUCCESS;
  }
  static CONFIGRET WINAPI Property(DEVINST node, ULONG property, PULONG type, PVOID text, PULONG size, ULONG) {
    const FakeDevice& device = self_->devices_.at(node - 1);
    if (self_->script_.Fails("property", std::to_string(node) + " " + std::to_string(property))) {
      return CR_NO_SUCH_VALUE;
    }
    const std::wstring& value = property == CM_DRP_DRIVER ? device.driver : device.description;
    const auto needed = static_cast<ULONG>((value.size() + 1) * sizeof(wchar_t));
    *type = device.type;
    if (needed > *size) return CR_BUFFER_SMALL;
    std::wmemcpy(static_cast<wchar_t*>(text), value.c_str(), value.size() + 1);
    *size = needed;
    return CR_SUCCESS;
  }

  static inline DriverVersion* self_ = nullptr;
  CallScript script_;
  std::vector<FakeDevice> devices_;
  ImportPatch size_{"CM_Get_Device_ID_List_SizeW", ListSize};
  ImportPatch list_{"CM_Get_Device_ID_ListW", ListIds};
  ImportPatch locate_{"CM_Locate_DevNodeW", Locate};
  ImportPatch property_{"CM_Get_DevNode_Registry_PropertyW", Property};
};

// 0x100: present devices; properties 1 and 10: description, driver key.
const std::vector<std::string> kCalls = {
    "size 100",     "list 49 100",  "locate ACPI\\VEXA9001\\1 0", "property 1 1", "locate ACPI\\VEXA2018\\0 0",
    "property 2 1", "property 2 10"};

TEST_F(DriverVersion, IsThatOfTheFirstDeviceOfTheDescription) {
  Buffer buffer;
  GetInfVersion(buffer.data());
  EXPECT_EQ(buffer.Text(), L"3.1.22.0");
  EXPECT_THAT(script_.Take(), testing::ElementsAreArray(kCalls));
  EXPECT_THAT(TraceRecorder::Get().TakeLines(), ElementsAre("5 strValueOfDriverVersion = 3.1.22.0"));
  GetInfVersion(nullptr);
  EXPECT_THAT(script_.Take(), IsEmpty());
}

TEST_F(DriverVersion, LeavesTheBufferWhenACallFails) {
  Buffer buffer;
  for (const int failing : {0, 1, 6}) {
    script_.FailOnly(failing, 0);
    GetInfVersion(buffer.data());
    EXPECT_THAT(script_.Take(), testing::ElementsAreArray(kCalls.begin(), kCalls.begin() + failing + 1));
  }
  script_.FailOnly(-1, 0);
  devices_.resize(1);
  GetInfVersion(buffer.data());
  devices_.clear();
  GetInfVersion(buffer.data());
  EXPECT_TRUE(buffer.IsUntouched());
  EXPECT_THAT(TraceRecorder::Get().TakeLines(), IsEmpty());
}

// A device that has gone, or that has no such text, is none; the next one may be it.
TEST_F(DriverVersion, PassesOverDevicesThatCanNotBeRead) {
  for (const int failing : {2, 3}) {
    Buffer buffer;
    script_.FailOnly(failing, 0);
    GetInfVersion(buffer.data());
    EXPECT_EQ(buffer.Text(), L"3.1.22.0");
    script_.Take();
  }
  script_.FailOnly(-1, 0);
  devices_[0].description = std::wstring(400, L'x');
  Buffer buffer;
  GetInfVersion(buffer.data());
  EXPECT_EQ(buffer.Text(), L"3.1.22.0");
  for (const wchar_t* other : {L"Vexa System Control Interface V", L"Vexa System Control Interface V2 ",
                               L"vexa system control interface V2"}) {
    devices_ = {{L"ACPI\\VEXA2018\\0", other, kDriver}};
    Buffer left;
    GetInfVersion(left.data());
    EXPECT_TRUE(left.IsUntouched());
  }
  devices_ = {{L"ACPI\\VEXA2018\\0", kDescription, kDriver, REG_BINARY}};
  Buffer left;
  GetInfVersion(left.data());
  EXPECT_TRUE(left.IsUntouched());
}

TEST_F(DriverVersion, AKeyThatCanNotBeOpenedIsLogged) {
  Buffer buffer;
  devices_[1].driver = L"{100%s}\\0001";
  GetInfVersion(buffer.data());
  EXPECT_THAT(
      TraceRecorder::Get().TakeLines(),
      ElementsAre("1 ERROR: Failed to open registry key [SYSTEM\\ControlSet001\\Control\\Class\\{100%s}\\0001]. "
                  "Error code=0x00000002"));
  devices_[1].driver = kDriver;
  {
    RegistryScript registry;
    registry.script.Fail("read", 0);
    GetInfVersion(buffer.data());
    EXPECT_THAT(registry.script.Take(), ElementsAre("read HKLM SYSTEM\\ControlSet001\\Control\\Class\\"
                                                    "{4d36e97d-e325-11ce-bfc1-08002be10318}\\0042 20019"));
  }
  EXPECT_THAT(TraceRecorder::Get().TakeLines(),
              ElementsAre("1 ERROR: Failed to open registry key [SYSTEM\\ControlSet001\\Control\\Class\\"
                          "{4d36e97d-e325-11ce-bfc1-08002be10318}\\0042]. Error code=0x00000005"));
  EXPECT_TRUE(buffer.IsUntouched());
}

TEST_F(DriverVersion, LeavesTheBufferForAValueThatIsNoVersion) {
  Buffer buffer;
  Store(REG_EXPAND_SZ, L"3.1.22.0");
  GetInfVersion(buffer.data());
  EXPECT_THAT(TraceRecorder::Get().TakeLines(), IsEmpty());
  Store(REG_SZ, std::wstring(64, L'7'));
  GetInfVersion(buffer.data());
  EXPECT_THAT(TraceRecorder::Get().TakeLines(), ElementsAre("5 strValueOfDriverVersion = " + std::string(64, '7')));
  EXPECT_TRUE(buffer.IsUntouched());
  Store(REG_SZ, std::wstring(63, L'7'));
  GetInfVersion(buffer.data());
  EXPECT_EQ(buffer.Text(), std::wstring(63, L'7'));
}

}  // namespace
}  // namespace vexa::test
