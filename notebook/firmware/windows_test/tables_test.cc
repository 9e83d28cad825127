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
    { "on": { "step": "ExecQuery", "class": "Win32_Process" }, "then": { "rows": 1 } },
    { "on": { "step": "Get", "class": "Win32_OperatingSystem", "property": "Name" }, "nth": 2,
      "then": { "raw": { "vt": 3, "value": 5 } } },
    { "on": { "step": "Next", "class": "Win32_ComputerSystem" }, "nth": 1, "then": { "fail": "0x80041001" } } ] })";

class Tables : public FirmwareTest {
 protected:
  Tables() { UseScenario(kScenario); }

  Ref<IWbemClassObject> FirstRow(const wchar_t* name_space, const std::wstring& query) {
    EXPECT_EQ(caller_.Connect(name_space), S_OK);
    return caller_.FirstRow(query);
  }
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

  Caller caller_;
};

// A value as text: an array's items from its lower bound on, in "[2]{a,b}".
std::wstring Shown(VARIANT value) {
  if (V_VT(&value) == VT_NULL) return L"null";
  if ((V_VT(&value) & VT_ARRAY) == 0) {
    if (V_VT(&value) == VT_BSTR && V_BSTR(&value) == nullptr) return L"null text";
    VARIANT text{};
    if (FAILED(VariantChangeType(&text, &value, VARIANT_ALPHABOOL, VT_BSTR))) return L"no text";
    const std::wstring shown = V_BSTR(&text);
    VariantClear(&text);
    return shown;
  }
  LONG low = 0, high = 0;
  SafeArrayGetLBound(V_ARRAY(&value), 1, &low);
  SafeArrayGetUBound(V_ARRAY(&value), 1, &high);
  std::wstring shown = L"[" + std::to_wstring(low) + L"]{";
  for (LONG i = low; i <= high; ++i) {
    VARIANT item{};
    SafeArrayGetElement(V_ARRAY(&value), &i, &V_I8(&item));
    V_VT(&item) = static_cast<VARTYPE>(V_VT(&value) & ~VT_ARRAY);
    shown += (i == low ? L"" : L",") + Shown(item);
    VariantClear(&item);
  }
  return shown + L"}";
}

TEST_F(Tables, ValuesComeInTheirTypes) {
  const struct {
    const wchar_t* name;
    int vt, cim;
    const wchar_t* shown;
  } kValues[] = {{L"s8", VT_I2, CIM_SINT8, L"-1"},
                 {L"u8", VT_UI1, CIM_UINT8, L"255"},
                 {L"s16", VT_I2, CIM_SINT16, L"-300"},
                 {L"u16", VT_I4, CIM_UINT16, L"65535"},
                 {L"s32", VT_I4, CIM_SINT32, L"-1"},
                 {L"u32", VT_I4, CIM_UINT32, L"-1"},
                 {L"s64", VT_BSTR, CIM_SINT64, L"-9223372036854775808"},
                 {L"u64", VT_BSTR, CIM_UINT64, L"18446744073709551615"},
                 {L"r32", VT_R4, CIM_REAL32, L"0.5"},
                 {L"r64", VT_R8, CIM_REAL64, L"-0.25"},
                 {L"b", VT_BOOL, CIM_BOOLEAN, L"True"},
                 {L"t", VT_BSTR, CIM_STRING, L"\u4e2d\u6587 \U0001F600"},
                 {L"n", VT_NULL, CIM_UINT32, L"null"},
                 {L"null_text", VT_BSTR, CIM_STRING, L"null text"},
                 {L"a8", VT_ARRAY | VT_UI1, CIM_FLAG_ARRAY | CIM_UINT8, L"[0]{1,255}"},
                 {L"a16", VT_ARRAY | VT_I4, CIM_FLAG_ARRAY | CIM_UINT16, L"[0]{65535}"},
                 {L"at", VT_ARRAY | VT_BSTR, CIM_FLAG_ARRAY | CIM_STRING, L"[0]{a,,c}"},
                 {L"raw", VT_ARRAY | VT_BSTR, CIM_UINT32, L"[2]{x}"}};
  const Ref<IWbemClassObject> row = FirstRow(L"ROOT\\WMI", L"select * from types");
  ASSERT_TRUE(row);
  for (const auto& [name, vt, cim, shown] : kValues) {
    SCOPED_TRACE(Narrow(name));
    Value value;
    CIMTYPE type = 0;
    ASSERT_EQ(row->Get(name, 0, &value, &type, nullptr), S_OK);
    EXPECT_EQ(value.type(), vt);
    EXPECT_EQ(type, cim);
    EXPECT_EQ(Narrow(Shown(value.variant())), Narrow(shown));
  }
}

