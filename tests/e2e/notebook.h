// The simulated notebook as a test sees it: its scenario, its log, its driver service.
#ifndef VEXA_TESTS_E2E_NOTEBOOK_H_
#define VEXA_TESTS_E2E_NOTEBOOK_H_

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

namespace vexa::test {

// Gives the image `name`.bin to the driver, which takes it when no handle is open.
void UseScenario(const std::string& name);
// Gives it `size` bytes of that image.
void UseBrokenImage(const std::string& name, size_t size);
// Names of all images, in alphabetical order.
std::vector<std::string> AllScenarios();

using Lines = std::vector<std::string>;

// Lines of the driver's log since the last call.
Lines TakeDriverLog();
// Of them the EC's exchanges, without their answers: "bb 50 read".
Lines TakeExchanges();

struct ServiceConfiguration {
  DWORD type;
  DWORD start;
  DWORD error_control;
  std::wstring path;
  std::wstring display_name;

  bool operator==(const ServiceConfiguration&) const = default;
};

// Registers the service at this path. It must not be registered yet.
void RegisterService(const std::wstring& path, const std::wstring& display_name = L"VexaSAIO");
bool StartRegisteredService();
// Stops the service when it runs, and deletes it.
void RemoveService();

inline constexpr DWORD kNotRegistered = 0;
// SERVICE_STOPPED, SERVICE_RUNNING ..., or kNotRegistered.
DWORD ServiceState();
// All zero and empty when there is none.
ServiceConfiguration ServiceSettings();

// Takes the driver file away from beside the library, while it lives.
class HiddenDriverFile {
 public:
  HiddenDriverFile();
  ~HiddenDriverFile();
};

// Begins each test with the healthy notebook, no service, no log, and no "Arch" in the registry.
class EndToEnd : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_E2E_NOTEBOOK_H_
