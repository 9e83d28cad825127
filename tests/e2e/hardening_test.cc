// What protects the shipped library and client from planted libraries and overrun buffers. Run where the client and the
// library lie in C:\Vexa and the simulated radios are installed; vexa-decoy.dll lies beside this program.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tests/e2e/radios.h"
#include "tests/support/arch_value.h"
#include "tests/support/import_patch.h"
#include "vexa/vexa.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

namespace fs = std::filesystem;

// ---- A program that is run to its end ----

constexpr DWORD kChildLimitMs = 120'000;

// Its exit code. Its output goes nowhere; its environment is this program's.
DWORD RunChild(const std::wstring& program, const std::wstring& arguments, const wchar_t* folder = nullptr) {
  SECURITY_ATTRIBUTES inherited{.nLength = sizeof inherited, .bInheritHandle = TRUE};
  const HANDLE nowhere = CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                     &inherited, OPEN_EXISTING, 0, nullptr);
  std::wstring line = L"\"" + program + L"\" " + arguments;
  STARTUPINFOW startup{.cb = sizeof startup, .dwFlags = STARTF_USESTDHANDLES};
  startup.hStdInput = startup.hStdOutput = startup.hStdError = nowhere;
  PROCESS_INFORMATION child{};
  const BOOL started = CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                                      folder, &startup, &child);
  CloseHandle(nowhere);
  if (!started) {
    ADD_FAILURE() << "the program can't be started: " << GetLastError();
    return MAXDWORD;
  }
  EXPECT_EQ(WaitForSingleObject(child.hProcess, kChildLimitMs), WAIT_OBJECT_0);
  DWORD code = MAXDWORD;
  GetExitCodeProcess(child.hProcess, &code);
  CloseHandle(child.hThread);
  CloseHandle(child.hProcess);
  return code;
}

// This program's own file.
std::wstring OwnFile() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

constexpr uint64_t kDefaultCookie = 0x00002B992DDFA232;

template <typename Value>
Value& At(HMODULE module, uint64_t offset) {
  return *reinterpret_cast<Value*>(reinterpret_cast<char*>(module) + offset);
}
const IMAGE_OPTIONAL_HEADER64& Header(HMODULE module) {
  return At<IMAGE_NT_HEADERS64>(module, static_cast<uint64_t>(At<IMAGE_DOS_HEADER>(module, 0).e_lfanew)).OptionalHeader;
}

// The canary of the stack protector, as the loader has left it.
uint64_t Canary(HMODULE module) {
  const auto& directory = Header(module).DataDirectory[IMAGE_DIRECTORY_ENTRY_LOAD_CONFIG];
  return *reinterpret_cast<uint64_t*>(
      At<IMAGE_LOAD_CONFIG_DIRECTORY64>(module, directory.VirtualAddress).SecurityCookie);
}

std::set<std::wstring> ImportedLibraries(HMODULE module) {
  std::set<std::wstring> names;
  const DWORD first = Header(module).DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  for (auto* entry = &At<IMAGE_IMPORT_DESCRIPTOR>(module, first); entry->Name != 0; ++entry) {
    const std::string_view name = &At<char>(module, entry->Name);
    names.emplace(name.begin(), name.end());
  }
  return names;
}

// ---- What this program does when it is its own child ----

LSTATUS WINAPI Overrun(HKEY, LPCWSTR, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD size) {
  *type = REG_SZ;
  std::fill_n(data, *size + 64, BYTE{'A'});
  return ERROR_SUCCESS;
}

// Each optional library is asked for.
void UseOptionalLibraries(HMODULE library) {
  for (const char* name :
       {"RF_WiFiIsConnected", "RF_BTIsUsed", "System_Check_S_Mode", "BatteryHealthyTable_ReadVersion"}) {
    reinterpret_cast<uint32_t (*)()>(GetProcAddress(library, name))();
  }
  reinterpret_cast<VexaText (*)()>(GetProcAddress(library, "RF_Net_Connected_Type"))();
}

// "canary" answers the low half of the canary, "smash" overruns a buffer of the library, "use FILE" calls the library
// of that path, "load NAME" loads a library of any place.
int PlayChild(const std::string& role, const char* argument) {
  if (role == "load") return LoadLibraryA(argument) == nullptr ? 1 : 0;
  const HMODULE library = role == "use" ? LoadLibraryA(argument) : LoadLibraryW(kLibraryFile);
  if (library == nullptr) return 1;
  if (role == "canary") return static_cast<int>(Canary(library));
  if (role == "use") {
    UseOptionalLibraries(library);
    return 0;
  }
  const ImportPatch patch("RegQueryValueExW", Overrun, library);
  reinterpret_cast<uint32_t (*)()>(GetProcAddress(library, "BatteryHealthyTable_ReadVersion"))();
  return 0;
}

