// A library of plain functions with one scripted answer per row, and a log of the calls.
#ifndef CLIENT_TESTS_SCRIPTED_LIBRARY_H_
#define CLIENT_TESTS_SCRIPTED_LIBRARY_H_

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "client/catalogue.h"

namespace vexahealth {

struct Script {
  std::map<std::string_view, uint32_t> numbers;  // the answer of exports that fill a buffer is 1 where not given
  std::map<std::string_view, std::string> texts;
  std::vector<std::string_view> calls;                // keys of the rows whose exports were called
  std::function<void(std::string_view)> before_call;  // may change the script
};

// The script that the exports below answer from.
Script& TheScript();

// Every answer of a healthy notebook with a three-cell pack.
Script HealthyScript();

// The same notebook as an ARM64 machine answers it: constants where the firmware has no such value.
Script HealthyFirmwareScript();

// Finds the scripted exports by their names; those of `without` are missing.
Resolver ScriptedExports(std::string_view without = {});

}  // namespace vexahealth

#endif  // CLIENT_TESTS_SCRIPTED_LIBRARY_H_
