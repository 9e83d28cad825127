// What the query engine adds to the bare COM calls of the same query.
#include "bench/wmi_query.h"

#include <windows.h>

#include <wbemidl.h>
#include <wrl/client.h>

#include <string>

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

void BareQuery() {
  ComPtr<IWbemLocator> locator;
  CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER, IID_IWbemLocator,
                   reinterpret_cast<void**>(locator.GetAddressOf()));
  BSTR name_space = SysAllocString(kNamespace);
  ComPtr<IWbemServices> services;
  locator->ConnectServer(name_space, nullptr, nullptr, nullptr, 0, nullptr, nullptr, services.GetAddressOf());
  SysFreeString(name_space);
  CoSetProxyBlanket(services.Get(), RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr, RPC_C_AUTHN_LEVEL_CALL,
                    RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE);
  BSTR language = SysAllocString(L"WQL");
  BSTR query = SysAllocString(kQuery);
  ComPtr<IEnumWbemClassObject> rows;
  services->ExecQuery(language, query, WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY, nullptr,
                      rows.GetAddressOf());
  SysFreeString(language);
  SysFreeString(query);
  std::wstring text;
  for (;;) {
    ComPtr<IWbemClassObject> row;
    ULONG count = 0;
    if (FAILED(rows->Next(static_cast<LONG>(WBEM_INFINITE), 1, row.GetAddressOf(), &count)) || count == 0) break;
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
                  .bare = BareQuery,
                  .limit = 1.05,
                  .pairs = 2000,
                  .calls_per_block = 1,
                  .may_allocate = true});
}

}  // namespace vexa
