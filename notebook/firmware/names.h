// Names of namespaces, classes and properties: case does not matter, and only ASCII letters have case.
#ifndef NOTEBOOK_FIRMWARE_NAMES_H_
#define NOTEBOOK_FIRMWARE_NAMES_H_

#include <algorithm>
#include <string>
#include <string_view>

namespace firmware {

inline char UpperLetter(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

inline std::string UpperCase(std::string_view text) {
  std::string upper(text);
  std::ranges::transform(upper, upper.begin(), UpperLetter);
  return upper;
}

inline bool SameName(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, UpperLetter, UpperLetter);
}

// One spelling for all spellings of a namespace of this machine: "\\.\root/wmi" gives "ROOT\WMI".
inline std::string NamespaceName(std::string_view text) {
  std::string name = UpperCase(text);
  std::ranges::replace(name, '/', '\\');
  if (name.starts_with("\\\\.\\")) name.erase(0, 4);
  return name;
}

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_NAMES_H_
