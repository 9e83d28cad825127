// The shipped library on a system of fakes, and one call of an export with one failure.
#ifndef VEXA_TESTS_SWEEP_SUBJECT_H_
#define VEXA_TESTS_SWEEP_SUBJECT_H_

#include <windows.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/sweep/exports.h"
#include "tests/sweep/injector.h"

namespace vexa::test {

struct Outcome {
  std::string what;  // was done to which call of which export
  Answer answer;
  bool injected = false;
  int wlan_clients = 0;  // that were left open
  size_t call_count = 0, allocation_count = 0;
  std::vector<std::string> faults;  // lost, given back twice, written outside of a buffer
};

inline constexpr const char* kMachines[] = {"x64", "arm64"};

// One export on one machine. The library is loaded once and for all; it begins every run as it was when it had been
// initialised (or, for the one that initialises it, loaded).
class Subject {
 public:
  Subject(const Export& subject, int machine, bool tracing);
  ~Subject();

  Outcome Run(const Plan& plan);
  // Calls the export without going back to the beginning; what it holds stays.
  Answer CallAgain(Layout layout = {});
  // Waits until the library's tasks have ended and counts what is held, by kind.
  std::map<std::string, int> Held();
  // As at the beginning.
  void Reset();
  // The sources tell texts longer than any buffer.
  void UseLongTexts();

 private:
  struct World;
  std::unique_ptr<World> world_;
  const Export& export_;
  int machine_;
  std::vector<std::string> good_calls_;  // of the last run in which nothing failed
  FARPROC address_;
};

HMODULE LibraryUnderTest();
// What was called last, for a report when the process dies.
void RememberRun(const std::string& what);

}  // namespace vexa::test

#endif  // VEXA_TESTS_SWEEP_SUBJECT_H_
