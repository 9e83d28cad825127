#include "wmi/variant_value.h"

#include <cstdio>

#include "wmi/decimal.h"
#include "wmi/session.h"

namespace vexa {
namespace {

// Nothing for types that are no integers.
std::optional<int64_t> WholeInteger(const VARIANT& value) noexcept {
  switch (value.vt) {
    case VT_I1: return static_cast<int8_t>(value.cVal);
    case VT_UI1: return value.bVal;
    case VT_I2: return value.iVal;
    case VT_UI2: return value.uiVal;
    case VT_I4:
    case VT_INT: return value.lVal;
    case VT_UI4:
    case VT_UINT: return value.ulVal;
    case VT_I8: return value.llVal;
    case VT_UI8: return static_cast<int64_t>(value.ullVal);
    default: return std::nullopt;
  }
}

std::wstring FromBstr(BSTR text) { return text == nullptr ? std::wstring() : std::wstring(text, SysStringLen(text)); }

// By the C runtime: the C++ library's conversion carries 100 KB of tables.
std::wstring RealText(double value, int digits) {
  char text[64];
  const int length = std::snprintf(text, sizeof text, "%.*g", digits, value);
  return std::wstring(text, text + length);
}

// Copies one element into an empty VARIANT of the array's element type.
bool GetElement(const VARIANT& array, long index, VARIANT* element) {
  const VARTYPE type = array.vt & VT_TYPEMASK;
  if (type == VT_VARIANT) return SUCCEEDED(SafeArrayGetElement(array.parray, &index, element));
  if (FAILED(SafeArrayGetElement(array.parray, &index, &element->lVal))) return false;
  element->vt = type;
  return true;
}

// Calls `visit(element, is_first)` until it answers false. False when `array` has no elements to visit.
template <typename Visit>
bool VisitElements(const VARIANT& array, Visit visit) {
  long first = 0, last = -1;
  if (array.parray == nullptr || SafeArrayGetDim(array.parray) != 1 ||
      FAILED(SafeArrayGetLBound(array.parray, 1, &first)) || FAILED(SafeArrayGetUBound(array.parray, 1, &last))) {
    return false;
  }
  for (long index = first; index <= last; ++index) {
    Variant element;
    if (GetElement(array, index, element.put()) && !visit(element.get(), index == first)) break;
  }
  return true;
}

std::optional<std::wstring> JoinedElements(const VARIANT& array) {
  std::wstring joined;
  const bool visited = VisitElements(array, [&joined](const VARIANT& element, bool is_first) {
    if (!is_first) joined += L';';
    joined += ConvertedTextOf(element).value_or(L"");
    return true;
  });
  return visited ? std::optional(std::move(joined)) : std::nullopt;
}

}  // namespace

std::optional<int32_t> IntegerMember(const VARIANT& value) noexcept {
  return WholeInteger(value) ? std::optional<int32_t>(value.lVal) : std::nullopt;
}

std::optional<uint32_t> NumberOf(const VARIANT& value) noexcept {
  if (value.vt & VT_ARRAY) {
    long first = 0;
    Variant element;
    if (value.parray == nullptr || SafeArrayGetDim(value.parray) != 1 ||
        FAILED(SafeArrayGetLBound(value.parray, 1, &first)) || !GetElement(value, first, element.put())) {
      return std::nullopt;
    }
    return NumberOf(element.get());
  }
  if (value.vt == VT_BOOL) return value.boolVal != VARIANT_FALSE ? 1u : 0u;
  if (value.vt != VT_BSTR) {
    return WholeInteger(value).transform([](int64_t number) { return static_cast<uint32_t>(number); });
  }
  const UINT length = SysStringLen(value.bstrVal);
  if (length == 0) return std::nullopt;
  uint64_t number = 0;
  for (UINT i = 0; i < length; ++i) {
    const wchar_t digit = value.bstrVal[i];
    if (digit < L'0' || digit > L'9') return std::nullopt;
    number = number * 10 + static_cast<uint64_t>(digit - L'0');
  }
  return static_cast<uint32_t>(number);
}

std::optional<std::wstring> TextOf(const VARIANT& value) {
  if (value.vt != VT_BSTR) return std::nullopt;
  return FromBstr(value.bstrVal);
}

std::optional<std::wstring> CharactersOf(const VARIANT& value) {
  if (!(value.vt & VT_ARRAY)) return TextOf(value);
  std::wstring text;
  bool all_integers = true;
  const bool visited = VisitElements(value, [&](const VARIANT& element, bool) {
    const std::optional<int64_t> code = WholeInteger(element);
    all_integers = code.has_value();
    if (!code || *code == 0) return false;
    text += static_cast<wchar_t>(*code);
    return true;
  });
  return visited && all_integers ? std::optional(std::move(text)) : std::nullopt;
}

std::optional<std::wstring> ConvertedTextOf(const VARIANT& value) {
  if (value.vt & VT_ARRAY) return JoinedElements(value);
  if (value.vt == VT_UI8) return WideDecimal(value.ullVal);
  if (const std::optional<int64_t> number = WholeInteger(value)) return WideDecimal(*number);
  switch (value.vt) {
    case VT_BSTR: return FromBstr(value.bstrVal);
    case VT_BOOL: return value.boolVal != VARIANT_FALSE ? L"true" : L"false";
    case VT_R4: return RealText(value.fltVal, 7);
    case VT_R8: return RealText(value.dblVal, 15);
    default: return std::nullopt;
  }
}

std::optional<std::wstring> TextElement(const VARIANT& value, long index) {
  if (value.vt != (VT_ARRAY | VT_BSTR) || value.parray == nullptr || SafeArrayGetDim(value.parray) != 1) {
    return std::nullopt;
  }
  BSTR text = nullptr;
  if (FAILED(SafeArrayGetElement(value.parray, &index, &text))) return std::nullopt;
  const Bstr owner(text);
  return FromBstr(text);
}

}  // namespace vexa
