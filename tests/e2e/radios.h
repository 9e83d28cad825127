// The shipped library on the simulated radios, with a scenario of the test's own.
#ifndef VEXA_TESTS_E2E_RADIOS_H_
#define VEXA_TESTS_E2E_RADIOS_H_

#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/e2e/loaded.h"

namespace vexa::test {

// A number of a library's counts; 0 when it has not counted that.
inline int Count(const wchar_t* file, const std::string& what) {
  FILE* counts = _wfopen(TempFile(file).c_str(), L"rb");
  if (counts == nullptr) return 0;
  char text[8192] = {};
  std::fread(text, 1, sizeof text - 1, counts);
  std::fclose(counts);
  const char* found = std::strstr(text, ("\"" + what + "\": ").c_str());
  return found == nullptr ? 0 : std::atoi(found + what.size() + 4);
}

class Radios : public testing::Test {
 protected:
  Radios() { firmware_.Use(R"({"firmware": {"log": false}})"); }

  void UseRadios(const std::string& section) { radios_.Use("{\"radios\": {" + section + "}}"); }

  ScenarioFile radios_{L"Radios", L"radios-test.json"};
  ScenarioFile firmware_{L"Firmware", L"radios-firmware-test.json"};
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_E2E_RADIOS_H_
