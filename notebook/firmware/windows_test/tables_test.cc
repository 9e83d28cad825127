// Tables of the scenario, and what comes from the system's own WMI.
#include <gmock/gmock.h>

#include "caller.h"
#include "firmware/files.h"
#include "firmware/registration.h"
#include "fixture.h"

namespace firmware {
namespace {

using testing::Contains;
using testing::ElementsAre;

constexpr char kScenario[] = R"({ "tables": [
  { "namespace": "root\\cimv2", "class": "Win32_Bios", "keys": [ "Name" ],
    "properties": { "Name": "string", "ReleaseDate": "datetime" },
    "rows": [ { "Name": "K7720MBT.361", "ReleaseDate": "20250317000000.000000+000" } ] },
  { "namespace": "root\\wmi", "class": "Types",
    "properties": { "s8": "sint8", "u8": "uint8", "s16": "sint16", "u16": "uint16", "s32": "sint32", "u32": "uint32",
      "s64": "sint64", "u64": "uint64", "r32": "real32", "r64": "real64", "b": "boolean", "t": "string",
      "a8": "uint8[]", "a16": "uint16[]", "at": "string[]", "n": "uint32", "raw": "uint32", "null_text": "string" },
    "rows": [ { "s8": -1, "u8": 255, "s16": -300, "u16": 65535, "s32": -1, "u32": "0xFFFFFFFF",
      "s64": -9223372036854775808, "u64": 18446744073709551615, "r32": 0.5, "r64": -0.25, "b": true,
      "t": "\u4e2d\u6587 \ud83d\ude00", "a8": [ 1, 255 ], "a16": [ 65535 ], "at": [ "a", "", "c" ],
      "raw": { "vt": "0x2008", "lower_bound": 2, "items": [ "x" ] }, "null_text": { "vt": 8 } } ] },
  { "namespace": "root\\wmi", "class": "Numbered", "keys": [ "Id" ], "properties": { "Id": "uint32", "Even": "boolean" },
    "rows": [ { "Id": 0, "Even": true }, { "Id": 1, "Even": false }, { "Id": 2, "Even": true } ] } ],
  "rules": [
    { "on": { "step": "ExecQuery", "class": "Win32_Processor" }, "nth": 1, "then": { "rows": 0 } },
    { "on": { "step": "Get", "class": "Win32_OperatingSystem", "property": "Name" }, "nth": 2,
      "then": { "raw": { "vt": 3, "value": 5 } } },
    { "on": { "step": "Next", "class": "Win32_ComputerSystem" }, "nth": 1, "then": { "fail": "0x80041001" } } ] })";

class Tables : public FirmwareTest {
 protected:
  Tables() { UseScenario(kScenario); }

  // The numbers of the "Numbered" rows that an enumerator gives from where it stands.
  static std::vector<LONG> Rest(IEnumWbemClassObject* rows) {
    std::vector<LONG> numbers;
    for (;;) {
      Ref<IWbemClassObject> row;
      ULONG count = 0;
      if (rows->Next(WBEM_INFINITE, 1, row.Out(), &count) != WBEM_S_NO_ERROR) return numbers;
      Value id;
      row->Get(L"Id", 0, &id, nullptr, nullptr);
      numbers.push_back(id.number());
    }
  }
};

