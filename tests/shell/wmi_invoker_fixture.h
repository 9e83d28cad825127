// The three firmware method invokers as one table, and the fixture of tests about all of them.
#ifndef VEXA_TESTS_SHELL_WMI_INVOKER_FIXTURE_H_
#define VEXA_TESTS_SHELL_WMI_INVOKER_FIXTURE_H_

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/wmi_test.h"
#include "wmi/method_invoker.h"

namespace vexa::test {

struct Invoker {
  const char* name;
  std::string (*call)(const std::wstring& method, const WmiParamMap& params, const std::wstring& out_name);
  std::string failed;       // answer when a step failed
  const char* minus_one;    // answer to 0xFFFFFFFF
  const char* class_name;   // of the query and the class
  const char* path;         // of its instance
  const char* cim_type;     // of the in-parameters
  const char* first_line;   // of the parameter "a" holding 255, method "m"
  const char* second_line;  // of the parameter "b" holding -1
  const char* no_output;    // of out-parameter "o", up to the HRESULT
  const char* value;        // up to the value
  const char* query_timeout;
};

inline std::string CallWmiMethod(const std::wstring& method, const WmiParamMap& params, const std::wstring& out_name) {
  return Narrow(wmiMethod(method, params, out_name, 1).c_str());
}
inline std::string CallAtdSts(const std::wstring& method, const WmiParamMap& params, const std::wstring& out_name) {
  return Narrow(wmiMethod_ATD_STS(method, params, out_name).c_str());
}
inline std::string CallAtdStsUint(const std::wstring& method, const WmiParamMap& params, const std::wstring& out_name) {
  return std::to_string(wmiMethod_ATD_STS_UINT(method, params, out_name));
}

inline const Invoker kInvokers[] = {
    {"wmiMethod", CallWmiMethod, "", "-1", "VexaObxWmi_WMNB", "VexaObxWmi_WMNB.InstanceName=\"100%s\"", "19",
     "5 [wmiMethod] Create the values for the in parameters method=m first=a second=0xff",
     "5 [wmiMethod] Create the values for the in parameters method=m first=b second=0xffffffff",
     "[wmiMethod] Could not get output. method=m, OutName=o, Errorcode=0x",
     "5 [wmiMethod] varReturnValue=", "[wmiMethod] Step5 Query timed out."},
    {"wmiMethod_ATD_STS", CallAtdSts, "", "4294967295", "ATD_STS", "ATD_STS.InstanceName=\"EC0\"", "17",
     "5 [wmiMethod_ATD_STS] Create the values for the in parameters. method=m, first=a, second=0xff",
     "5 [wmiMethod_ATD_STS] Create the values for the in parameters. method=m, first=b, second=0xffffffff",
     "[wmiMethod_ATD_STS] Could not get output method=m, OutName=o. Errorcode=0x",
     "5 [wmiMethod_ATD_STS] varReturnValue =", "[wmiMethod_ATD_STS] Step5 Query timed out."},
    {"wmiMethod_ATD_STS_UINT", CallAtdStsUint, "0", "4294967295", "ATD_STS", "ATD_STS.InstanceName=\"EC0\"", "17",
     "5 [wmiMethod_ATD_STS_UINT] Create the values for the in parameters. method=m, first=a, second=0xff",
     "5 [wmiMethod_ATD_STS_UINT] Create the values for the in parameters. method=m, first=b, second=0xffffffff",
     "[wmiMethod_ATD_STS_UINT] Could not get output. method=m, OutName=o, Errorcode=0x",
     "5 [wmiMethod_ATD_STS_UINT] varReturnValue=", "[wmiMethod_ATD_STS_UINT] Step6 Query timed out."},
};

class InvokerTest : public WmiTest, public testing::WithParamInterface<Invoker> {
 protected:
  InvokerTest() { Answer(Number(VT_I4, 42)); }

  void Answer(const WmiValue& value) {
    wmi.firmware = [value](const std::wstring&, const FakeWmi::Parameters&) { return WmiProperties{{L"o", value}}; };
  }
  std::string Call(const WmiParamMap& params) { return invoker_.call(L"m", params, L"o"); }
  std::string Call() { return Call({{L"b", L"-1"}, {L"a", L"255"}}); }
  // "[name] text"
  std::string Named(const std::string& text) const { return "[" + std::string(invoker_.name) + "] " + text; }

  // A call that failed with this line and wrote it to the event log as well; the lines before it are `before`.
  void ExpectFailure(const std::string& line, std::vector<std::string> before = {}) {
    before.push_back("5 " + line);
    before.push_back("5 " + Named("Do CoUninitialize()"));
    EXPECT_THAT(Lines(), testing::ElementsAreArray(before));
    EXPECT_THAT(event_log.TakeMessages(), testing::ElementsAre(line));
  }

  const Invoker& invoker_ = GetParam();
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SHELL_WMI_INVOKER_FIXTURE_H_
