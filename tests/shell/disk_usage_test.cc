// The free space of disks: the chain of queries, with serial numbers as real and hostile disks have them.
#include "tests/support/wmi_test.h"
#include "vexa/inventory.h"

namespace vexa::test {
namespace {

constexpr uint32_t kCom = 1;
constexpr wchar_t kHdd[] = L"select * from MSFT_PhysicalDisk where mediatype=3";
constexpr wchar_t kSsd[] = L"select * from MSFT_PhysicalDisk where mediatype=4";

class DiskUsage : public WmiTest {
 protected:
  using Export = uint32_t (*)(wchar_t*, wchar_t*, uint32_t);

  // "free|serials"
  static std::string Ask(Export usage) {
    std::wstring free(300, L'#'), serials(300, L'#');
    const uint32_t length = usage(free.data(), serials.data(), kCom);
    EXPECT_EQ(length, std::max(free.find(L'\0'), serials.find(L'\0')));
    return Narrow(free.c_str()) + "|" + Narrow(serials.c_str());
  }

  void Serials(const wchar_t* disks, const std::vector<std::wstring>& serials) {
    for (const std::wstring& serial : serials) wmi.rows[disks].push_back({{L"SerialNumber", Text(serial)}});
  }
  // A disk found by this pattern whose partitions have these access paths.
  void Disk(const std::wstring& pattern, int number, const std::vector<std::vector<std::wstring>>& partitions) {
    wmi.rows[L"select * from MSFT_Disk where SerialNumber like '%" + pattern + L"%'"] = {
        {{L"Number", Number(VT_I4, number)}}};
    std::vector<WmiProperties>& rows =
        wmi.rows[L"select * from MSFT_Partition where DiskNumber = '" + std::to_wstring(number) + L"'"];
    for (const auto& paths : partitions) rows.push_back({{L"AccessPaths", Texts(paths)}});
  }
  void Volume(const std::wstring& escaped_path, const WmiValue& free) {
    wmi.rows[L"select * from MSFT_Volume where Path = '" + escaped_path + L"'"] = {{{L"SizeRemaining", free}}};
  }
  Strings Queries() {
    Strings queries;
    for (const std::string& call : wmi.TakeCalls()) {
      if (call.starts_with("ExecQuery")) queries.push_back(call.substr(14, call.size() - 17));
    }
    return queries;
  }
};

TEST_F(DiskUsage, ChainOfQueriesAndBothTexts) {
  Serials(kHdd, {L"     WD-WX11A1234567", L"0025_38B1_2140_5F17."});
  Disk(L"WD-WX11A1234567", 1, {{L"C:\\", L"\\\\?\\Volume{a1}\\"}, {L"\\\\?\\Volume{a2}\\"}});
  Disk(L"0025[_]38B1[_]2140[_]5F17.", 0, {{L"D:\\a;b\\", L"\\\\?\\Volume{b}\\"}});
  Volume(L"\\\\\\\\?\\\\Volume{a1}\\\\", Text(L"123456789012"));
  Volume(L"\\\\\\\\?\\\\Volume{a2}\\\\", Text(L"0"));
  Volume(L"\\\\\\\\?\\\\Volume{b}\\\\", Text(L"99"));
  EXPECT_EQ(Ask(WMIGetHDDUsage), "123456789012,0;99|     WD-WX11A1234567;0025_38B1_2140_5F17.");
  EXPECT_THAT(Queries(), ElementsAre("select * from MSFT_PhysicalDisk where mediatype=3",
                                     "select * from MSFT_Disk where SerialNumber like '%WD-WX11A1234567%'",
                                     "select * from MSFT_Partition where DiskNumber = '1'",
                                     "select * from MSFT_Volume where Path = '\\\\\\\\?\\\\Volume{a1}\\\\'",
                                     "select * from MSFT_Volume where Path = '\\\\\\\\?\\\\Volume{a2}\\\\'",
                                     "select * from MSFT_Disk where SerialNumber like '%0025[_]38B1[_]2140[_]5F17.%'",
                                     "select * from MSFT_Partition where DiskNumber = '0'",
                                     "select * from MSFT_Volume where Path = '\\\\\\\\?\\\\Volume{b}\\\\'"));
  const Strings lines = Lines();
  EXPECT_EQ(lines.front(), "5 WMIGetHDDUsage Start");
  EXPECT_EQ(lines.back(), "5 WMIGetHDDUsage End");
  EXPECT_EQ(CountOf(lines, "5 [ReadWMIPropStr] Step7 Do CoUninitialize()"), 6);
  EXPECT_EQ(CountOf(lines, "5 [ReadWMIProp] Step7 Do CoUninitialize()"), 2);
  // Solid-state disks are asked for in the same way.
  EXPECT_EQ(Ask(WMIGetSSDUsage), "|");
  EXPECT_THAT(Queries(), ElementsAre("select * from MSFT_PhysicalDisk where mediatype=4"));
  EXPECT_THAT(Lines(), ElementsAre("5 WMIGetSSDUsage Start", "5 [ReadWMIPropStr] Step7 Do CoUninitialize()",
                                   "5 WMIGetSSDUsage End"));
}

TEST_F(DiskUsage, SerialsCanNotLeaveTheirLiteral) {
  Serials(kSsd, {L"' or 1=1 or SerialNumber like '", L"A\\B\"C", L"50%_[x]", L" \t ", L"E\\'"});
  EXPECT_EQ(Ask(WMIGetSSDUsage), ";;;;|' or 1=1 or SerialNumber like ';A\\B\"C;50%_[x]; \t ;E\\'");
  EXPECT_THAT(Queries(),
              ElementsAre("select * from MSFT_PhysicalDisk where mediatype=4",
                          "select * from MSFT_Disk where SerialNumber like '%\\' or 1=1 or SerialNumber like \\'%'",
                          "select * from MSFT_Disk where SerialNumber like '%A\\\\B\\\"C%'",
                          "select * from MSFT_Disk where SerialNumber like '%50[%][_][[]x]%'",
                          // Of blanks alone nothing is asked: the pattern would find every disk.
                          "select * from MSFT_Disk where SerialNumber like '%E\\\\\\'%'"));
}

TEST_F(DiskUsage, DisksKeepTheirPlaces) {
  Serials(kSsd, {L"none", L"", L"bare", L"bad", L"last"});
  Disk(L"bare", 2, {});
  Disk(L"bad", 3, {{L"\\\\?\\Volume{z}\\"}, {L"E:\\"}, {}, {L"\\\\?\\Volume{y}\\"}, {L"\\\\?\\Volume{x}\\"}});
  Volume(L"\\\\\\\\?\\\\Volume{x}\\\\", Number(VT_NULL, 0));
  Volume(L"\\\\\\\\?\\\\Volume{y}\\\\", Text(L"12;34"));
  Volume(L"\\\\\\\\?\\\\Volume{z}\\\\", Text(L"7"));
  Disk(L"last", 4, {{L"\\\\?\\Volume{l}\\"}});
  Volume(L"\\\\\\\\?\\\\Volume{l}\\\\", Text(L"18446744073709551615"));
  EXPECT_EQ(Ask(WMIGetSSDUsage), ";;7;18446744073709551615|none;bare;bad;last");
}

TEST_F(DiskUsage, WrongTypesInTheChain) {
  Serials(kSsd, {L"S"});
  Disk(L"S", 0, {{L"\\\\?\\Volume{v}\\"}});
  Volume(L"\\\\\\\\?\\\\Volume{v}\\\\", Text(L"5"));
  ASSERT_EQ(Ask(WMIGetSSDUsage), "5|S");
  const auto with = [&](const std::wstring& query, const wchar_t* property, const WmiValue& value) {
    const std::vector<WmiProperties> before = wmi.rows[query];
    wmi.rows[query] = {{{property, value}}};
    const std::string answer = Ask(WMIGetSSDUsage);
    wmi.rows[query] = before;
    return answer;
  };
  for (const WmiValue& value : {Number(VT_NULL, 0), Number(VT_EMPTY, 0), Real64(5), Array(VT_I4, {}), Text(L"five")}) {
    EXPECT_EQ(with(L"select * from MSFT_Disk where SerialNumber like '%S%'", L"Number", value), "|S");
    EXPECT_EQ(with(L"select * from MSFT_Partition where DiskNumber = '0'", L"AccessPaths", value), "|S");
    EXPECT_EQ(with(L"select * from MSFT_Volume where Path = '\\\\\\\\?\\\\Volume{v}\\\\'", L"SizeRemaining", value),
              "|S");
  }
  for (const WmiValue& value : {Number(VT_I4, 5), Number(VT_NULL, 0), Texts({L"S"}), Number(VT_UI8, 1)}) {
    EXPECT_EQ(with(kSsd, L"SerialNumber", value), "|");
  }
  EXPECT_EQ(with(L"select * from MSFT_Partition where DiskNumber = '0'", L"AccessPaths", Text(L"\\\\?\\Volume{v}\\")),
            "5|S");
  EXPECT_EQ(AutomationLedger::Live(), 0);
}

TEST_F(DiskUsage, NullBuffersTellTheLongerLength) {
  Serials(kHdd, {L"SERIAL"});
  Disk(L"SERIAL", 0, {{L"\\\\?\\Volume{v}\\"}});
  Volume(L"\\\\\\\\?\\\\Volume{v}\\\\", Text(L"1234567890"));
  EXPECT_EQ(WMIGetHDDUsage(nullptr, nullptr, kCom), 10u);
  wchar_t text[16] = {};
  EXPECT_EQ(WMIGetHDDUsage(text, nullptr, kCom), 10u);
  EXPECT_STREQ(text, L"1234567890");
  EXPECT_EQ(WMIGetHDDUsage(nullptr, text, kCom), 10u);
  EXPECT_STREQ(text, L"SERIAL");
}

TEST_F(DiskUsage, AFailingQueryLosesItsPlacesContentsAlone) {
  Serials(kSsd, {L"S", L"T"});
  Disk(L"S", 0, {{L"\\\\?\\Volume{v}\\"}});
  Disk(L"T", 1, {{L"\\\\?\\Volume{w}\\"}});
  Volume(L"\\\\\\\\?\\\\Volume{v}\\\\", Text(L"5"));
  Volume(L"\\\\\\\\?\\\\Volume{w}\\\\", Text(L"6"));
  const char* answers[] = {"|", ";6|S;T", ";6|S;T", ";6|S;T", "5;|S;T", "5;|S;T", "5;|S;T"};
  for (int i = 0; i < 7; ++i) {
    wmi.script.Fail("ExecQuery", 0x80070005, i + 1);
    EXPECT_EQ(Ask(WMIGetSSDUsage), answers[i]) << i;
  }
}

}  // namespace
}  // namespace vexa::test