TEST_F(Tables, ValuesComeInTheirTypes) {
  Caller caller;
  ASSERT_EQ(caller.Connect(L"ROOT\\WMI"), S_OK);
  const Ref<IWbemClassObject> row = caller.FirstRow(L"select * from types");
  ASSERT_TRUE(row);
  const auto expect = [&](const wchar_t* name, VARTYPE vt, CIMTYPE cim, auto check) {
    Value value;
    CIMTYPE type = 0;
    ASSERT_EQ(row->Get(name, 0, &value, &type, nullptr), S_OK) << Narrow(name);
    EXPECT_EQ(value.type(), vt) << Narrow(name);
    EXPECT_EQ(type, cim) << Narrow(name);
    EXPECT_TRUE(check(value)) << Narrow(name);
  };
  expect(L"s8", VT_I2, CIM_SINT8, [](const Value& v) { return V_I2(&v.variant()) == -1; });
  expect(L"u8", VT_UI1, CIM_UINT8, [](const Value& v) { return V_UI1(&v.variant()) == 255; });
  expect(L"s16", VT_I2, CIM_SINT16, [](const Value& v) { return V_I2(&v.variant()) == -300; });
  expect(L"u16", VT_I4, CIM_UINT16, [](const Value& v) { return v.number() == 65535; });
  expect(L"s32", VT_I4, CIM_SINT32, [](const Value& v) { return v.number() == -1; });
  expect(L"u32", VT_I4, CIM_UINT32, [](const Value& v) { return v.number() == -1; });
  expect(L"s64", VT_BSTR, CIM_SINT64, [](const Value& v) { return v.text() == L"-9223372036854775808"; });
  expect(L"u64", VT_BSTR, CIM_UINT64, [](const Value& v) { return v.text() == L"18446744073709551615"; });
  expect(L"r32", VT_R4, CIM_REAL32, [](const Value& v) { return V_R4(&v.variant()) == 0.5f; });
  expect(L"r64", VT_R8, CIM_REAL64, [](const Value& v) { return V_R8(&v.variant()) == -0.25; });
  expect(L"b", VT_BOOL, CIM_BOOLEAN, [](const Value& v) { return V_BOOL(&v.variant()) == VARIANT_TRUE; });
  expect(L"t", VT_BSTR, CIM_STRING, [](const Value& v) { return v.text() == L"\u4e2d\u6587 \U0001F600"; });
  expect(L"n", VT_NULL, CIM_UINT32, [](const Value&) { return true; });
  expect(L"null_text", VT_BSTR, CIM_STRING, [](const Value& v) { return V_BSTR(&v.variant()) == nullptr; });
}

TEST_F(Tables, Arrays) {
  Caller caller;
  ASSERT_EQ(caller.Connect(L"ROOT\\WMI"), S_OK);
  const Ref<IWbemClassObject> row = caller.FirstRow(L"select * from Types");
  ASSERT_TRUE(row);
  Value bytes, words, texts, raw;
  ASSERT_EQ(row->Get(L"a8", 0, &bytes, nullptr, nullptr), S_OK);
  ASSERT_EQ(row->Get(L"a16", 0, &words, nullptr, nullptr), S_OK);
  ASSERT_EQ(row->Get(L"at", 0, &texts, nullptr, nullptr), S_OK);
  ASSERT_EQ(row->Get(L"raw", 0, &raw, nullptr, nullptr), S_OK);
  EXPECT_EQ(bytes.type(), VT_ARRAY | VT_UI1);
  EXPECT_EQ(words.type(), VT_ARRAY | VT_I4);
  EXPECT_EQ(texts.type(), VT_ARRAY | VT_BSTR);
  const auto items = static_cast<const BYTE*>(V_ARRAY(&bytes.variant())->pvData);
  EXPECT_EQ(items[1], 255);
  EXPECT_EQ(*static_cast<const LONG*>(V_ARRAY(&words.variant())->pvData), 65535);
  LONG high = 0;
  SafeArrayGetUBound(V_ARRAY(&texts.variant()), 1, &high);
  EXPECT_EQ(high, 2);
  EXPECT_STREQ(static_cast<const BSTR*>(V_ARRAY(&texts.variant())->pvData)[2], L"c");
  LONG low = 0;
  SafeArrayGetLBound(V_ARRAY(&raw.variant()), 1, &low);
  EXPECT_EQ(low, 2);
}

TEST_F(Tables, PropertiesAreEnumerated) {
  Caller caller;
  ASSERT_EQ(caller.Connect(L"ROOT\\WMI"), S_OK);
  const Ref<IWbemClassObject> row = caller.FirstRow(L"select Id from Numbered where Id = 2");
  ASSERT_TRUE(row);
  ASSERT_EQ(row->BeginEnumeration(WBEM_FLAG_NONSYSTEM_ONLY), S_OK);
  BSTR name = nullptr;
  Value value;
  ASSERT_EQ(row->Next(0, &name, &value, nullptr, nullptr), S_OK);
  EXPECT_STREQ(name, L"Id");
  EXPECT_EQ(value.number(), 2);
  SysFreeString(name);
  EXPECT_EQ(row->Next(0, nullptr, nullptr, nullptr, nullptr), WBEM_S_NO_MORE_DATA);
  SAFEARRAY* names = nullptr;
  ASSERT_EQ(row->GetNames(nullptr, WBEM_FLAG_SYSTEM_ONLY, nullptr, &names), S_OK);
  LONG high = 0;
  SafeArrayGetUBound(names, 1, &high);
  EXPECT_EQ(high, 9);
  SafeArrayDestroy(names);
}

