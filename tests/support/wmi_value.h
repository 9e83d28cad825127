// Values that scripted WMI objects hand out.
#ifndef VEXA_TESTS_SUPPORT_WMI_VALUE_H_
#define VEXA_TESTS_SUPPORT_WMI_VALUE_H_

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vexa::test {

struct WmiValue {
  VARTYPE type = VT_EMPTY;
  uint64_t bits = 0;               // of everything that is no text and no array
  std::wstring text;               // of VT_BSTR; may hold zeros
  std::vector<WmiValue> elements;  // of VT_ARRAY | element type
};

using WmiProperties = std::map<std::wstring, WmiValue>;

WmiValue Text(const std::wstring& text);
WmiValue Number(VARTYPE type, int64_t number);  // integers, VT_BOOL, and bare types such as VT_NULL
WmiValue Real32(float number);
WmiValue Real64(double number);  // VT_DATE by setting the type
WmiValue Array(VARTYPE element_type, std::vector<WmiValue> elements);
WmiValue Texts(const std::vector<std::wstring>& texts);

// Only the bytes that belong to the type are written, as WMI does.
void Store(const WmiValue& value, VARIANT* target);

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_WMI_VALUE_H_
