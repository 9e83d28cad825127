#include "client/doctor_facts.h"

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <memory>

#include "client/folder_rights.h"
#include "client/machine.h"
#include "client/session.h"
#include "client/text.h"
#include "client/wmi_classes.h"

namespace vexahealth {
namespace {

constexpr wchar_t kService[] = L"VexaSAIO";
constexpr wchar_t kDriverFile[] = L"VexaSAIO.sys";
#if defined(__aarch64__)
constexpr const char* kClientMachine = "ARM64";
#else
constexpr const char* kClientMachine = "x64";
#endif

struct LocalRelease {
  void operator()(void* memory) const { LocalFree(memory); }
};
struct ServiceRelease {
  void operator()(SC_HANDLE handle) const { CloseServiceHandle(handle); }
};
using ServiceOwner = std::unique_ptr<std::remove_pointer_t<SC_HANDLE>, ServiceRelease>;

template <typename Function>
Function* SystemFunction(const wchar_t* library, const char* name) {
  return reinterpret_cast<Function*>(GetProcAddress(GetModuleHandleW(library), name));
}

// The version that Windows has, not the one that it shows to programs without a manifest.
std::string SystemText() {
  RTL_OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof version;
  const auto ask = SystemFunction<LONG WINAPI(RTL_OSVERSIONINFOW*)>(L"ntdll.dll", "RtlGetVersion");
  if (ask == nullptr || ask(&version) != 0) return "Windows, version unknown";
  return Printf("Windows %lu.%lu.%lu", version.dwMajorVersion, version.dwMinorVersion, version.dwBuildNumber);
}

std::string NativeMachine() {
  USHORT process = 0;
  USHORT machine = 0;
  const auto ask = SystemFunction<BOOL WINAPI(HANDLE, USHORT*, USHORT*)>(L"kernel32.dll", "IsWow64Process2");
  if (ask == nullptr || !ask(GetCurrentProcess(), &process, &machine)) return {};
  if (machine == IMAGE_FILE_MACHINE_ARM64) return "ARM64";
  return machine == IMAGE_FILE_MACHINE_AMD64 ? "x64" : Printf("machine 0x%04x", machine);
}

std::string SidText(PSID sid) {
  wchar_t* text = nullptr;
  if (sid == nullptr || !ConvertSidToStringSidW(sid, &text)) return {};
  const std::unique_ptr<void, LocalRelease> owner(text);
  return WideToUtf8(text);
}

// Whether this process has administrator rights, and whose it is.
void AskToken(DoctorFacts& facts) {
  HANDLE token = nullptr;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) return;
  TOKEN_ELEVATION elevation{};
  DWORD size = 0;
  if (GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &size)) {
    facts.elevated = elevation.TokenIsElevated != 0;
  }
  alignas(TOKEN_USER) std::byte user[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
  if (GetTokenInformation(token, TokenUser, user, sizeof user, &size)) {
    facts.account = SidText(reinterpret_cast<const TOKEN_USER*>(user)->User.Sid);
  }
  CloseHandle(token);
}

std::string ServicePath(SC_HANDLE service) {
  DWORD needed = 0;
  QueryServiceConfigW(service, nullptr, 0, &needed);
  std::vector<std::byte> buffer(needed);
  auto* config = reinterpret_cast<QUERY_SERVICE_CONFIGW*>(buffer.data());
  if (buffer.empty() || !QueryServiceConfigW(service, config, needed, &needed)) return {};
  return config->lpBinaryPathName == nullptr ? std::string() : WideToUtf8(config->lpBinaryPathName);
}

ServiceFacts AskService() {
  using State = ServiceFacts::State;
  const ServiceOwner manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT));
  if (!manager) return {.state = State::kUnknown, .path = {}, .error = GetLastError()};
  const ServiceOwner service(OpenServiceW(manager.get(), kService, SERVICE_QUERY_STATUS | SERVICE_QUERY_CONFIG));
  if (!service) {
    const DWORD error = GetLastError();
    return {
        .state = error == ERROR_SERVICE_DOES_NOT_EXIST ? State::kMissing : State::kUnknown, .path = {}, .error = error};
  }
  SERVICE_STATUS status{};
  if (!QueryServiceStatus(service.get(), &status))
    return {.state = State::kUnknown, .path = {}, .error = GetLastError()};
  const State state = status.dwCurrentState == SERVICE_RUNNING   ? State::kRunning
                      : status.dwCurrentState == SERVICE_STOPPED ? State::kStopped
                                                                 : State::kOther;
  return {.state = state, .path = ServicePath(service.get()), .error = 0};
}