TEST_F(Tables, EnumeratorsGoForwardAndBack) {
  Caller caller;
  ASSERT_EQ(caller.Connect(L"ROOT\\WMI"), S_OK);
  const Ref<IEnumWbemClassObject> rows = caller.Query(L"select * from Numbered", nullptr, 0);
  EXPECT_EQ(rows->Skip(WBEM_INFINITE, 1), WBEM_S_NO_ERROR);
  Ref<IEnumWbemClassObject> copy;
  ASSERT_EQ(rows->Clone(copy.Out()), S_OK);
  EXPECT_THAT(Rest(rows.Get()), ElementsAre(1, 2));
  EXPECT_THAT(Rest(copy.Get()), ElementsAre(1, 2));
  EXPECT_EQ(rows->Reset(), S_OK);
  EXPECT_THAT(Rest(rows.Get()), ElementsAre(0, 1, 2));
  EXPECT_EQ(rows->Skip(WBEM_INFINITE, 1), WBEM_S_FALSE);
  const Ref<IEnumWbemClassObject> forward = caller.Query(L"select * from Numbered where Even = true");
  EXPECT_EQ(forward->Reset(), static_cast<HRESULT>(WBEM_E_INVALID_OPERATION));
  EXPECT_THAT(Rest(forward.Get()), ElementsAre(0, 2));
  HRESULT result = S_OK;
  EXPECT_FALSE(caller.Query(L"select * from Numbered where Odd = true", &result));
  EXPECT_EQ(result, static_cast<HRESULT>(WBEM_E_INVALID_QUERY));
}

TEST_F(Tables, TakeThePlaceOfOneClassOnly) {
  Caller caller;
  ASSERT_EQ(caller.Connect(L"ROOT\\CIMV2"), S_OK);
  Value name;
  const Ref<IWbemClassObject> bios = caller.FirstRow(L"select * from Win32_Bios");
  ASSERT_TRUE(bios);
  EXPECT_EQ(bios->Get(L"Name", 0, &name, nullptr, nullptr), S_OK);
  EXPECT_EQ(name.text(), L"K7720MBT.361");
  EXPECT_EQ(bios->Get(L"Manufacturer", 0, nullptr, nullptr, nullptr), static_cast<HRESULT>(WBEM_E_NOT_FOUND));
  const Ref<IWbemClassObject> board = caller.FirstRow(L"select * from Win32_BaseBoard");
  ASSERT_TRUE(board);
  EXPECT_EQ(board->Get(L"Manufacturer", 0, nullptr, nullptr, nullptr), S_OK);
}

TEST_F(Tables, TheSystemsOwnRowsAreHandedOn) {
  Caller caller;
  ASSERT_EQ(caller.Connect(L"root\\cimv2"), S_OK);
  EXPECT_EQ(CoSetProxyBlanket(caller.services(), RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr, RPC_C_AUTHN_LEVEL_CALL,
                              RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE),
            S_OK);
  EXPECT_FALSE(caller.FirstRow(L"select * from Win32_Processor"));
  const Ref<IWbemClassObject> processor = caller.FirstRow(L"select * from Win32_Processor");
  ASSERT_TRUE(processor);
  Value path, architecture;
  EXPECT_EQ(processor->Get(L"Architecture", 0, &architecture, nullptr, nullptr), S_OK);
  EXPECT_EQ(architecture.type(), VT_I4);
  EXPECT_EQ(processor->Get(L"__PATH", 0, &path, nullptr, nullptr), S_OK);
  EXPECT_NE(path.text().find(L"Win32_Processor"), std::wstring::npos);
  const Ref<IWbemClassObject> system = caller.FirstRow(L"select * from Win32_OperatingSystem");
  ASSERT_TRUE(system);
  Value first, second;
  EXPECT_EQ(system->Get(L"Name", 0, &first, nullptr, nullptr), S_OK);
  EXPECT_EQ(first.type(), VT_BSTR);
  EXPECT_EQ(system->Get(L"Name", 0, &second, nullptr, nullptr), S_OK);
  EXPECT_EQ(second.type(), VT_I4);
  EXPECT_FALSE(caller.FirstRow(L"select * from Win32_ComputerSystem"));
  EXPECT_TRUE(caller.FirstRow(L"select * from Win32_ComputerSystem"));
  EXPECT_EQ(Objects("IWbemClassObject"), 2);
}

