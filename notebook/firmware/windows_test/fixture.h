// The surroundings of the tests: a folder of their own, the registered server, its counters.
#ifndef NOTEBOOK_FIRMWARE_WINDOWS_TEST_FIXTURE_H_
#define NOTEBOOK_FIRMWARE_WINDOWS_TEST_FIXTURE_H_

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

namespace firmware {

// The folder that holds the scenario, the state and the log of the tests, with a backslash at the end.
const std::wstring& TestFolder();

// The server's library, loaded for as long as the tests run.
HMODULE Server();

class FirmwareTest : public testing::Test {
 protected:
  FirmwareTest();
  // Every reference must have been given back.
  ~FirmwareTest() override;

  // Gives the firmware a new scenario, which is what a "firmware" section holds.
  void UseScenario(const std::string& section);
  void UseFile(const std::string& text);
  void RemoveScenario();

  // What the firmware did since the scenario was given.
  std::vector<std::string> Log();
  // Waits until the log has the line.
  void AwaitLine(const std::string& line);
  std::string State();

  static LONG Objects(const char* interface_name = nullptr);
};

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_WINDOWS_TEST_FIXTURE_H_
