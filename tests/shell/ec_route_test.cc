// The EC through the firmware's class: bytes as decimal text, answers back as numbers, and the two write rules.
#include "wmi/ec_route.h"

#include "tests/support/wmi_test.h"
#include "vexa/firmware_ec.h"

namespace vexa::test {
namespace {

constexpr wchar_t kVersionQuery[] = L"select * from Win32_Bios";

class EcRoute : public WmiTest {
 protected:
  EcRoute() {
    wmi.firmware = [this](const std::wstring& method, const FakeWmi::Parameters& in) {
      std::string request = Narrow(method.c_str());
      for (const auto& [name, text] : in) request += " " + Narrow(name.c_str()) + "=" + Narrow(text.c_str());
      requests_.push_back(request);
      return answer_;
    };
  }

  void Answer(const WmiValue& value) { answer_ = {{L"value", value}}; }
  void Version(const std::wstring& version) { wmi.rows[kVersionQuery] = {{{L"Name", Text(version)}}}; }
  Strings Requests() { return std::exchange(requests_, {}); }
  // The lines of the route itself, without those of the invoker and the query.
  static Strings RouteLines() {
    Strings lines = Lines();
    std::erase_if(lines, [](const std::string& line) {
      return line.starts_with("5 [wmiMethod") || line.starts_with("5 [ReadWMI");
    });
    return lines;
  }

