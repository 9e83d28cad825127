// A library that stands where another one is looked for. It tells that it was loaded: one line with its path in the
// file that the environment variable names.
#include <windows.h>

#include <iterator>

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason != DLL_PROCESS_ATTACH) return TRUE;
  char log[MAX_PATH], path[MAX_PATH + 1];
  if (GetEnvironmentVariableA("VEXA_DECOY_LOG", log, std::size(log)) == 0) return TRUE;
  DWORD length = GetModuleFileNameA(module, path, MAX_PATH);
  path[length++] = '\n';
  const HANDLE file =
      CreateFileA(log, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS, 0, nullptr);
  DWORD written = 0;
  WriteFile(file, path, length, &written, nullptr);
  CloseHandle(file);
  return TRUE;
}
