#include "tests/e2e/notebook.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "tests/e2e/library.h"
#include "tests/support/arch_value.h"

namespace vexa::test {
namespace {

constexpr char kImages[] = "C:\\vexa-notebook\\";
constexpr char kCurrentImage[] = "C:\\vexa-notebook\\scenario.bin";
constexpr char kLog[] = "C:\\vexa-notebook\\driver.log";
constexpr wchar_t kServiceName[] = L"VexaSAIO";
constexpr wchar_t kHiddenDriverFile[] = L"C:\\Vexa\\VexaSAIO.hidden";

size_t g_log_taken = 0;

[[noreturn]] void GiveUp(const char* what) {
  std::fprintf(stderr, "%s: error %lu\n", what, GetLastError());
  std::abort();
}

std::string ReadWhole(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// The service with its manager; closes both.
class Service {
 public:
  explicit Service(DWORD access = SERVICE_ALL_ACCESS)
      : manager_(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS)),
        service_(OpenServiceW(manager_, kServiceName, access)) {
    if (manager_ == nullptr) GiveUp("the service manager");
  }
  ~Service() {
    if (service_ != nullptr) CloseServiceHandle(service_);
    CloseServiceHandle(manager_);
  }

  SC_HANDLE manager() const { return manager_; }
  SC_HANDLE service() const { return service_; }
  explicit operator bool() const { return service_ != nullptr; }

  DWORD State() const {
    SERVICE_STATUS status{};
    const bool known = service_ != nullptr && QueryServiceStatus(service_, &status);
    return known ? status.dwCurrentState : kNotRegistered;
  }

 private:
  SC_HANDLE manager_;
  SC_HANDLE service_;
};

}  // namespace

void UseBrokenImage(const std::string& name, size_t size) {
  const std::string image = ReadWhole(kImages + name + ".bin");
  if (image.empty()) GiveUp(name.c_str());
  // The driver tells images apart by time, size and checksum: a new file is never taken for the old one.
  DeleteFileA(kCurrentImage);
  std::ofstream stream(kCurrentImage, std::ios::binary);
  stream.write(image.data(), static_cast<std::streamsize>(std::min(size, image.size())));
  if (!stream.flush()) GiveUp(kCurrentImage);
}

void UseScenario(const std::string& name) { UseBrokenImage(name, std::string::npos); }

std::vector<std::string> AllScenarios() {
  std::vector<std::string> names;
  WIN32_FIND_DATAA entry;
  const HANDLE search = FindFirstFileA("C:\\vexa-notebook\\*.bin", &entry);
  if (search == INVALID_HANDLE_VALUE) GiveUp("the images");
  do {
    const std::string file = entry.cFileName;
    if (file != "scenario.bin") names.push_back(file.substr(0, file.size() - 4));
  } while (FindNextFileA(search, &entry));
  FindClose(search);
  std::sort(names.begin(), names.end());
  return names;
}

Lines TakeDriverLog() {
  const std::string text = ReadWhole(kLog);
  Lines lines;
  while (g_log_taken < text.size()) {
    const size_t end = text.find('\n', g_log_taken);
    lines.push_back(text.substr(g_log_taken, end - g_log_taken));
    g_log_taken = end == std::string::npos ? text.size() : end + 1;
  }
  return lines;
}

Lines TakeExchanges() {
  Lines exchanges;
  for (const std::string& line : TakeDriverLog()) {
    if (line.starts_with("ec 0x")) exchanges.push_back(line.substr(5, line.find(" -> ") - 5));
  }
  return exchanges;
}

void RegisterService(const std::wstring& path, const std::wstring& display_name) {
  const Service none;
  const SC_HANDLE service = CreateServiceW(none.manager(), kServiceName, display_name.c_str(), SERVICE_ALL_ACCESS,
                                           SERVICE_KERNEL_DRIVER, SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL,
                                           path.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr);
  if (service == nullptr) GiveUp("CreateServiceW");
  CloseServiceHandle(service);
}

bool StartRegisteredService() {
  const Service service;
  // Wine locks its service database while its own services start; a new prefix does so for some seconds.
  for (int poll = 0; !StartServiceW(service.service(), 0, nullptr); ++poll) {
    if (GetLastError() != ERROR_SERVICE_DATABASE_LOCKED || poll == 10000) return false;
    Sleep(1);
  }
  return service.State() == SERVICE_RUNNING;
}

void RemoveService() {
  const Service service;
  if (!service) return;
  SERVICE_STATUS status{};
  if (service.State() == SERVICE_RUNNING) ControlService(service.service(), SERVICE_CONTROL_STOP, &status);
  for (int poll = 0; service.State() != SERVICE_STOPPED; ++poll) {
    if (poll == 10000) GiveUp("the driver does not stop");
    Sleep(1);
  }
  if (!DeleteService(service.service())) GiveUp("DeleteService");
}

DWORD ServiceState() { return Service().State(); }

ServiceConfiguration ServiceSettings() {
  const Service service;
  alignas(QUERY_SERVICE_CONFIGW) BYTE bytes[8192];
  auto* configuration = reinterpret_cast<QUERY_SERVICE_CONFIGW*>(bytes);
  DWORD size = 0;
  if (!service || !QueryServiceConfigW(service.service(), configuration, sizeof bytes, &size)) return {};
  return {configuration->dwServiceType, configuration->dwStartType, configuration->dwErrorControl,
          configuration->lpBinaryPathName, configuration->lpDisplayName};
}

HiddenDriverFile::HiddenDriverFile() {
  if (!MoveFileW(kDriverFile, kHiddenDriverFile)) GiveUp("hiding the driver file");
}

HiddenDriverFile::~HiddenDriverFile() {
  if (!MoveFileW(kHiddenDriverFile, kDriverFile)) GiveUp("the hidden driver file");
}

void EndToEnd::SetUp() {
  RemoveService();
  UseScenario("healthy-x64");
  DeleteFileA(kLog);
  g_log_taken = 0;
  ArchValue::Remove();
}

void EndToEnd::TearDown() { RemoveService(); }

}  // namespace vexa::test