// ---- The stack protector ----

TEST(StackProtector, EachProcessHasACanaryOfItsOwn) {
  constexpr size_t kProcesses = 6;
  std::set<DWORD> canaries;
  for (size_t i = 0; i < kProcesses; ++i) canaries.insert(RunChild(OwnFile(), L"--role=canary"));
  EXPECT_EQ(canaries.size(), kProcesses);
  EXPECT_FALSE(canaries.contains(static_cast<DWORD>(kDefaultCookie)));
  EXPECT_FALSE(canaries.contains(1));
}

TEST(StackProtector, AnOverrunBufferEndsTheProcess) {
  constexpr DWORD kStackBufferOverrun = 0xC0000409;
  const ArchValue arch(L"x64");
  EXPECT_EQ(RunChild(OwnFile(), L"--role=smash"), kStackBufferOverrun);
}

// ---- Planted libraries ----

// Libraries that a system may lack, and that a vendor's package brings.
constexpr const wchar_t* kOptional[] = {L"wlanapi.dll", L"bluetoothapis.dll", L"wldp.dll"};
constexpr wchar_t kVendors[] = L"wlanCliDLL.dll";

// The system's own is out of the way as long as this lives.
class WithoutSystemFile {
 public:
  explicit WithoutSystemFile(const std::wstring& name) : file_(L"C:\\windows\\system32\\" + name) {
    std::error_code none;
    fs::rename(file_, Away(), none);
  }
  ~WithoutSystemFile() {
    std::error_code none;
    fs::rename(Away(), file_, none);
  }
  WithoutSystemFile(const WithoutSystemFile&) = delete;
  WithoutSystemFile& operator=(const WithoutSystemFile&) = delete;

 private:
  fs::path Away() const { return file_.wstring() + L".away"; }
  fs::path file_;
};

// Decoys of everything that the library or the client loads, in the working folder, on the path and in a folder below
// the host program's.
class Planting : public Radios {
 protected:
  Planting() {
    RemoveAll();
    std::set<std::wstring> names{L"VexaWinIO64.dll", kVendors};
    names.insert(std::begin(kOptional), std::end(kOptional));
    std::wstring overrides;
    for (const wchar_t* file : {L"C:\\Vexa\\VexaWinIO64.dll", L"C:\\Vexa\\vexahealth.exe"}) {
      const HMODULE image = LoadLibraryExW(file, nullptr, DONT_RESOLVE_DLL_REFERENCES);
      if (image == nullptr) {
        ADD_FAILURE() << "an image is missing: " << GetLastError();
        continue;
      }
      names.merge(ImportedLibraries(image));
      FreeLibrary(image);
    }
    const fs::path decoy = fs::path(OwnFile()).parent_path() / L"vexa-decoy.dll";
    for (const fs::path& folder : {Work(), Path(), Host() / L"sub"}) {
      fs::create_directories(folder);
      for (const std::wstring& name : names) fs::copy_file(decoy, folder / name);
    }
    fs::copy_file(OwnFile(), Host() / L"host.exe");
    fs::copy_file(L"C:\\Vexa\\vexahealth.exe", Host() / L"vexahealth.exe");

    for (const std::wstring& name : names) overrides += name.substr(0, name.rfind(L'.')) + L",";
    // Wine must take files as Windows does: any that it finds first, not its own by preference.
    Set(L"WINEDLLOVERRIDES", overrides + L"=n,b;wlanapi,bluetoothapis,wldp=n");
    Set(L"PATH", Path().wstring() + L";C:\\windows\\system32;C:\\windows");
    Set(L"VEXA_DECOY_LOG", Log().wstring());
    EXPECT_GE(names.size(), 12u);
  }
  ~Planting() override {
    for (const auto& [name, value] : before_)
      SetEnvironmentVariableW(name.c_str(), value.empty() ? nullptr : value.c_str());
    RemoveAll();
  }

  static fs::path Work() { return fs::path(kRoot) / L"work"; }
  static fs::path Path() { return fs::path(kRoot) / L"path"; }
  static fs::path Host() { return fs::path(kRoot) / L"host"; }
  static fs::path Log() { return fs::path(kRoot) / L"loaded.txt"; }
  static fs::path HostProgram() { return Host() / L"host.exe"; }
  static void InstallLibrary() { fs::copy_file(kLibraryFile, Host() / L"VexaWinIO64.dll"); }
  // In the working folder with the decoys.
  static DWORD UseLibrary() {
    return RunChild(HostProgram(), L"\"--role=use\" " + (Host() / L"VexaWinIO64.dll").wstring(), Work().c_str());
  }

