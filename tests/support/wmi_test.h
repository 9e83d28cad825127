// The fixture of tests about what goes through WMI.
#ifndef VEXA_TESTS_SUPPORT_WMI_TEST_H_
#define VEXA_TESTS_SUPPORT_WMI_TEST_H_

#include "tests/support/event_log.h"
#include "tests/support/fake_wmi.h"
#include "tests/support/shell_test.h"

namespace vexa::test {

class WmiTest : public ShellTest {
 protected:
  // The firmware's methods answer the values that `answer` makes of a request: the method's name and its in-parameters'
  // texts, in the order of their names.
  void AnswerRequests(std::function<WmiProperties(const std::string& request)> answer) {
    wmi.firmware = [this, answer](const std::wstring& method, const FakeWmi::Parameters& in) {
      std::string request = Narrow(method.c_str());
      for (const auto& [name, text] : in) request += " " + Narrow(text.c_str());
      requests_.push_back(request);
      return answer(request);
    };
  }
  // Requests since the last time.
  Strings Requests() { return std::exchange(requests_, {}); }

  EventLog event_log;
  FakeWmi wmi;

 private:
  Strings requests_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_WMI_TEST_H_
