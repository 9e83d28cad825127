#include "tests/support/wmi_value.h"

#include <bit>
#include <cstring>

namespace vexa::test {
namespace {

size_t SizeOf(VARTYPE type) {
  switch (type) {
    case VT_EMPTY:
    case VT_NULL: return 0;
    case VT_I1:
    case VT_UI1: return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL: return 2;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_UNKNOWN:
    case VT_DISPATCH: return 8;
    default: return 4;
  }
}

SAFEARRAY* MakeArray(const WmiValue& value) {
  const VARTYPE type = value.type & VT_TYPEMASK;
  SAFEARRAY* array = SafeArrayCreateVector(type, 0, static_cast<ULONG>(value.elements.size()));
  for (LONG i = 0; i < static_cast<LONG>(value.elements.size()); ++i) {
    VARIANT element{};
    Store(value.elements[i], &element);
    void* source = type == VT_VARIANT ? static_cast<void*>(&element)
                   : type == VT_BSTR  ? static_cast<void*>(element.bstrVal)
                                      : &element.lVal;
    SafeArrayPutElement(array, &i, source);
    VariantClear(&element);
  }
  return array;
}

}  // namespace

WmiValue Text(const std::wstring& text) { return {.type = VT_BSTR, .text = text}; }

WmiValue Number(VARTYPE type, int64_t number) { return {.type = type, .bits = static_cast<uint64_t>(number)}; }

WmiValue Real32(float number) { return {.type = VT_R4, .bits = std::bit_cast<uint32_t>(number)}; }

WmiValue Real64(double number) { return {.type = VT_R8, .bits = std::bit_cast<uint64_t>(number)}; }

WmiValue Array(VARTYPE element_type, std::vector<WmiValue> elements) {
  return {.type = static_cast<VARTYPE>(VT_ARRAY | element_type), .elements = std::move(elements)};
}

WmiValue Texts(const std::vector<std::wstring>& texts) {
  std::vector<WmiValue> elements;
  for (const std::wstring& text : texts) elements.push_back(Text(text));
  return Array(VT_BSTR, std::move(elements));
}

void Store(const WmiValue& value, VARIANT* target) {
  target->vt = value.type;
  if (value.type == VT_BSTR) {
    target->bstrVal = SysAllocStringLen(value.text.data(), static_cast<UINT>(value.text.size()));
  } else if (value.type & VT_ARRAY) {
    target->parray = MakeArray(value);
  } else {
    std::memcpy(&target->lVal, &value.bits, SizeOf(value.type));
  }
}

}  // namespace vexa::test
