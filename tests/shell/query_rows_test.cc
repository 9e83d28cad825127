// How the query variants choose, convert and join the values of their rows.
#include <new>

#include "tests/support/wmi_test.h"
#include "wmi/query_engine.h"

namespace vexa::test {
namespace {

constexpr wchar_t kDiskQuery[] = L"Select * from Win32_PerfFormattedData_PerfDisk_PhysicalDisk";

class QueryRows : public WmiTest {
 protected:
  void Rows(std::vector<WmiProperties> rows) { wmi.rows[L"q"] = std::move(rows); }
  void Column(const std::wstring& property, const std::vector<WmiValue>& values) {
    std::vector<WmiProperties> rows;
    for (const WmiValue& value : values) rows.push_back({{property, value}});
    Rows(std::move(rows));
  }
  std::wstring Str(const wchar_t* property) {
    std::wstring text = L"left";
    ReadWMIPropStr(text, L"n", L"q", property, 1);
    return text;
  }
};

TEST_F(QueryRows, TextsAreJoinedWithoutTheEmptyOnes) {
  Column(L"P", {Text(L"A"), Text(L""), Text(L"C")});
  EXPECT_EQ(Str(L"P"), L"A;C");
  EXPECT_THAT(Lines(), ElementsAre("5 [ReadWMIPropStr] SysStringLen(temp) == 0 , propname = P",
                                   "5 [ReadWMIPropStr] Step7 Do CoUninitialize()"));
  EXPECT_THAT(event_log.TakeMessages(), IsEmpty());
  Column(L"100%s", {Text(L""), Text(L""), Text(L"x;y")});
  EXPECT_EQ(Str(L"100%s"), L"x;y");
  EXPECT_EQ(Lines()[1], "5 [ReadWMIPropStr] SysStringLen(temp) == 0 , propname = 100%s");
  // Only texts are texts here.
  Column(L"P", {Number(VT_I4, 5), Number(VT_NULL, 0), Texts({L"a"}), Number(VT_BOOL, -1), Text(L" ")});
  EXPECT_EQ(Str(L"P"), L" ");
  EXPECT_EQ(Lines().size(), 1u);
}

TEST_F(QueryRows, OemStringsAreTheirFifthElementAlone) {
  const std::vector<std::wstring> five = {L"0", L"1", L"2", L"3", L"90NB-4"};
  Column(L"OEMStringArray", {Texts(five)});
  EXPECT_EQ(Str(L"OEMStringArray"), L"90NB-4");
  Column(L"OEMStringArray", {Texts({L"0", L"1", L"2", L"3", L"4", L"5"}), Texts(five)});
  EXPECT_EQ(Str(L"OEMStringArray"), L"90NB-4");
  for (const std::vector<std::wstring>& few : {std::vector<std::wstring>{}, {L"0"}, {L"0", L"1", L"2", L"3"}}) {
    Column(L"OEMStringArray", {Texts(few)});
    EXPECT_EQ(Str(L"OEMStringArray"), L"") << few.size();
  }
  Column(L"OEMStringArray", {Text(L"no array"), Array(VT_I4, std::vector<WmiValue>(5, Number(VT_I4, 1)))});
  EXPECT_EQ(Str(L"OEMStringArray"), L"");
  // Another property is never taken apart.
  Column(L"OEMStrings", {Texts(five)});
  EXPECT_EQ(Str(L"OEMStrings"), L"");
}

TEST_F(QueryRows, ExceptionInARowLeavesComWithItsLine) {
  const ImportPatch get("SafeArrayGetElement", +[](SAFEARRAY*, LONG*, void*) -> HRESULT { throw std::bad_alloc(); });
  Column(L"OEMStringArray", {Texts({L"0", L"1", L"2", L"3", L"4"})});
  EXPECT_EQ(Str(L"OEMStringArray"), L"");
  EXPECT_THAT(Lines(),
              ElementsAre(StartsWith("5 [ReadWMIPropStr] exception"), "5 [ReadWMIPropStr] Step7 Do CoUninitialize()"));
}

TEST_F(QueryRows, LastNumberWins) {
  const struct {
    std::vector<WmiValue> values;
    int32_t result;
    uint32_t value;
  } columns[] = {
      {{Number(VT_I4, 1), Number(VT_UI4, 0xFFFFFFFF), Text(L"3200")}, 0, 3200},
      {{Text(L"3200"), Number(VT_I4, -1), Number(VT_NULL, 0)}, 0, 0xFFFFFFFF},
      {{Number(VT_UI1, 0)}, 0, 0},
      {{Array(VT_I4, {Number(VT_I4, 10), Number(VT_I4, 3)})}, 0, 10},
      {{Text(L"none"), Number(VT_NULL, 0), Real64(5)}, -1, 0},
  };
  for (const auto& column : columns) {
    uint32_t value = 99;
    Column(L"P", column.values);
    EXPECT_EQ(ReadWMIProp(L"n", L"q", L"P", value, 1), column.result);
    EXPECT_EQ(value, column.value);
  }
}

TEST_F(QueryRows, ConvertedValuesAreJoinedWithCommasAndCounted) {
  std::wstring text = L"left";
  uint32_t rows = 99, values = 99;
  Column(L"P", {Text(L"1000204886016"), Number(VT_UI2, 4), Number(VT_NULL, 0), Number(VT_BOOL, -1), Text(L"a,b")});
  ReadWMIPropStr2(text, L"n", L"q", L"P", rows, values, 1);
  EXPECT_EQ(text, L"1000204886016,4,true,a,b");
  EXPECT_EQ(rows, 5u);
  EXPECT_EQ(values, 4u);
  Rows({});
  ReadWMIPropStr2(text, L"n", L"q", L"P", rows, values, 1);
  EXPECT_EQ(text, L"");
  EXPECT_EQ(rows, 0u);
  EXPECT_EQ(values, 0u);
}

TEST_F(QueryRows, SeveralPropertiesKeepTheirPlaces) {
  std::wstring text = L"left";
  uint32_t rows = 99, values = 99;
  Rows({{{L"A", Text(L"a,1")}, {L"B", Number(VT_I4, -2)}, {L"C", Texts({L"x", L"y"})}},
        {{L"B", Text(L"")}},
        {{L"C", Number(VT_BOOL, 0)}, {L"A", Number(VT_NULL, 0)}},
        {{L"Other", Text(L"1")}}});
  ReadWMIPropStr2(text, L"n", L"q", L"A,B,C", rows, values, 1);
  EXPECT_EQ(text, L"a,1,-2,x;y;,,;,,false");
  EXPECT_EQ(rows, 4u);
  EXPECT_EQ(values, 5u);
  const Strings calls = wmi.TakeCalls();
  EXPECT_EQ(CountOf(calls, "Get A 0") + CountOf(calls, "Get B 0") + CountOf(calls, "Get C 0"), 12);
  EXPECT_EQ(CountOf(calls, "ExecQuery WQL q 30"), 1);
}

TEST_F(QueryRows, ArraysOfCharactersAndOfPaths) {
  Column(L"UserFriendlyName", {Array(VT_I4, {Number(VT_I4, 'A'), Number(VT_I4, 0), Number(VT_I4, 'B')}), Text(L"t")});
  EXPECT_EQ(Str(L"UserFriendlyName"), L"A;t");
  Column(L"AccessPaths", {Texts({L"C:\\", L"p"}), Number(VT_NULL, 0), Text(L"t")});
  EXPECT_EQ(Str(L"AccessPaths"), L"C:\\;p;t");
  // Of other properties arrays are nothing.
  Column(L"FriendlyName", {Array(VT_I4, {Number(VT_I4, 'A')})});
  EXPECT_EQ(Str(L"FriendlyName"), L"");
}

TEST_F(QueryRows, WirelessTakesTheRowsOfItsCard) {
  std::wstring text = L"left";
  Rows({{{L"Name", Text(L"Other")}, {L"P", Text(L"1")}},
        {{L"Name", Text(L"Card [2]")}, {L"P", Number(VT_I4, 77)}},
        {{L"Name", Text(L"Card [2] #2")}, {L"P", Text(L"3")}},
        {{L"P", Text(L"4")}}});
  ReadWMIPropStrWireless(text, L"n", L"q", L"P", L"Card [2]", 1);
  EXPECT_EQ(text, L"77");
  ReadWMIPropStrWireless(text, L"n", L"q", L"P", L"None", 1);
  EXPECT_EQ(text, L"0");
  ReadWMIPropStrWireless(text, L"n", L"q", L"P", L"", 1);
  EXPECT_EQ(text, L"0");
}

TEST_F(QueryRows, PairsNeedTheirFirstValueOnly) {
  std::wstring text;
  Rows({{{L"InstanceName", Text(L"A")}, {L"VideoOutputTechnology", Number(VT_UI4, 0x80000000)}},
        {{L"VideoOutputTechnology", Number(VT_UI4, 5)}},
        {{L"InstanceName", Text(L"B")}}});
  ReadWMIPropStrDisplay(text, L"n", L"q", 1);
  EXPECT_EQ(text, L"A,vot=2147483648;B,vot=");
  Rows({{{L"UtilizationPercentage", Number(VT_UI8, 100)}, {L"Name", Text(L"pid_1_engtype_3D")}},
        {{L"Name", Text(L"pid_2")}},
        {{L"UtilizationPercentage", Text(L"0")}, {L"Name", Text(L"pid_3")}}});
  ReadWMIPropStrGPUUsage(text, L"n", L"q", 1);
  EXPECT_EQ(text, L"100,pid_1_engtype_3D;0,pid_3");
  Rows({{{L"Size", Number(VT_NULL, 0)}, {L"Caption", Text(L"empty reader")}},
        {{L"Size", Text(L"64")}, {L"Caption", Text(L"SD")}}});
  ReadWMIPropStrSDCardSize(text, L"n", L"q", 1);
  EXPECT_EQ(text, L"64,SD");
}

TEST_F(QueryRows, BusiestDiskWithoutTheSum) {
  const auto disk = [](const wchar_t* name, const WmiValue& time) {
    return WmiProperties{{L"Name", Text(name)}, {L"PercentDiskTime", time}};
  };
  wmi.rows[kDiskQuery] = {disk(L"0 C:", Text(L"3")), disk(L"1 D:", Text(L"41")), disk(L"2 E:", Text(L"x")),
                          disk(L"_Total", Text(L"99"))};
  EXPECT_EQ(ReadWMIPropNumDiskInRW(1), 41u);
  wmi.rows[kDiskQuery] = {disk(L"_Total", Text(L"99"))};
  EXPECT_EQ(ReadWMIPropNumDiskInRW(1), 0u);
  wmi.rows[kDiskQuery] = {disk(L"0 C:", Number(VT_UI8, 150))};
  EXPECT_EQ(ReadWMIPropNumDiskInRW(1), 150u);
}

}  // namespace
}  // namespace vexa::test