TEST_F(Tables, PropertiesAreEnumerated) {
  const Ref<IWbemClassObject> row = FirstRow(L"ROOT\\WMI", L"select Id from Numbered where Id = 2");
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
  ASSERT_EQ(caller_.Connect(L"ROOT\\WMI"), S_OK);
  const Ref<IEnumWbemClassObject> rows = caller_.Query(L"select * from Numbered", nullptr, 0);
  EXPECT_EQ(rows->Skip(WBEM_INFINITE, 1), WBEM_S_NO_ERROR);
  Ref<IEnumWbemClassObject> copy;
  ASSERT_EQ(rows->Clone(copy.Out()), S_OK);
  EXPECT_THAT(Rest(rows.Get()), ElementsAre(1, 2));
  EXPECT_THAT(Rest(copy.Get()), ElementsAre(1, 2));
  EXPECT_EQ(rows->Reset(), S_OK);
  EXPECT_THAT(Rest(rows.Get()), ElementsAre(0, 1, 2));
  EXPECT_EQ(rows->Skip(WBEM_INFINITE, 1), WBEM_S_FALSE);
  const Ref<IEnumWbemClassObject> forward = caller_.Query(L"select * from Numbered where Even = true");
  EXPECT_EQ(forward->Reset(), static_cast<HRESULT>(WBEM_E_INVALID_OPERATION));
  EXPECT_THAT(Rest(forward.Get()), ElementsAre(0, 2));
  HRESULT result = S_OK;
  EXPECT_FALSE(caller_.Query(L"select * from Numbered where Odd = true", &result));
  EXPECT_EQ(result, static_cast<HRESULT>(WBEM_E_INVALID_QUERY));
}

TEST_F(Tables, TakeThePlaceOfOneClassOnly) {
  ASSERT_EQ(caller_.Connect(L"ROOT\\CIMV2"), S_OK);
  Value name;
  const Ref<IWbemClassObject> bios = caller_.FirstRow(L"select * from Win32_Bios");
  ASSERT_TRUE(bios);
  EXPECT_EQ(bios->Get(L"Name", 0, &name, nullptr, nullptr), S_OK);
  EXPECT_EQ(name.text(), L"K7720MBT.361");
  EXPECT_EQ(bios->Get(L"Manufacturer", 0, nullptr, nullptr, nullptr), static_cast<HRESULT>(WBEM_E_NOT_FOUND));
  const Ref<IWbemClassObject> board = caller_.FirstRow(L"select * from Win32_BaseBoard");
  ASSERT_TRUE(board);
  EXPECT_EQ(board->Get(L"Manufacturer", 0, nullptr, nullptr, nullptr), S_OK);
}

