#include "bench/bare_calls.h"

#include "frame/ec_command.h"
#include "frame/library_state.h"

namespace vexa {

using Microsoft::WRL::ComPtr;

uint8_t BareExchange(uint8_t command, uint8_t count, uint8_t first, uint8_t second) {
  EcCommandRecord record{};
  record.command = command;
  record.data_count = count;
  record.data[0] = first;
  record.data[1] = second;
  record.read_flag = 1;
  DWORD returned = 0;
  DeviceIoControl(g_library.driver, 0x80102070, &record, sizeof record, &record, sizeof record, &returned, nullptr);
  return record.result;
}

uint32_t BareRouteRead() {
  HKEY key = nullptr;
  RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Vexa\\Config", 0, KEY_READ, &key);
  wchar_t text[64];
  DWORD type = 0;
  DWORD size = sizeof text;
  RegQueryValueExW(key, L"Arch", nullptr, &type, reinterpret_cast<BYTE*>(text), &size);
  RegCloseKey(key);
  return text[0];
}

BareSession BareQuery(const wchar_t* name_space, const wchar_t* query) {
  BareSession session;
  ComPtr<IWbemLocator> locator;
  CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER, IID_IWbemLocator,
                   reinterpret_cast<void**>(locator.GetAddressOf()));
  BSTR space = SysAllocString(name_space);
  locator->ConnectServer(space, nullptr, nullptr, nullptr, 0, nullptr, nullptr, session.services.GetAddressOf());
  SysFreeString(space);
  CoSetProxyBlanket(session.services.Get(), RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr, RPC_C_AUTHN_LEVEL_CALL,
                    RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE);
  BSTR language = SysAllocString(L"WQL");
  BSTR text = SysAllocString(query);
  session.services->ExecQuery(language, text, WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY, nullptr,
                              session.rows.GetAddressOf());
  SysFreeString(language);
  SysFreeString(text);
  return session;
}

namespace {

void PutText(IWbemClassObject* object, const wchar_t* name, const wchar_t* text) {
  VARIANT value;
  value.vt = VT_BSTR;
  value.bstrVal = SysAllocString(text);
  object->Put(name, 0, &value, CIM_UINT8);
  VariantClear(&value);
}

uint32_t CallMethod(const wchar_t* method, const wchar_t* command_code, const wchar_t* param0) {
  const BareSession session = BareQuery(L"ROOT\\WMI", L"Select * from ATD_STS");
  ComPtr<IWbemClassObject> instance, definition, in_definition, in, out;
  ULONG count = 0;
  session.rows->Next(static_cast<LONG>(WBEM_INFINITE), 1, instance.GetAddressOf(), &count);
  BSTR class_name = SysAllocString(L"ATD_STS");
  session.services->GetObject(class_name, 0, nullptr, definition.GetAddressOf(), nullptr);
  SysFreeString(class_name);
  definition->GetMethod(method, 0, in_definition.GetAddressOf(), nullptr);
  in_definition->SpawnInstance(0, in.GetAddressOf());
  PutText(in.Get(), L"commandcode", command_code);
  PutText(in.Get(), L"param0", param0);
  VARIANT path, value;
  VariantInit(&path);
  VariantInit(&value);
  instance->Get(L"__PATH", 0, &path, nullptr, nullptr);
  BSTR method_name = SysAllocString(method);
  session.services->ExecMethod(path.bstrVal, method_name, 0, nullptr, in.Get(), out.GetAddressOf(), nullptr);
  SysFreeString(method_name);
  VariantClear(&path);
  out->Get(L"value", 0, &value, nullptr, nullptr);
  return value.ulVal;
}

}  // namespace

uint32_t BareFirmwareCall(const wchar_t* method, const wchar_t* command_code, const wchar_t* param0) {
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  const uint32_t value = CallMethod(method, command_code, param0);
  CoUninitialize();
  return value;
}

}  // namespace vexa
