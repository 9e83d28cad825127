// What a peer does with its commands.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <utility>

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

DWORD g_longest_ms = INFINITE;

DWORD WINAPI ToldWait(HANDLE handle, DWORD milliseconds) {
  Say("wait " + std::to_string(milliseconds));
  const DWORD result = WaitForSingleObject(handle, std::min(milliseconds, g_longest_ms));
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

uint32_t TakeMutexOrGiveItBack() {
  static HANDLE mutex = nullptr;
  if (mutex != nullptr) return ReleaseMutex(mutex) && CloseHandle(std::exchange(mutex, nullptr)) ? 1 : 0;
  mutex = CreateMutexW(nullptr, TRUE, L"VEXAWINIO_!@#$%^&*");
  return GetLastError() == ERROR_ALREADY_EXISTS ? 0 : 1;
}

}  // namespace

int PlayPeer() {
  // Kept until the process has ended: the library's exit handlers still call what is patched.
  static const auto& library = *new Library;
  static const auto& wait = *new ImportPatch("WaitForSingleObject", ToldWait, library.module());
  static auto& recorder = *new TraceRecorder(library.module());
  (void)wait;
  recorder.level_at_registration = 5;
  const auto number = [](const std::string& word) { return static_cast<uint32_t>(std::stoul(word)); };
  const std::map<std::string, std::function<uint32_t(const std::string&)>> kCommands = {
      {"initialize", [](auto&) { return library.InitializeWinIo(); }},
      {"shutdown", [](auto&) { return library.ShutdownWinIo(), 0u; }},
      {"references", [](auto&) { return library.GetRefCount(); }},
      {"stop", [&](auto& option) { return library.StopWinIoDriver(number(option)); }},
      {"testmode", [&](auto& mode) { return library.HealthyTable_SetFanTestMode(number(mode)); }},
      {"fan", [&](auto& index) { return library.Quillo_Read_Fan(static_cast<int32_t>(number(index))); }},
      {"number", [](auto& name) { return library.Number(name); }},
      {"hurry", [&](auto& ms) { return g_longest_ms = number(ms); }},
      {"take", [](auto&) { return TakeMutexOrGiveItBack(); }},
      {"release", [](auto&) { return TakeMutexOrGiveItBack(); }},
      {"trace",
       [](auto&) {
         for (const std::string& event : recorder.TakeLines()) Say(OnOneLine(event));
         return 0u;
       }},
  };
  std::string line;
  while (std::getline(std::cin, line) && line != "exit") {
    std::istringstream words(line);
    std::string command, argument;
    words >> command >> argument;
    Say("= " + std::to_string(kCommands.at(command)(argument)));
  }
  return 0;
}

}  // namespace vexa::test