  WmiProperties answer_{{L"value", Number(VT_I4, 0)}};
  Strings requests_;
};

TEST_F(EcRoute, EveryOperationSendsItsBytesAsDecimalText) {
  Answer(Number(VT_UI1, 200));
  EXPECT_EQ(ATD_STS_ec_read(0x0B, 0xFF), L"200");
  EXPECT_THAT(RouteLines(),
              ElementsAre("5 [ATD_STS_ec_read] commandCode=b, param0=ff", "5 [ATD_STS_ec_read] output=200"));
  EXPECT_EQ(WOA_EC_read(9, 1), 200);
  EXPECT_THAT(RouteLines(),
              ElementsAre("5 [ATD_STS_ec_read] commandCode=9, param0=1", "5 [ATD_STS_ec_read] output=200"));
  EXPECT_EQ(ATD_STS_battery_read_byte(0x1B, 2), 200u);
  EXPECT_EQ(ATD_STS_battery_read_by_index(0x20, 0), 200u);
  EXPECT_EQ(ATD_STS_battery_write_byte(0x99, 10), 200u);
  EXPECT_THAT(RouteLines(), IsEmpty());
  EXPECT_THAT(Requests(), ElementsAre("ec_read_command_byte commandcode=11 param0=255",
                                      "ec_read_command_byte commandcode=9 param0=1",
                                      "battery_read_command_byte commandcode=27 param0=2",
                                      "battery_read_command_by_index commandcode=32 param0=0",
                                      "battery_write_command_byte commandcode=153 param0=10"));
  answer_ = {{L"version", Number(VT_I4, 0x12345)}};
  EXPECT_EQ(ATD_STS_ec_get_version(), L"74565");
  EXPECT_THAT(Requests(), ElementsAre("ec_get_version"));
}

TEST_F(EcRoute, WritingSendsThreeBytesAndReadsTheVersion) {
  Answer(Number(VT_I4, 0));
  Version(L"N14.305.x");
  EXPECT_EQ(WOA_EC_write(0x02, 0x01, 0xFE), 1u);
  EXPECT_THAT(Requests(), ElementsAre("ec_write_command_byte commandcode=2 param0=1 param1=254"));
  EXPECT_THAT(RouteLines(),
              ElementsAre("5 [ATD_STS_ec_write1] commandCode=2, param0=1, param1=fe", "5 [ATD_STS_ec_write1] result=0",
                          "5 [ATD_STS_ec_write1] name=N14, version=305"));
  const Strings calls = wmi.TakeCalls();
  EXPECT_EQ(CountOf(calls, "ConnectServer ROOT\\CIMV2 null null null 0 null"), 1);
  EXPECT_EQ(CountOf(calls, "ExecQuery WQL select * from Win32_Bios 30"), 1);
  EXPECT_EQ(CountOf(calls, "Get Name 0"), 1);
  EXPECT_EQ(CountOf(calls, "CoInitializeEx 0"), 2);
  EXPECT_EQ(ATD_STS_ec_write(0, 0, 0), 1u);
  EXPECT_THAT(Requests(), ElementsAre("ec_write_command_byte commandcode=0 param0=0 param1=0"));
}

TEST_F(EcRoute, AnswersThatAreNoNumberOfThirtyOneBits) {
  // clang-format off: side by side
  const struct {
    WmiValue value;
    const char* output;
    int32_t number;
  } answers[] = {
      {Number(VT_I4, 0), "0", 0}, {Number(VT_UI1, 255), "255", 255},
      {Number(VT_UI4, 0x7FFFFFFE), "2147483646", 2147483646}, {Number(VT_UI4, 0x7FFFFFFF), "2147483647", 2147483647},
      {Number(VT_UI4, 0x80000000), "2147483648", 2147483647}, {Number(VT_I4, -1), "4294967295", 2147483647},
      {Number(VT_I1, -1), "255", 255}, {Text(L"12"), "", 2147483647}, {Text(L"abc"), "", 2147483647},
      {Text(L""), "", 2147483647}, {Real64(12.0), "", 2147483647}, {Number(VT_NULL, 0), "", 2147483647},
  };
  // clang-format on
  for (const auto& answer : answers) {
    SCOPED_TRACE(answer.output);
    Answer(answer.value);
    EXPECT_EQ(WOA_EC_read(0x0B, 0x03), answer.number);
    const Strings lines = RouteLines();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[1], std::string("5 [ATD_STS_ec_read] output=") + answer.output);
    // 2147483647 itself is a number, and the text for it is no failure.
    const bool failed = answer.number == 2147483647 && std::string(answer.output) != "2147483647";
    ASSERT_EQ(lines.size(), failed ? 3u : 2u);
    if (failed) {
      EXPECT_EQ(lines[2], "5 [WOA_EC_read] TableIndex=b, CmdCode=3, try to parse wresult with error");
    }
  }
}

TEST_F(EcRoute, WithoutTheClass) {
  wmi.rows.clear();
  EXPECT_EQ(WOA_EC_read(1, 3), 2147483647);
  EXPECT_THAT(RouteLines(), ElementsAre("5 [ATD_STS_ec_read] commandCode=1, param0=3", "5 [ATD_STS_ec_read] output=",
                                        "5 [WOA_EC_read] TableIndex=1, CmdCode=3, try to parse wresult with error"));
  EXPECT_EQ(ATD_STS_ec_read(1, 3), L"");
  EXPECT_EQ(ATD_STS_ec_get_version(), L"");
  EXPECT_EQ(ATD_STS_battery_read_byte(10, 2), 0u);
  EXPECT_EQ(ATD_STS_battery_read_by_index(32, 0), 0u);
  EXPECT_EQ(ATD_STS_battery_write_byte(1, 2), 0u);
  RouteLines();
  // No version: its line is left out, and no answer is no success.
  EXPECT_EQ(WOA_EC_write(1, 2, 3), 0u);
  EXPECT_THAT(RouteLines(),
              ElementsAre("5 [ATD_STS_ec_write1] commandCode=1, param0=2, param1=3", "5 [ATD_STS_ec_write1] result="));
  wmi.script.Fail("CoInitializeEx", 0x80010106);
  EXPECT_EQ(WOA_EC_read(1, 3), 2147483647);
  EXPECT_EQ(WOA_EC_write(1, 2, 3), 0u);
  EXPECT_THAT(Requests(), IsEmpty());
}

TEST_F(EcRoute, TheFirmwaresVersionChoosesTheWriteRule) {
  // Which versions are older is told of in core's tests.
  const struct {
    std::wstring version;
    bool older;
    std::string line;  // behind "name="; "-": none
  } versions[] = {
      {L"K7720MBT.360", true, "K7720MBT, version=360"},
      {L"K7720MBT.361", false, "K7720MBT, version=361"},
      {L"K7720MB.312.7", true, "K7720MB, version=312"},
      {L"K7720MB", false, "K7720MB, version="},
      {L"100%s.%n", false, "100%s, version=%n"},
      {L"", false, "-"},
      {L"K7720MB.312" + std::wstring(400, L'0'), false, "K7720MB, version=312" + std::string(288, '0')},
      {std::wstring(400, L'M'), false, std::string(299, 'M') + ", version="},
  };
  for (const auto& version : versions) {
    SCOPED_TRACE(Narrow(version.version.c_str()));
    Version(version.version);
    Answer(Number(VT_I4, 0));
    RouteLines();
    EXPECT_EQ(WOA_EC_write(2, 1, 0), 1u);
    const Strings lines = RouteLines();
    ASSERT_EQ(lines.size(), version.line == "-" ? 2u : 3u);
    if (version.line != "-") {
      EXPECT_EQ(lines[2], "5 [ATD_STS_ec_write1] name=" + version.line);
    }
    // -1 is refused by both; anything else, even none, passes by the older rule alone.
    Answer(Number(VT_I4, -1));
    EXPECT_EQ(WOA_EC_write(2, 1, 0), 0u);
    Answer(Number(VT_I4, 1));
    EXPECT_EQ(WOA_EC_write(2, 1, 0), version.older ? 1u : 0u);
    Answer(Number(VT_NULL, 0));
    EXPECT_EQ(WOA_EC_write(2, 1, 0), version.older ? 1u : 0u);
  }
}

TEST_F(EcRoute, SeveralVersionRowsAreOneTextAndNothingIsKeptBetweenCalls) {
  Answer(Number(VT_I4, 1));
  Version(L"K7720MB.312");
  EXPECT_EQ(WOA_EC_write(2, 1, 0), 1u);
  Version(L"K7720MB.313");
  EXPECT_EQ(WOA_EC_write(2, 1, 0), 0u);
  wmi.rows[kVersionQuery] = {{{L"Name", Text(L"K7720MB.312")}}, {{L"Name", Text(L"B")}}};
  RouteLines();
  EXPECT_EQ(WOA_EC_write(2, 1, 0), 1u);
  EXPECT_EQ(RouteLines().back(), "5 [ATD_STS_ec_write1] name=K7720MB, version=312;B");
}

}  // namespace
}  // namespace vexa::test
