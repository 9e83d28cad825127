#include "variants.h"

#include <oleauto.h>

#include "files.h"

namespace firmware {
namespace {

BSTR NewBstr(const std::string& text) {
  const std::wstring wide = Wide(text);
  return SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
}

bool FillScalar(const Datum& datum, VARIANT* variant) {
  V_VT(variant) = datum.vt;
  switch (datum.vt) {
    case kVtR4: V_R4(variant) = static_cast<float>(datum.AsReal()); break;
    case kVtR8: V_R8(variant) = datum.AsReal(); break;
    case kVtBool: V_BOOL(variant) = datum.bits != 0 ? VARIANT_TRUE : VARIANT_FALSE; break;
    case kVtBstr:
      V_BSTR(variant) = datum.text ? NewBstr(*datum.text) : nullptr;
      return !datum.text || V_BSTR(variant) != nullptr;
    case kVtUnknown: V_UNKNOWN(variant) = nullptr; break;
    // The members of a VARIANT begin at one address, low byte first.
    default: V_I8(variant) = static_cast<LONGLONG>(datum.bits); break;
  }
  return true;
}

HRESULT FillArray(const Datum& datum, VARIANT* variant) {
  SAFEARRAY* array = nullptr;
  if (datum.has_items) {
    const auto element = static_cast<VARTYPE>(datum.vt & ~kVtArray);
    array = SafeArrayCreateVector(element, datum.lower_bound, static_cast<ULONG>(datum.items.size()));
    if (array == nullptr) return E_OUTOFMEMORY;
    LONG index = datum.lower_bound;
    for (const Datum& item : datum.items) {
      VARIANT value{};
      // A text is stored by its pointer, everything else by its address.
      const bool made = FillScalar(item, &value) &&
                        SUCCEEDED(SafeArrayPutElement(
                            array, &index, item.vt == kVtBstr ? V_BSTR(&value) : static_cast<void*>(&V_I8(&value))));
      VariantClear(&value);
      ++index;
      if (made) continue;
      SafeArrayDestroy(array);
      return E_OUTOFMEMORY;
    }
  }
  V_VT(variant) = datum.vt;
  V_ARRAY(variant) = array;
  return S_OK;
}

Datum FromArray(SAFEARRAY* array, VARTYPE vt) {
  Datum datum{.vt = vt};
  const auto element = static_cast<VARTYPE>(vt & ~VT_ARRAY);
  LONG low = 0;
  LONG high = -1;
  if (array == nullptr || SafeArrayGetDim(array) != 1 || SafeArrayGetElemsize(array) > sizeof(LONGLONG)) return datum;
  SafeArrayGetLBound(array, 1, &low);
  SafeArrayGetUBound(array, 1, &high);
  datum.has_items = true;
  datum.lower_bound = low;
  for (LONG i = low; i <= high; ++i) {
    VARIANT value{};
    if (FAILED(SafeArrayGetElement(array, &i, &V_I8(&value)))) break;
    V_VT(&value) = element;
    datum.items.push_back(FromVariant(value));
    VariantClear(&value);
  }
  return datum;
}

}  // namespace

HRESULT ToVariant(const Datum& datum, VARIANT* variant) {
  VariantInit(variant);
  if ((datum.vt & kVtArray) != 0) return FillArray(datum, variant);
  if (FillScalar(datum, variant)) return S_OK;
  VariantInit(variant);
  return E_OUTOFMEMORY;
}

Datum FromVariant(const VARIANT& variant) {
  const VARTYPE vt = V_VT(&variant);
  if ((vt & VT_ARRAY) != 0) return FromArray(V_ARRAY(&variant), vt);
  switch (vt) {
    case VT_I1: return Datum::Integer(kVtI1, V_I1(&variant));
    case VT_I2: return Datum::Integer(kVtI2, V_I2(&variant));
    case VT_I4:
    case VT_INT: return Datum::Integer(vt, V_I4(&variant));
    case VT_I8: return Datum::Integer(kVtI8, V_I8(&variant));
    case VT_UI1: return Datum::Integer(kVtUi1, V_UI1(&variant));
    case VT_UI2: return Datum::Integer(kVtUi2, V_UI2(&variant));
    case VT_UI4:
    case VT_UINT: return Datum::Integer(vt, V_UI4(&variant));
    case VT_UI8: return Datum::Integer(kVtUi8, static_cast<int64_t>(V_UI8(&variant)));
    case VT_BOOL: return Datum::Integer(kVtBool, V_BOOL(&variant) != VARIANT_FALSE ? 1 : 0);
    case VT_R4: return Datum::Real(kVtR4, static_cast<double>(V_R4(&variant)));
    case VT_R8: return Datum::Real(kVtR8, V_R8(&variant));
    case VT_BSTR: return Datum::Text(FromBstr(V_BSTR(&variant)));
    default: return {.vt = vt};
  }
}

std::string FromBstr(const wchar_t* text) { return text == nullptr ? "" : Narrow(text); }

}  // namespace firmware
