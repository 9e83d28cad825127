/* The bare equivalent of the client's start: loads the library's twin and writes one line. */
#include <windows.h>

int main(void) {
  static const char line[] = "ready\n";
  DWORD written;
  if (LoadLibraryW(L"C:\\Vexa\\same_imports.dll") == NULL) return 1;
  return WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), line, sizeof line - 1, &written, NULL) ? 0 : 1;
}