// The system's own objects come back to it as it made them.
TEST_F(Tables, TheSystemsOwnMethodsCanBeCalled) {
  Caller caller;
  ASSERT_EQ(caller.Connect(L"ROOT\\CIMV2"), S_OK);
  Ref<IWbemClassObject> definition, in_definition, in, out;
  ASSERT_EQ(caller.services()->GetObject(Bstr(L"StdRegProv"), 0, nullptr, definition.Out(), nullptr), S_OK);
  ASSERT_EQ(definition->GetMethod(L"GetStringValue", 0, in_definition.Out(), nullptr), S_OK);
  ASSERT_EQ(in_definition->SpawnInstance(0, in.Out()), S_OK);
  VARIANT root{};
  V_VT(&root) = VT_I4;
  V_I4(&root) = static_cast<LONG>(0x80000002);
  ASSERT_EQ(in->Put(L"hDefKey", 0, &root, CIM_UINT32), S_OK);
  Value key(kNotebookKey), name(L"Firmware"), value;
  ASSERT_EQ(in->Put(L"sSubKeyName", 0, &key, CIM_STRING), S_OK);
  ASSERT_EQ(in->Put(L"sValueName", 0, &name, CIM_STRING), S_OK);
  ASSERT_EQ(caller.services()->ExecMethod(Bstr(L"StdRegProv"), Bstr(L"GetStringValue"), 0, nullptr, in.Get(), out.Out(),
                                          nullptr),
            S_OK);
  ASSERT_EQ(out->Get(L"sValue", 0, &value, nullptr, nullptr), S_OK);
  EXPECT_EQ(value.text(), TestFolder() + L"firmware.json");
  EXPECT_THAT(Log(), Contains("method StdRegProv.GetStringValue -> passed on 0x00000000"));
}

TEST_F(Tables, UnknownNamesGetTheSystemsAnswer) {
  Caller caller;
  EXPECT_EQ(caller.Connect(L"ROOT\\NoSuchNamespace"), static_cast<HRESULT>(WBEM_E_INVALID_NAMESPACE));
  ASSERT_EQ(caller.Connect(L"ROOT\\WMI"), S_OK);
  EXPECT_FALSE(caller.FirstRow(L"select * from ATD_STS"));
  EXPECT_THAT(Log(), Contains("query ROOT\\WMI flags=0x30 select * from ATD_STS -> passed on 0x00000000"));
}

class Broken : public FirmwareTest {};

TEST_F(Broken, OnlyTheFirmwaresNamespaceIsAffected) {
  for (const char* text : {"", "{", R"({ "firmware": { "ec": { "instances": -1 } } })", "[]"}) {
    UseFile(text);
    Caller caller;
    EXPECT_EQ(caller.Connect(L"ROOT\\WMI"), static_cast<HRESULT>(WBEM_E_INITIALIZATION_FAILURE)) << text;
    EXPECT_THAT(Log(), Contains(testing::StartsWith("fault "))) << text;
    ASSERT_EQ(caller.Connect(L"ROOT\\CIMV2"), S_OK) << text;
    EXPECT_TRUE(caller.FirstRow(L"select * from Win32_OperatingSystem")) << text;
  }
  RemoveScenario();
  Caller caller;
  EXPECT_EQ(caller.Connect(L"ROOT\\WMI"), static_cast<HRESULT>(WBEM_E_INITIALIZATION_FAILURE));
}

TEST(Registration, CanBeUndone) {
  const auto call = [](const char* function) {
    return reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(reinterpret_cast<void*>(GetProcAddress(Server(), function)))();
  };
  const std::optional<std::wstring> ours = ReadRegistry(kLocatorKey, nullptr);
  EXPECT_THAT(Narrow(ours.value_or(L"")), testing::EndsWith("vexa-firmware.dll"));
  EXPECT_EQ(call("DllUnregisterServer"), S_OK);
  EXPECT_THAT(Narrow(ReadRegistry(kLocatorKey, nullptr).value_or(L"")), testing::EndsWith("wbemprox.dll"));
  EXPECT_FALSE(ReadRegistry(kNotebookKey, kOriginalPathValue));
  EXPECT_EQ(call("DllUnregisterServer"), S_OK);
  EXPECT_THAT(Narrow(ReadRegistry(kLocatorKey, nullptr).value_or(L"")), testing::EndsWith("wbemprox.dll"));
  EXPECT_EQ(call("DllRegisterServer"), S_OK);
  EXPECT_EQ(call("DllRegisterServer"), S_OK);
  EXPECT_EQ(ReadRegistry(kLocatorKey, nullptr), ours);
  EXPECT_THAT(Narrow(ReadRegistry(kNotebookKey, kOriginalPathValue).value_or(L"")), testing::EndsWith("wbemprox.dll"));
}

}  // namespace
}  // namespace firmware
