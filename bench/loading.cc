// Loading and unloading the shipped library, and the client's way to its first line.
#include <windows.h>

#include <cstdio>
#include <string>

#include "bench/comparisons.h"
#include "bench/paired.h"
#include "frame/handles.h"

namespace vexa {
namespace {

void LoadAndFree(const wchar_t* path) {
  const HMODULE module = LoadLibraryW(path);
  if (module == nullptr) {
    std::fprintf(stderr, "%ls can't be loaded: %lu\n", path, GetLastError());
    ExitProcess(2);
  }
  FreeLibrary(module);
}

void Library() { LoadAndFree(L"C:\\Vexa\\VexaWinIO64.dll"); }
void Twin() { LoadAndFree(L"C:\\Vexa\\same_imports.dll"); }

// Until the program's first line is there; the program is then waited for.
void AwaitFirstLine(std::wstring command) {
  SECURITY_ATTRIBUTES inherited{.nLength = sizeof inherited, .lpSecurityDescriptor = nullptr, .bInheritHandle = TRUE};
  HANDLE read_end = nullptr, write_end = nullptr;
  CreatePipe(&read_end, &write_end, &inherited, 0);
  STARTUPINFOW startup{.cb = sizeof startup};
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = write_end;
  PROCESS_INFORMATION process{};
  const BOOL started = CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, DETACHED_PROCESS, nullptr,
                                      L"C:\\Vexa", &startup, &process);
  CloseHandle(write_end);
  char text[256];
  DWORD size = 0;
  if (!started || !ReadFile(read_end, text, sizeof text, &size, nullptr) || size == 0) {
    std::fprintf(stderr, "%ls told nothing\n", command.c_str());
    ExitProcess(2);
  }
  WaitForSingleObject(process.hProcess, INFINITE);
  CloseHandle(process.hProcess);
  CloseHandle(process.hThread);
  CloseHandle(read_end);
}

void ClientVersion() { AwaitFirstLine(L"C:\\Vexa\\vexahealth.exe --version"); }
void ClientReading() { AwaitFirstLine(L"C:\\Vexa\\vexahealth.exe get ec.table_version"); }
void BareProgram() { AwaitFirstLine(L"C:\\Vexa\\first_line.exe"); }

}  // namespace

bool CompareLoading() {
  Comparison comparison{.name = "load + unload / same imports",
                        .library = Library,
                        .bare = Twin,
                        .limit = 1.2,
                        .pairs = 500,
                        .calls_per_block = 1,
                        .may_allocate = true};
  const bool alone = Compare(comparison);
  // In a host that uses the same system libraries itself, only the file of the library is left to compare.
  for (const wchar_t* used : {L"iphlpapi.dll", L"ole32.dll", L"oleaut32.dll", L"setupapi.dll", L"shlwapi.dll"}) {
    LoadLibraryW(used);
  }
  comparison.name = "the same, system libraries in use";
  comparison.pairs = 1500;
  return Compare(comparison) && alone;
}

bool CompareClientStart() {
  Comparison comparison{.name = "client's version / bare program",
                        .library = ClientVersion,
                        .bare = BareProgram,
                        .pairs = 20,
                        .calls_per_block = 1,
                        .may_allocate = true};
  const bool version = Compare(comparison);
  comparison.name = "client's first reading / bare program";
  comparison.library = ClientReading;
  return Compare(comparison) && version;
}

}  // namespace vexa
