// VARIANTs and the server's own values.
#ifndef NOTEBOOK_FIRMWARE_VARIANTS_H_
#define NOTEBOOK_FIRMWARE_VARIANTS_H_

#include <windows.h>

#include <oaidl.h>

#include <string>

#include "cim.h"

namespace firmware {

// The caller owns what is made. E_OUTOFMEMORY when it cannot be made.
HRESULT ToVariant(const Datum& datum, VARIANT* variant);

// Types that no property can hold become an empty value of that type.
Datum FromVariant(const VARIANT& variant);

std::string FromBstr(const wchar_t* text);  // also null

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_VARIANTS_H_
