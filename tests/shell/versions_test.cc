// The companion app's version and the system-control driver's: each call of the system, its failure, and the buffer.
#include <windows.h>

#include <cfgmgr32.h>

#include <cwchar>
#include <functional>

#include "tests/support/registry_script.h"
#include "tests/support/shell_test.h"
#include "vexa/system.h"

namespace vexa::test {
namespace {

// What an export leaves in a buffer of its capacity: "#" where it writes nothing. Nothing behind it is touched.
std::string Filled(void (*read)(wchar_t*)) {
  wchar_t text[VEXA_VERSION_CAPACITY + 1];
  std::wmemset(text, L'#', std::size(text));
  read(text);
  EXPECT_EQ(text[VEXA_VERSION_CAPACITY], L'#');
  if (text[0] != L'#') return Narrow(text);
  EXPECT_THAT(text, Each(L'#'));
  return "#";
}

// ---- Companion app ----

class CompanionVersion : public ShellTest {
 protected:
  CompanionVersion() {
    self_ = this;
    // The library looks the function up once: it must find this one.
    const ImportPatch look_up("GetProcAddress", LookUp);
    look_up_ = &look_up;
    Version();
    script_.Take();
    look_up_ = nullptr;
  }

  static std::string Version() { return Filled(GetUWPVersion); }
  std::string Of(const std::vector<std::wstring>& packages) {
    packages_ = packages;
    return Version();
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
  EXPECT_EQ(Of({L"Vexa_3.0.12.0_x64__v3x4p8k2m9q7t", L"Vexa_9.9.9.9_x64__v3x4p8k2m9q7t"}), "3.0.12.0");
  EXPECT_THAT(script_.Take(), ElementsAre("Packages 0 0", "Packages 2 65"));
  GetUWPVersion(nullptr);
  EXPECT_THAT(script_.Take(), IsEmpty());
  EXPECT_EQ(Of({L"Vexa_" + std::wstring(63, L'1') + L"_x64"}), std::string(63, '1'));
}

TEST_F(CompanionVersion, LeavesTheBufferWhenAnythingFails) {
  EXPECT_EQ(Of({}), "#");
  EXPECT_THAT(script_.Take(), ElementsAre("Packages 0 0"));
  for (const wchar_t* package :
       {L"Vexa-3.0.12.0-x64", L"Vexa_1234567890123456789012345678901234567890123456789012345678901234_x"}) {
    EXPECT_EQ(Of({package}), "#");
    EXPECT_EQ(script_.Take().size(), 2u);
  }
  packages_ = {L"Vexa_3.0.12.0_x64__v3x4p8k2m9q7t"};
  for (const auto& [failing, error] : {std::pair{0, DWORD{ERROR_NOT_ENOUGH_MEMORY}},
                                       {1, DWORD{ERROR_NOT_ENOUGH_MEMORY}},
                                       {1, DWORD{ERROR_INSUFFICIENT_BUFFER}}}) {
    script_.FailOnly(failing, error);
    EXPECT_EQ(Version(), "#");
    EXPECT_EQ(script_.Take().size(), static_cast<size_t>(failing) + 1);
  }
  // A package that goes between the two calls.
  packages_.clear();
  script_.FailOnly(0, ERROR_INSUFFICIENT_BUFFER);
  EXPECT_EQ(Version(), "#");
  EXPECT_THAT(script_.Take(), ElementsAre("Packages 0 0", "Packages 0 0"));
}

// ---- System-control driver ----

constexpr wchar_t kClass[] = L"SYSTEM\\ControlSet001\\Control\\Class\\{4d36e97d-e325-11ce-bfc1-08002be10318}";
constexpr char kKey[] = "SYSTEM\\ControlSet001\\Control\\Class\\{4d36e97d-e325-11ce-bfc1-08002be10318}\\0042";
constexpr wchar_t kDriver[] = L"{4d36e97d-e325-11ce-bfc1-08002be10318}\\0042";
constexpr wchar_t kDescription[] = L"Vexa System Control Interface V2";

struct FakeDevice {
  std::wstring id, description, driver;
  ULONG type = REG_SZ;
};

class DriverVersion : public ShellTest {
 protected:
  DriverVersion() {
    self_ = this;
    Store(REG_SZ, L"3.1.22.0");
  }
  ~DriverVersion() override { RegDeleteTreeW(HKEY_LOCAL_MACHINE, kClass); }

