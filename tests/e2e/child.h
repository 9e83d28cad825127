// Runs a program to its end.
#ifndef VEXA_TESTS_E2E_CHILD_H_
#define VEXA_TESTS_E2E_CHILD_H_

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace vexa::test {

inline constexpr DWORD kChildLimitMs = 120'000;

// Its exit code. Its output goes nowhere; its environment is this program's.
inline DWORD RunChild(const std::wstring& program, const std::wstring& arguments, const wchar_t* folder = nullptr) {
  SECURITY_ATTRIBUTES inherited{.nLength = sizeof inherited, .bInheritHandle = TRUE};
  const HANDLE nowhere = CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                     &inherited, OPEN_EXISTING, 0, nullptr);
  std::wstring line = L"\"" + program + L"\" " + arguments;
  STARTUPINFOW startup{.cb = sizeof startup, .dwFlags = STARTF_USESTDHANDLES};
  startup.hStdInput = startup.hStdOutput = startup.hStdError = nowhere;
  PROCESS_INFORMATION child{};
  const BOOL started = CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                                      folder, &startup, &child);
  CloseHandle(nowhere);
  if (!started) {
    ADD_FAILURE() << "the program can't be started: " << GetLastError();
    return MAXDWORD;
  }
  EXPECT_EQ(WaitForSingleObject(child.hProcess, kChildLimitMs), WAIT_OBJECT_0);
  DWORD code = MAXDWORD;
  GetExitCodeProcess(child.hProcess, &code);
  CloseHandle(child.hThread);
  CloseHandle(child.hProcess);
  return code;
}

// This program's own file.
inline std::wstring OwnFile() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

}  // namespace vexa::test

#endif  // VEXA_TESTS_E2E_CHILD_H_