TEST_F(Tables, TheSystemsOwnRowsAreHandedOn) {
  ASSERT_EQ(caller_.Connect(L"root\\cimv2"), S_OK);
  EXPECT_EQ(caller_.SetBlanket(), S_OK);
  EXPECT_FALSE(caller_.FirstRow(L"select * from Win32_Processor"));
  const Ref<IWbemClassObject> processor = caller_.FirstRow(L"select * from Win32_Processor");
  ASSERT_TRUE(processor);
  Value path, architecture;
  EXPECT_EQ(processor->Get(L"Architecture", 0, &architecture, nullptr, nullptr), S_OK);
  EXPECT_EQ(architecture.type(), VT_I4);
  EXPECT_EQ(processor->Get(L"__PATH", 0, &path, nullptr, nullptr), S_OK);
  EXPECT_NE(path.text().find(L"Win32_Processor"), std::wstring::npos);
  const Ref<IWbemClassObject> system = caller_.FirstRow(L"select * from Win32_OperatingSystem");
  ASSERT_TRUE(system);
  Value first, second;
  EXPECT_EQ(system->Get(L"Name", 0, &first, nullptr, nullptr), S_OK);
  EXPECT_EQ(first.type(), VT_BSTR);
  EXPECT_EQ(system->Get(L"Name", 0, &second, nullptr, nullptr), S_OK);
  EXPECT_EQ(second.type(), VT_I4);
  EXPECT_FALSE(caller_.FirstRow(L"select * from Win32_ComputerSystem"));
  EXPECT_TRUE(caller_.FirstRow(L"select * from Win32_ComputerSystem"));
  EXPECT_EQ(Objects("IWbemClassObject"), 2);
  const Ref<IEnumWbemClassObject> processes = caller_.Query(L"select * from Win32_Process");
  for (const HRESULT result : {WBEM_S_NO_ERROR, WBEM_S_FALSE}) {
    Ref<IWbemClassObject> row;
    ULONG count = 0;
    EXPECT_EQ(processes->Next(WBEM_INFINITE, 1, row.Out(), &count), result);
  }
}

// The system's own objects come back to it as it made them.
TEST_F(Tables, TheSystemsOwnMethodsCanBeCalled) {
  ASSERT_EQ(caller_.Connect(L"ROOT\\CIMV2"), S_OK);
  Ref<IWbemClassObject> definition, in_definition, in, out;
  ASSERT_EQ(caller_.services()->GetObject(Bstr(L"StdRegProv"), 0, nullptr, definition.Out(), nullptr), S_OK);
  ASSERT_EQ(definition->GetMethod(L"GetStringValue", 0, in_definition.Out(), nullptr), S_OK);
  ASSERT_EQ(in_definition->SpawnInstance(0, in.Out()), S_OK);
  VARIANT root{};
  V_VT(&root) = VT_I4;
  V_I4(&root) = static_cast<LONG>(0x80000002);
  ASSERT_EQ(in->Put(L"hDefKey", 0, &root, CIM_UINT32), S_OK);
  Value key(kNotebookKey), name(L"Firmware"), value;
  ASSERT_EQ(in->Put(L"sSubKeyName", 0, &key, CIM_STRING), S_OK);
  ASSERT_EQ(in->Put(L"sValueName", 0, &name, CIM_STRING), S_OK);
  ASSERT_EQ(caller_.services()->ExecMethod(Bstr(L"StdRegProv"), Bstr(L"GetStringValue"), 0, nullptr, in.Get(),
                                           out.Out(), nullptr),
            S_OK);
  ASSERT_EQ(out->Get(L"sValue", 0, &value, nullptr, nullptr), S_OK);
  EXPECT_EQ(value.text(), TestFolder() + L"firmware.json");
  EXPECT_THAT(Log(), Contains("method StdRegProv.GetStringValue -> passed on 0x00000000"));
}

TEST_F(Tables, UnknownNamesGetTheSystemsAnswer) {
  EXPECT_EQ(caller_.Connect(L"ROOT\\NoSuchNamespace"), static_cast<HRESULT>(WBEM_E_INVALID_NAMESPACE));
  ASSERT_EQ(caller_.Connect(L"ROOT\\WMI"), S_OK);
  EXPECT_FALSE(caller_.FirstRow(L"select * from ATD_STS"));
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
