#include "caller.h"

namespace firmware {

std::wstring Value::text() const {
  if (type() != VT_BSTR) return L"not a text";
  return V_BSTR(&variant_) == nullptr ? L"" : V_BSTR(&variant_);
}

HRESULT Caller::Connect(const std::wstring& namespace_name) {
  services_ = {};
  locator_ = {};
  HRESULT result =
      CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER, IID_IWbemLocator, locator_.OutVoid());
  if (FAILED(result)) return result;
  return locator_->ConnectServer(Bstr(namespace_name), nullptr, nullptr, nullptr, 0, nullptr, nullptr, services_.Out());
}

HRESULT Caller::SetBlanket() {
  return CoSetProxyBlanket(services_.Get(), RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr, RPC_C_AUTHN_LEVEL_CALL,
                           RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE);
}

Ref<IEnumWbemClassObject> Caller::Query(const std::wstring& query, HRESULT* result, LONG flags) {
  Ref<IEnumWbemClassObject> rows;
  const HRESULT done = services_->ExecQuery(Bstr(L"WQL"), Bstr(query), flags, nullptr, rows.Out());
  if (result != nullptr) *result = done;
  return rows;
}

Ref<IWbemClassObject> Caller::FirstRow(const std::wstring& query) {
  Ref<IWbemClassObject> row;
  ULONG count = 0;
  if (const Ref<IEnumWbemClassObject> rows = Query(query)) rows->Next(WBEM_INFINITE, 1, row.Out(), &count);
  return row;
}

Answer Caller::Call(const std::wstring& class_name, const std::wstring& method, const Inputs& inputs,
                    const std::wstring& output) {
  HRESULT result = Connect(L"ROOT\\WMI");
  if (result != S_OK) return {locator_ ? "ConnectServer" : "CreateInstance", result};
  result = SetBlanket();
  if (result != S_OK) return {"SetBlanket", result};
  return Execute(class_name, method, inputs, output);
}

Answer Caller::Execute(const std::wstring& class_name, const std::wstring& method, const Inputs& inputs,
                       const std::wstring& output) {
  HRESULT result = S_OK;
  const Ref<IEnumWbemClassObject> rows = Query(L"Select * from " + class_name, &result);
  if (result != S_OK) return {"ExecQuery", result};
  Ref<IWbemClassObject> row, definition, in_definition, in, out;
  ULONG count = 0;
  result = rows->Next(WBEM_INFINITE, 1, row.Out(), &count);
  if (result != S_OK) return {"Next", result};
  result = services_->GetObject(Bstr(class_name), 0, nullptr, definition.Out(), nullptr);
  if (result != S_OK) return {"GetObject", result};
  result = definition->GetMethod(method.c_str(), 0, in_definition.Out(), nullptr);
  if (result != S_OK) return {"GetMethod", result};
  // A method without in-parameters has no definition of them.
  if (in_definition) result = in_definition->SpawnInstance(0, in.Out());
  if (result != S_OK) return {"SpawnInstance", result};
  const CIMTYPE type = class_name == L"ATD_STS" ? CIM_UINT8 : CIM_UINT32;
  for (const auto& [name, text] : inputs) {
    Value value(text);
    result = in->Put(name.c_str(), 0, &value, type);
    if (result != S_OK) return {"Put", result};
  }
  Value path;
  result = row->Get(L"__PATH", 0, &path, nullptr, nullptr);
  if (result != S_OK) return {"Get __PATH", result};
  result = services_->ExecMethod(Bstr(path.text()), Bstr(method), 0, nullptr, in.Get(), out.Out(), nullptr);
  if (result != S_OK) return {"ExecMethod", result};
  Value answer;
  result = out->Get(output.c_str(), 0, &answer, nullptr, nullptr);
  if (result != S_OK) return {"Get " + std::string(output.begin(), output.end()), result};
  return {"", S_OK, answer.type(), answer.number()};
}

Answer CallEc(const std::wstring& method, const Inputs& inputs, const std::wstring& output) {
  return Caller().Call(L"ATD_STS", method, inputs, output);
}

Answer ReadBattery(int number, int length) {
  return CallEc(L"battery_read_command_byte",
                {{L"commandcode", std::to_wstring(number)}, {L"param0", std::to_wstring(length)}});
}

Answer ReadDevice(unsigned device) {
  return Caller().Call(L"VexaObxWmi_WMNB", L"DSTS", {{L"Device_ID", std::to_wstring(device)}}, L"device_status");
}

Answer SetDevice(unsigned device, unsigned control) {
  return Caller().Call(L"VexaObxWmi_WMNB", L"DEVS",
                       {{L"Control_status", std::to_wstring(control)}, {L"Device_ID", std::to_wstring(device)}},
                       L"result");
}

}  // namespace firmware