  static std::string Version() { return Filled(GetInfVersion); }
  std::string Of(const std::vector<FakeDevice>& devices) {
    devices_ = devices;
    return Version();
  }
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
  std::vector<FakeDevice> devices_ = {{L"ACPI\\VEXA9001\\1", L"Something else", L"{other}\\0001"},
                                      {L"ACPI\\VEXA2018\\0", kDescription, kDriver},
                                      {L"ACPI\\VEXA2018\\1", kDescription, L"{later}\\0002"}};
  ImportPatch size_{"CM_Get_Device_ID_List_SizeW", ListSize};
  ImportPatch list_{"CM_Get_Device_ID_ListW", ListIds};
  ImportPatch locate_{"CM_Locate_DevNodeW", Locate};
  ImportPatch property_{"CM_Get_DevNode_Registry_PropertyW", Property};
};

// 0x100: present devices; properties 1 and 10: description, driver key.
const Strings kCalls = {
    "size 100",     "list 49 100",  "locate ACPI\\VEXA9001\\1 0", "property 1 1", "locate ACPI\\VEXA2018\\0 0",
    "property 2 1", "property 2 10"};

TEST_F(DriverVersion, IsThatOfTheFirstDeviceOfTheDescription) {
  EXPECT_EQ(Version(), "3.1.22.0");
  EXPECT_EQ(script_.Take(), kCalls);
  EXPECT_THAT(Lines(), ElementsAre("5 strValueOfDriverVersion = 3.1.22.0"));
  GetInfVersion(nullptr);
  EXPECT_THAT(script_.Take(), IsEmpty());
}

// A device that has gone, or that has no such text, is none, and the next one may be it; every other failure leaves the
// buffer.
TEST_F(DriverVersion, EachCallFailing) {
  for (const int failing : {0, 1, 2, 3, 6}) {
    SCOPED_TRACE(failing);
    const bool passed_over = failing == 2 || failing == 3;
    script_.FailOnly(failing, 0);
    EXPECT_EQ(Version(), passed_over ? "3.1.22.0" : "#");
    const Strings calls = script_.Take();
    if (!passed_over) EXPECT_EQ(calls, FirstOf(kCalls, static_cast<size_t>(failing) + 1));
    EXPECT_EQ(Lines().size(), passed_over ? 1u : 0u);
  }
  script_.FailOnly(-1, 0);
  devices_[0].description = std::wstring(400, L'x');
  EXPECT_EQ(Version(), "3.1.22.0");
  Lines();
  for (const wchar_t* other : {L"Vexa System Control Interface V", L"Vexa System Control Interface V2 ",
                               L"vexa system control interface V2"}) {
    EXPECT_EQ(Of({{L"ACPI\\VEXA2018\\0", other, kDriver}}), "#");
  }
  EXPECT_EQ(Of({{L"ACPI\\VEXA2018\\0", kDescription, kDriver, REG_BINARY}}), "#");
  EXPECT_EQ(Of({}), "#");
  EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(DriverVersion, AKeyThatCanNotBeOpenedIsLogged) {
  {
    RegistryScript registry;
    registry.script.Fail("read", 0);
    EXPECT_EQ(Version(), "#");
    EXPECT_THAT(registry.script.Take(), ElementsAre("read HKLM " + std::string(kKey) + " 20019"));
  }
  devices_[1].driver = L"{100%s}\\0001";
  EXPECT_EQ(Version(), "#");
  EXPECT_THAT(
      Lines(),
      ElementsAre("1 ERROR: Failed to open registry key [" + std::string(kKey) + "]. Error code=0x00000005",
                  "1 ERROR: Failed to open registry key [SYSTEM\\ControlSet001\\Control\\Class\\{100%s}\\0001]. "
                  "Error code=0x00000002"));
}

TEST_F(DriverVersion, LeavesTheBufferForAValueThatIsNoVersion) {
  Store(REG_EXPAND_SZ, L"3.1.22.0");
  EXPECT_EQ(Version(), "#");
  EXPECT_THAT(Lines(), IsEmpty());
  Store(REG_SZ, std::wstring(64, L'7'));
  EXPECT_EQ(Version(), "#");
  EXPECT_THAT(Lines(), ElementsAre("5 strValueOfDriverVersion = " + std::string(64, '7')));
  Store(REG_SZ, std::wstring(63, L'7'));
  EXPECT_EQ(Version(), std::string(63, '7'));
}

}  // namespace
}  // namespace vexa::test
