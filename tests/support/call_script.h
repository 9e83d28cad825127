// The Windows calls that a test's fakes answer, in one order, and which of them are to fail.
#ifndef VEXA_TESTS_SUPPORT_CALL_SCRIPT_H_
#define VEXA_TESTS_SUPPORT_CALL_SCRIPT_H_

#include <windows.h>

#include <map>
#include <string>
#include <vector>

namespace vexa::test {

// Only for fakes of one test at a time, on one thread.
class CallScript {
 public:
  // The n-th call from now on (1 is the next) to `function` fails; 0: every call does.
  void Fail(const std::string& function, DWORD error, int nth = 0);
  void Succeed(const std::string& function) { failures_.erase(function); }
  // Of all calls since Take, whatever the function: the i-th alone (0 is the first), or all from there on.
  void FailOnly(int index, DWORD error) { sweep_ = {index, index, error}; }
  void FailFrom(int index, DWORD error) { sweep_ = {index, kNoEnd, error}; }

  // For fakes: records the call; whether it is to fail, the error then being set. `text` holds the arguments.
  [[nodiscard]] bool Fails(const std::string& function, const std::string& text = {});

  // "function text" per call since the last time. Calls are counted from 0 again.
  std::vector<std::string> Take();

 private:
  static constexpr int kNoEnd = 0x7FFFFFFF;
  struct Sweep {
    int first, last;
    DWORD error;
  };
  struct Failure {
    int countdown;  // 0: every call
    DWORD error;
  };

  std::map<std::string, Failure> failures_;
  Sweep sweep_{-1, -1, 0};
  std::vector<std::string> calls_;
};

// What the fakes write into their records.
std::string Narrow(const wchar_t* text);  // UTF-8; "null" for a null pointer
std::string Hex(uintptr_t number);        // lower case, no prefix
int CountOf(const std::vector<std::string>& calls, const std::string& call);

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_CALL_SCRIPT_H_