AccessEntry EntryOf(const ACE_HEADER& header) {
  // Both kinds have the same layout: header, mask, identifier.
  const auto& ace = reinterpret_cast<const ACCESS_ALLOWED_ACE&>(header);
  return {.allows = header.AceType == ACCESS_ALLOWED_ACE_TYPE,
          .inherit_only = (header.AceFlags & INHERIT_ONLY_ACE) != 0,
          .mask = ace.Mask,
          .sid = SidText(const_cast<DWORD*>(&ace.SidStart))};
}

FolderFacts AskFolder(std::wstring path, std::string_view administrator) {
  FolderFacts facts{.path = WideToUtf8(path), .known = false, .writers = {}};
  PSID folder_owner = nullptr;
  PACL list = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (GetNamedSecurityInfoW(path.data(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION,
                            &folder_owner, nullptr, &list, nullptr, &descriptor) != ERROR_SUCCESS) {
    return facts;
  }
  const std::unique_ptr<void, LocalRelease> owner(descriptor);
  std::optional<std::vector<AccessEntry>> entries;
  if (list != nullptr) {
    // Whoever owns the folder may change its list, whatever that says.
    entries = std::vector<AccessEntry>{{.mask = WRITE_DAC, .sid = SidText(folder_owner)}};
    for (DWORD i = 0; i < list->AceCount; ++i) {
      void* ace = nullptr;
      if (!GetAce(list, i, &ace)) return facts;
      const auto& header = *static_cast<const ACE_HEADER*>(ace);
      if (header.AceType <= ACCESS_DENIED_ACE_TYPE) entries->push_back(EntryOf(header));
    }
  }
  facts.known = true;
  facts.writers = OrdinaryWriters(entries, administrator);
  return facts;
}

void AskLibrary(DoctorFacts& facts) {
  const std::expected<vexa::Library, std::string> library = LoadBesideClient(facts.library);
  if (!library) {
    facts.library_error = library.error();
    return;
  }
  const auto started = library->Start();
  facts.library.ready = started.has_value();
  facts.library.route = ReadRoute();
  facts.service = AskService();  // while the library holds it
  if (const auto version = library->GetDriverVersion()) facts.driver_version = *version;
  if (const auto version = library->BatteryHealthyTable_ReadVersion()) facts.table_version = *version;
}

}  // namespace

DoctorFacts GatherDoctorFacts() {
  constexpr std::string_view kClasses[] = {"ATD_STS", "VexaObxWmi_WMNB"};
  DoctorFacts facts;
  facts.time = NowUtc();
  facts.system = SystemText();
  facts.native_machine = NativeMachine();
  facts.client_machine = kClientMachine;
  AskToken(facts);
  AskLibrary(facts);
  if (!facts.library.loaded) facts.service = AskService();
  const std::string administrator = facts.elevated == true ? facts.account : std::string();
  if (const std::optional<std::wstring> folder = OwnFolder()) {
    const std::wstring driver = *folder + kDriverFile;
    facts.driver_file = WideToUtf8(driver);
    facts.driver_file_exists = GetFileAttributesW(driver.c_str()) != INVALID_FILE_ATTRIBUTES;
    facts.folders.push_back(AskFolder(folder->substr(0, folder->size() - 1), administrator));
  }
  if (const std::string other = OtherDriverFolder(facts); !other.empty()) {
    facts.folders.push_back(AskFolder(Utf8ToWide(other), administrator));
  }
  facts.classes = LookForWmiClasses(kClasses);
  return facts;
}

}  // namespace vexahealth