  // The decoys that were loaded since the last call.
  static std::vector<std::string> Loaded() {
    std::vector<std::string> lines;
    {
      std::ifstream log(Log());
      for (std::string line; std::getline(log, line);) lines.push_back(line);
    }
    fs::remove(Log());
    return lines;
  }

 private:
  static constexpr wchar_t kRoot[] = L"C:\\vexa-planting";

  // The system may keep a program's file for a moment after its end.
  static void RemoveAll() {
    std::error_code error;
    for (int attempt = 0; attempt < 50; ++attempt) {
      fs::remove_all(kRoot, error);
      if (!error) return;
      Sleep(100);
    }
    ADD_FAILURE() << kRoot << " can't be removed: " << error.message();
  }

  void Set(const std::wstring& name, const std::wstring& value) {
    std::wstring before(32768, L'\0');
    before.resize(GetEnvironmentVariableW(name.c_str(), before.data(), static_cast<DWORD>(before.size())));
    before_.emplace_back(name, before);
    SetEnvironmentVariableW(name.c_str(), value.c_str());
  }

  std::vector<std::pair<std::wstring, std::wstring>> before_;
};

// Without it the other tests would show nothing.
TEST_F(Planting, AProgramThatLoadsByNameFindsTheDecoys) {
  const WithoutSystemFile wlan(L"wlanapi.dll"), bluetooth(L"bluetoothapis.dll"), lockdown(L"wldp.dll");
  for (const std::wstring name : kOptional) {
    EXPECT_EQ(RunChild(HostProgram(), L"--role=load " + name, Work().c_str()), 0u);
    EXPECT_THAT(Loaded(), ElementsAre(EndsWith("work\\" + std::string(name.begin(), name.end()))));
  }
  EXPECT_EQ(RunChild(HostProgram(), L"--role=load wldp.dll", Host().c_str()), 0u);
  EXPECT_THAT(Loaded(), ElementsAre(EndsWith("path\\wldp.dll")));
}

TEST_F(Planting, TheLibraryTakesNoneWhereTheSystemLacksItsOwn) {
  const WithoutSystemFile wlan(L"wlanapi.dll"), bluetooth(L"bluetoothapis.dll"), lockdown(L"wldp.dll");
  InstallLibrary();
  EXPECT_EQ(UseLibrary(), 0u);
  EXPECT_THAT(Loaded(), IsEmpty());
}

TEST_F(Planting, TheClientTakesNone) {
  const std::wstring client = (Host() / L"vexahealth.exe").wstring();
  // The library is missing where it belongs, so the client has nothing to show.
  EXPECT_NE(RunChild(client, L"inventory --json", Work().c_str()), 0u);
  EXPECT_THAT(Loaded(), IsEmpty());
  InstallLibrary();
  RunChild(client, L"inventory --json", Work().c_str());
  EXPECT_THAT(Loaded(), IsEmpty());
}

// The vendor's library is taken from beside the host program, and from nowhere else.
TEST_F(Planting, OnlyTheVendorsLibraryBesideTheHostIsTaken) {
  UseRadios(R"("network": [{"index": 9, "type": 71, "medium": 9}], "wlan": {"interfaces": [{
      "guid": "{5B7D2F1E-3C4A-4E6B-9D80-1A2B3C4D5E6F}", "name": "Wi-Fi", "state": "connected",
      "connection": {"ssid": "home", "bssid": "06:1B:7C:40:2A:91", "phy": 10}, "channel": 36, "networks": [
        {"ssid": "home", "bssid": "06:1B:7C:40:2A:91", "rssi_dbm": -52, "frequency_khz": 5180000}]}]})");
  InstallLibrary();
  fs::copy_file(L"C:\\Vexa\\iphlpapi.dll", Host() / L"iphlpapi.dll");
  EXPECT_EQ(UseLibrary(), 0u);
  EXPECT_THAT(Loaded(), IsEmpty());
  fs::copy_file(Work() / kVendors, Host() / kVendors);
  EXPECT_EQ(UseLibrary(), 0u);
  EXPECT_THAT(Loaded(), ElementsAre("C:\\vexa-planting\\host\\wlanCliDLL.dll"));
}

}  // namespace
}  // namespace vexa::test

int main(int argc, char** argv) {
  constexpr std::string_view kRole = "--role=";
  if (argc > 1 && std::string_view(argv[1]).starts_with(kRole)) {
    return vexa::test::PlayChild(argv[1] + kRole.size(), argc > 2 ? argv[2] : "");
  }
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
