// What the query engine adds to the bare COM calls of the same query.
#include <windows.h>

#include <string>

#include "bench/bare_calls.h"
#include "bench/comparisons.h"
#include "bench/paired.h"
#include "wmi/query_engine.h"

namespace vexa {
namespace {

using Microsoft::WRL::ComPtr;

constexpr wchar_t kNamespace[] = L"ROOT\\CIMV2";
constexpr wchar_t kQuery[] = L"select * from Win32_Processor";
constexpr wchar_t kProperty[] = L"Name";

volatile size_t g_sink;

void LibraryQuery() {
  std::wstring text;
  ReadWMIPropStr(text, kNamespace, kQuery, kProperty, 0);
  g_sink = text.size();
}

void BareRows() {
  const BareSession session = BareQuery(kNamespace, kQuery);
  std::wstring text;
  for (;;) {
    ComPtr<IWbemClassObject> row;
    ULONG count = 0;
    if (FAILED(session.rows->Next(static_cast<LONG>(WBEM_INFINITE), 1, row.GetAddressOf(), &count)) || count == 0) break;
    VARIANT value;
    VariantInit(&value);
    if (SUCCEEDED(row->Get(kProperty, 0, &value, nullptr, nullptr)) && value.vt == VT_BSTR) text += value.bstrVal;
    VariantClear(&value);
  }
  g_sink = text.size();
}

}  // namespace

bool CompareWmiQuery() {
  return Compare({.name = "ReadWMIPropStr / bare COM calls",
                  .library = LibraryQuery,
                  .bare = BareRows,
                  .limit = 1.05,
                  .pairs = 2000,
                  .calls_per_block = 1,
                  .may_allocate = true});
}

}  // namespace vexa
