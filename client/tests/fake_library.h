// A library whose exports answer from a script, by their names, and a log of the calls.
#ifndef CLIENT_TESTS_FAKE_LIBRARY_H_
#define CLIENT_TESTS_FAKE_LIBRARY_H_

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "client/ask.h"

namespace vexahealth {

struct Script {
  // By the name of the export, or by name and arguments: "Quillo_Read_Fan 1". A number that is not given is
  // VEXA_NO_ANSWER, or 1 (of radios 0) of an export that fills a buffer.
  std::map<std::string, uint32_t, std::less<>> numbers;
  std::map<std::string, std::string, std::less<>> texts;
  std::set<std::string, std::less<>> missing;              // exports that the library lacks
  std::function<void(std::string_view call)> before_call;  // may change the script
  std::vector<std::string> calls;                          // "WMISetBatteryHealth 80", without the COM flag

  uint32_t& operator[](std::string_view key);  // the number of the row with this key
  void SetText(std::string_view key, std::string text);
  ptrdiff_t Calls(std::string_view call) const;
  bool Called(std::string_view part) const;
};

// The script that the exports answer from, and a library of them, with what is missing now.
Script& TheScript();
vexa::Library FakeLibrary();

// Every answer of a healthy notebook with a three-cell pack; the same as an ARM64 machine gives it: constants where the
// firmware has no such value.
Script HealthyScript();
Script HealthyFirmwareScript();

// Reading over the script; texts stay as they are.
struct Scene {
  Route route = Route::kDriver;
  bool ready = true;
  bool may_wait = true;
  PowerLine line = PowerLine::kOffline;
};
Context ContextFor(const vexa::Library& library, const Scene& scene = {});

// The report of `status` without its families beside the battery.
Report ScriptedReport(const Scene& scene = {});

inline constexpr Route kDriver = Route::kDriver;
inline constexpr Route kFirmware = Route::kFirmware;
inline constexpr uint32_t kSilent = VEXA_NO_ANSWER;
inline constexpr uint32_t kAllOnes = VEXA_NOT_AVAILABLE;

// What a reading must be.
struct Expected {
  std::string_view key;
  Status status = Status::kOk;
  Value value = {};

  Expected(std::string_view row, Status missing) : key(row), status(missing) {}
  Expected(std::string_view row, int64_t number) : key(row), value(number) {}
  Expected(std::string_view row, int number) : key(row), value(int64_t{number}) {}
  Expected(std::string_view row, bool flag) : key(row), value(flag) {}
  Expected(std::string_view row, const char* text) : key(row), value(text) {}

  void Check(std::span<const Reading> readings, std::string_view what) const;
};

}  // namespace vexahealth

#endif  // CLIENT_TESTS_FAKE_LIBRARY_H_
