// The entry of the WMI locator's class in the registry.
#ifndef NOTEBOOK_FIRMWARE_REGISTRATION_H_
#define NOTEBOOK_FIRMWARE_REGISTRATION_H_

#include <windows.h>

namespace firmware {

// Below HKEY_LOCAL_MACHINE.
inline constexpr wchar_t kLocatorKey[] =
    L"SOFTWARE\\Classes\\CLSID\\{4590F811-1D3A-11D0-891F-00AA004B2E24}\\InprocServer32";
inline constexpr wchar_t kNotebookKey[] = L"SOFTWARE\\Vexa\\Notebook";
// What the entry named before the server took its place.
inline constexpr wchar_t kOriginalPathValue[] = L"OriginalLocator";
inline constexpr wchar_t kOriginalThreadingValue[] = L"OriginalLocatorThreading";

// Puts the server into the entry and remembers what was there.
HRESULT Register(HMODULE server);

// Restores the entry; does nothing when another server is in it.
HRESULT Unregister(HMODULE server);

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_REGISTRATION_H_
