// What a peer does with its commands.
#include <windows.h>

#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>

#include "tests/e2e/library.h"
#include "tests/e2e/peer.h"
#include "tests/support/import_patch.h"
#include "tests/support/trace_recorder.h"

namespace vexa::test {
namespace {

// Each line reaches the other side at once.
void Say(const std::string& line) {
  std::fputs((line + "\n").c_str(), stdout);
  std::fflush(stdout);
}

DWORD WINAPI ToldWait(HANDLE handle, DWORD milliseconds) {
  Say("wait " + std::to_string(milliseconds));
  const DWORD result = WaitForSingleObject(handle, milliseconds);
  const DWORD error = GetLastError();
  Say("waited " + std::to_string(result));
  SetLastError(error);
  return result;
}

// A line of the trace may hold line feeds of its own.
std::string OnOneLine(std::string text) {
  for (size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) text.replace(at, 1, "\\n");
  return text;
}

int PlayLibrary() {
  // Kept until the process has ended: the library's exit handlers still call what is patched.
  static const auto& library = *new Library;
  static const auto& wait = *new ImportPatch("WaitForSingleObject", ToldWait, library.module());
  static auto& recorder = *new TraceRecorder(library.module());
  (void)wait;
  recorder.level_at_registration = 5;
  std::string line;
  while (std::getline(std::cin, line) && line != "exit") {
    std::istringstream words(line);
    std::string command;
    words >> command;
    uint32_t answer = 0;
    if (command == "initialize") answer = library.InitializeWinIo();
    if (command == "shutdown") library.ShutdownWinIo();
    if (command == "references") answer = library.GetRefCount();
    if (command == "stop") {
      uint32_t option = 0;
      words >> option;
      answer = library.StopWinIoDriver(option);
    }
    if (command == "testmode" || command == "fan") {
      int32_t argument = 0;
      words >> argument;
      answer = command == "fan" ? library.Quillo_Read_Fan(argument)
                                : library.HealthyTable_SetFanTestMode(static_cast<uint32_t>(argument));
    }
    if (command == "number") {
      std::string name;
      words >> name;
      answer = library.Number(name.c_str());
    }
    if (command == "trace") {
      for (const std::string& event : recorder.TakeLines()) Say(OnOneLine(event));
    }
    Say("= " + std::to_string(answer));
  }
  return 0;
}

int PlayOwner() {
  HANDLE mutex = nullptr;
  std::string command;
  while (std::getline(std::cin, command) && command != "exit") {
    if (command == "take") {
      mutex = CreateMutexW(nullptr, TRUE, L"VEXAWINIO_!@#$%^&*");
      Say(GetLastError() == ERROR_ALREADY_EXISTS ? "= 0" : "= 1");
    } else if (command == "release") {
      ReleaseMutex(mutex);
      CloseHandle(mutex);
      Say("= 1");
    }
  }
  return 0;
}

}  // namespace

int PlayRole(const std::string& role) {
  if (role == "library") return PlayLibrary();
  if (role == "owner") return PlayOwner();
  std::fprintf(stderr, "no such role: %s\n", role.c_str());
  return 2;
}

}  // namespace vexa::test
