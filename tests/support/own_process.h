// A test that needs a process of its own, in which the library finds otherwise what it looks up once.
#ifndef VEXA_TESTS_SUPPORT_OWN_PROCESS_H_
#define VEXA_TESTS_SUPPORT_OWN_PROCESS_H_

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "frame/handles.h"

namespace vexa::test {

// False in the process with the variable set: the test goes on there. Anywhere else it is run in such a process, where
// it must pass.
inline bool RunInOwnProcess(const wchar_t* variable) {
  if (GetEnvironmentVariableW(variable, nullptr, 0) != 0) return false;
  wchar_t program[MAX_PATH] = {};
  DWORD size = MAX_PATH;
  QueryFullProcessImageNameW(GetCurrentProcess(), 0, program, &size);
  const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
  const std::string name = std::string(test.test_suite_name()) + "." + test.name();
  std::wstring command = L"shell_test --gtest_filter=" + std::wstring(name.begin(), name.end());
  SetEnvironmentVariableW(variable, L"1");
  STARTUPINFOW startup{.cb = sizeof startup};
  PROCESS_INFORMATION process{};
  const BOOL started =
      CreateProcessW(program, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process);
  SetEnvironmentVariableW(variable, nullptr);
  EXPECT_TRUE(started);
  const KernelHandle child(process.hProcess), thread(process.hThread);
  EXPECT_EQ(WaitForSingleObjectEx(child.get(), 60000, FALSE), DWORD{WAIT_OBJECT_0});
  DWORD code = 1;
  GetExitCodeProcess(child.get(), &code);
  EXPECT_EQ(code, 0u);
  return true;
}

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_OWN_PROCESS_H_
