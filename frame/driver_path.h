// The driver's path as the service manager must see it. Pure text.
#ifndef VEXA_FRAME_DRIVER_PATH_H_
#define VEXA_FRAME_DRIVER_PATH_H_

#include <string>
#include <string_view>

namespace vexa {

// A folder without the backslash that ends it when it is a drive's root.
inline std::wstring_view WithoutTrailingBackslash(std::wstring_view folder) {
  if (folder.ends_with(L'\\')) folder.remove_suffix(1);
  return folder;
}

// "\SystemRoot..." for C:\Windows and the folders in it (in any case), "\??\..." for every other one. The kernel opens
// drivers long before drive letters mean anything to it, and takes no empty name between two backslashes.
inline std::wstring ServiceFolder(std::wstring_view module_folder) {
  module_folder = WithoutTrailingBackslash(module_folder);
  constexpr std::wstring_view kWindows = L"c:\\windows";
  const auto lower = [](wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; };
  const size_t length = kWindows.size();
  bool in_windows = module_folder.size() == length || (module_folder.size() > length && module_folder[length] == L'\\');
  for (size_t i = 0; in_windows && i < length; ++i) in_windows = lower(module_folder[i]) == kWindows[i];
  if (!in_windows) return L"\\??\\" + std::wstring(module_folder);
  return L"\\SystemRoot" + std::wstring(module_folder.substr(length));
}

}  // namespace vexa

#endif  // VEXA_FRAME_DRIVER_PATH_H_
